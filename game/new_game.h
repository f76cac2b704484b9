// game/new_game.h — what a game of the engine's is, whichever protocol plays it: its start, and whether
// it is still in the book. Both front ends start their games here.
#pragma once

namespace vorlek {

inline int useBook = 1;  // book moves are still looked for in this game (NextBookMove)

// Starts a new game: the initial position alone on the position stack, the table of remembered moves
// cleared, the deepening back at its first depth, the book in use again.
void NewGame();

}  // namespace vorlek
