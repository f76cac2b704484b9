#include "game/thinking_output.h"

#include <cstdio>
#include <cstring>

#include "board/notation.h"
#include "game/game_state.h"

namespace vorlek {

void FormatThinkingLine(char* line, size_t size, int depth, int score, int64_t elapsed, uint64_t nodeCount) {
  std::snprintf(line, size, "%3d%8d%5d%02d%12ld%s", depth, score, static_cast<int>(elapsed / 1000000),
                static_cast<int>(elapsed % 1000000 / 10000), static_cast<long>(nodeCount), " ");
}

void ThinkingOutput::Finished(const Iteration& it) {
  char line[512];
  FormatThinkingLine(line, sizeof line, it.depth, it.score, it.elapsed, it.nodes);
  // Each move of the variation as its text and a blank: a move without promotion is followed by two.
  size_t length = std::strlen(line);
  for (int i = 0; i < it.pvLength; ++i) {
    char text[MOVE_TEXT_SIZE];
    MoveToText(text, it.pv[i], SideAtPly(it, i));
    const int n = std::snprintf(line + length, sizeof line - length, "%s%s", text, " ");
    if (n < 0 || static_cast<size_t>(n) >= sizeof line - length) break;
    length += static_cast<size_t>(n);
  }
  WriteLog("%s\n", line);
  std::fprintf(engineOut, "%s\n", line);
  std::fflush(engineOut);
}

}  // namespace vorlek
