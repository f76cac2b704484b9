#include "game/game_state.h"

#include <cstdarg>

namespace vorlek {

void WriteLog(const char* format, ...) {
  if (!logFile) return;
  va_list args;
  va_start(args, format);
  std::vfprintf(logFile, format, args);
  va_end(args);
  std::fflush(logFile);
}

void ResetClocks() {
  levelMoves = 0;
  engineTime = 30000;
  opponentTime = 30000;
}

}  // namespace vorlek
