// board/notation.h — moves as text in coordinate notation: "e2e4", "e7e8q", castling as the king's move
// ("e1g1"), squares always as white sees the board, whichever side moves.
#pragma once
#include "board/move.h"
#include "board/types.h"

namespace vorlek {

// The two squares named by a text's first four characters (a file a-h, a rank 1-8, twice), as white sees
// them; false when those characters are not two squares. Nothing beyond the fourth character is read.
bool ReadMoveSquares(const char* text, int& from, int& to);

// The promotion piece a letter names: n, b, r, q (lower case only); EMPTY for the end of the text; -1 for
// anything else.
int ReadPromotionLetter(char letter);

// A square as the side to move's record stores it (black's view is mirrored).
constexpr int ViewSquare(int square, int side) { return side == BLACK ? Mirror(square) : square; }

// Five characters and a terminator: from, to in white's coordinates, then the promotion letter or a blank.
// `side` is the side to move in the position where the move is made.
constexpr int MOVE_TEXT_SIZE = 6;
void MoveToText(char* text, Move move, int side);

// The same text without the blank after a move that does not promote ("e2e4", "e7e8q").
void MoveToPlainText(char* text, Move move, int side);

}  // namespace vorlek
