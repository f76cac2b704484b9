#include "board/history.h"

#include <cstring>

namespace vorlek {

void StartGame(const Position& start) {
  current = PositionStack;
  *current = start;
  droppedPlies = 0;
}

void SaveGame(SavedGame& saved) {
  saved.count = StackIndex(current) + 1;
  std::memcpy(saved.records, PositionStack, sizeof(Position) * saved.count);
  saved.droppedPlies = droppedPlies;
}

void RestoreGame(const SavedGame& saved) {
  std::memcpy(PositionStack, saved.records, sizeof(Position) * saved.count);
  current = PositionStack + saved.count - 1;
  droppedPlies = saved.droppedPlies;
}

void KeepRoomAboveHistory() {
  const int index = StackIndex(current);
  if (index < GAME_HISTORY_LIMIT) return;
  const int first = index - (GAME_HISTORY_KEPT - 1);
  std::memmove(PositionStack, PositionStack + first, sizeof(Position) * GAME_HISTORY_KEPT);
  droppedPlies += first;
  current = PositionStack + (GAME_HISTORY_KEPT - 1);
}

}  // namespace vorlek
