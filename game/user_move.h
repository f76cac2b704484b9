// game/user_move.h — the opponent's move in coordinate notation: found, checked and made.
#pragma once

namespace vorlek {

constexpr int MOVE_OK = 0;
constexpr int MOVE_NOT_FOUND = 1;
constexpr int MOVE_BAD_PROMOTION = 2;
constexpr int MOVE_LEAVES_CHECK = 3;

// `text` starts with two squares (already checked by the caller), then an optional promotion letter.
// On MOVE_OK the move is made on the position stack; on any other code nothing changes.
int ReadUserMove(const char* text);

}  // namespace vorlek
