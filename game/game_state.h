// game/game_state.h — the xboard command loop's state: the sides, the result, the clocks, its output and the game log.
#pragma once
#include <cstdio>

namespace vorlek {

constexpr int SIDE_NONE = 99;

inline int engineSide = SIDE_NONE;  // WHITE, BLACK or SIDE_NONE
inline int gameResult = 0;          // last game-end code; the engine does not move while it is not 0
inline int levelMoves = 0;          // moves per time control, 0 for the whole game
inline int engineTime = 30000;      // centiseconds
inline int opponentTime = 30000;    // centiseconds
inline int maxThinkDepth = 32;      // no deeper iteration is begun; a fuzzer lowers it to stay quick

// Where protocol lines go (standard output in the engine) and the game log, when it could be opened.
inline FILE* engineOut = stdout;
inline FILE* logFile = nullptr;

// Writes one formatted line to the game log and flushes it; nothing when there is no log.
void WriteLog(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The clocks and the moves per control back to their values at the start of a game ("new", "setboard").
void ResetClocks();

}  // namespace vorlek
