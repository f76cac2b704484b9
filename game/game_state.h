// game/game_state.h — the command loop's state and the game-wide values reset by a new game.
#pragma once
#include <cstdio>

namespace vorlek {

constexpr int SIDE_NONE = 99;
constexpr int LINE_SIZE = 200;  // 198 characters, the newline and the terminator

inline int engineSide = SIDE_NONE;  // WHITE, BLACK or SIDE_NONE
inline int gameResult = 0;          // last game-end code; the engine does not move while it is not 0
inline int levelMoves = 0;          // moves per time control, 0 for the whole game
inline int engineTime = 30000;      // centiseconds
inline int opponentTime = 30000;    // centiseconds
inline int useBook = 1;             // book moves are still looked for in this game
inline int maxThinkDepth = 32;      // no deeper iteration is begun; a fuzzer lowers it to stay quick

// Where protocol lines go (standard output in the engine) and the game log, when it could be opened.
inline FILE* engineOut = stdout;
inline FILE* logFile = nullptr;

// Writes one formatted line to the game log and flushes it; nothing when there is no log.
void WriteLog(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Starts a new game: initial position on the first record, table cleared, game-wide values reset.
void NewGame();

}  // namespace vorlek
