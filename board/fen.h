// board/fen.h — reading a position in Forsyth-Edwards Notation.
#pragma once
#include "board/position.h"

namespace vorlek {

// The reader reads at most this many characters of its text; callers that take a FEN from outside refuse a
// longer one rather than have its end cut off.
constexpr int MAX_FEN_LENGTH = 199;

// Fills `position` from FEN text. Returns 1 when the text was read completely, 0 when refused;
// a refusal leaves the fields written so far (see docs/behaviour.md).
int SetBoard(Position& position, const char* text);

}  // namespace vorlek
