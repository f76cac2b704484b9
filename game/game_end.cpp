#include "game/game_end.h"

#include <cstdio>

#include "board/all_moves.h"
#include "board/attacks.h"
#include "game/game_state.h"

namespace vorlek {

int CheckGameEnd() {
  if (current->repetition == 2) return RESULT_REPETITION;
  if (HasLegalMove()) return current->fifty >= 100 ? RESULT_FIFTY_MOVES : RESULT_NONE;
  if (InCheck()) return current->side == WHITE ? RESULT_BLACK_WINS : RESULT_WHITE_WINS;
  return RESULT_STALEMATE;
}

void PrintResult(int code) {
  static const char* const LINES[] = {
      nullptr,
      "1-0 {vince il bianco}",
      "0-1 {vince il nero}",
      "1/2-1/2 {pari per stallo}",
      "1/2-1/2 {pari 50 mosse}",
      "1/2-1/2 {pari per ripetizione}",
  };
  if (code < 1 || code > 5) return;
  std::fprintf(engineOut, "%s\n", LINES[code]);
  std::fflush(engineOut);
  WriteLog("%s\n", LINES[code]);
}

}  // namespace vorlek
