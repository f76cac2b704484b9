// game/engine_move.h — the engine's move: from the book while the game is in it, otherwise searched.
#pragma once

namespace vorlek {

// Chooses the engine's move, writes its text into moveText (at least 6 bytes), logs it and makes it.
// Returns false, making nothing, when the side to move has no legal move.
bool Think(char* moveText);

}  // namespace vorlek
