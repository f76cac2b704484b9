// board/user_move.h — a move typed in coordinate notation: read, found among the generated moves, checked
// and made. The xboard loop reads the opponent's moves with it, the UCI front end a game's moves.
#pragma once
#include "board/move.h"

namespace vorlek {

constexpr int MOVE_OK = 0;
constexpr int MOVE_NOT_FOUND = 1;
constexpr int MOVE_BAD_PROMOTION = 2;
constexpr int MOVE_LEAVES_CHECK = 3;

// `text` starts with two squares, then a lower-case promotion letter or the end of the text.
// On MOVE_OK the move is made on the position stack; on any other code nothing changes.
int ReadUserMove(const char* text);

// The same reading and tests without making the move: on MOVE_OK `move` is the move of the current position
// that the text names, legal there.
int FindUserMove(const char* text, Move& move);

}  // namespace vorlek
