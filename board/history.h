// board/history.h — the game's plies on the position stack, and keeping room above them for a search.
#pragma once
#include "board/position.h"

namespace vorlek {

// Once the game's history reaches this record, its oldest records are dropped.
constexpr int GAME_HISTORY_LIMIT = 400;
// Records kept when the history is shortened: more than the fifty counter can ever reach back (255),
// so repetition counts stay exact.
constexpr int GAME_HISTORY_KEPT = 256;

// Plies dropped from the bottom of the stack in this game; NewGame sets it to 0.
inline int droppedPlies = 0;

// Plies played since the game's starting position (NewGame or a set-up).
inline int GamePly() { return droppedPlies + StackIndex(current); }

// A new game from `start`, set on the first record.
void StartGame(const Position& start);

// The game on the stack, kept aside: its records up to `current` and the plies dropped before them.
struct SavedGame {
  Position records[POSITION_STACK_SIZE];
  int count;
  int droppedPlies;
};
void SaveGame(SavedGame& saved);
void RestoreGame(const SavedGame& saved);

// Called before the game adds a ply or starts a search: when the history has reached
// GAME_HISTORY_LIMIT records, slides its last GAME_HISTORY_KEPT records to the bottom of the stack.
// A search from there needs at most 32 plies of alpha-beta and 124 of quiescence, which fit above.
void KeepRoomAboveHistory();

}  // namespace vorlek
