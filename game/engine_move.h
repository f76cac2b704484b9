// game/engine_move.h — the engine's move: from the book while the game is in it, otherwise searched.
#pragma once

#include "search/deepening.h"

namespace vorlek {

// The limits of the engine's search from the xboard clocks ("time" and "otim", in centiseconds, and
// "level"), for the side to move in the current position, which is the engine's.
SearchLimits ClockLimits();

// Chooses the engine's move, writes its text into moveText (at least 6 bytes), logs it and makes it.
// Returns false, making nothing, when the side to move has no legal move.
bool Think(char* moveText);

}  // namespace vorlek
