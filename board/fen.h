// board/fen.h — reading a position in Forsyth-Edwards Notation.
#pragma once
#include "board/position.h"

namespace vorlek {

// Fills `position` from FEN text. Returns 1 when the text was read completely, 0 when refused;
// a refusal leaves the fields written so far (see docs/behaviour.md).
int SetBoard(Position& position, const char* text);

}  // namespace vorlek
