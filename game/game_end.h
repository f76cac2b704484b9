// game/game_end.h — whether the game is over after a move, and the result lines.
#pragma once

namespace vorlek {

constexpr int RESULT_NONE = 0;
constexpr int RESULT_WHITE_WINS = 1;
constexpr int RESULT_BLACK_WINS = 2;
constexpr int RESULT_STALEMATE = 3;
constexpr int RESULT_FIFTY_MOVES = 4;
constexpr int RESULT_REPETITION = 5;

// Result code of the current position: repetition first, then mate or stalemate, then fifty moves.
int CheckGameEnd();

// Writes the result line of `code` (1..5) to the protocol output and to the log; other codes write nothing.
void PrintResult(int code);

}  // namespace vorlek
