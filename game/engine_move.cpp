#include "game/engine_move.h"

#include <cstdio>

#include "board/history.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "game/book.h"
#include "game/game_state.h"
#include "game/new_game.h"
#include "game/thinking_output.h"
#include "search/deepening.h"
#include "search/time_control.h"

namespace vorlek {

SearchLimits ClockLimits() {
  const int64_t engineClock = int64_t{engineTime} * 10000, opponentClock = int64_t{opponentTime} * 10000;
  const TimeAllotment allotment =
      ComputeTimeAllotment(MovesToGo(levelMoves, GamePly()), engineClock, opponentClock, current->side);
  SearchLimits limits;
  limits.iterationLimit = allotment.iterationLimit;
  limits.abandonAfter = AbandonAfter(allotment, engineClock);
  limits.maxDepth = maxThinkDepth;
  return limits;
}

bool Think(char* moveText) {
  KeepRoomAboveHistory();
  Move move = NextBookMove(useBook, *current);
  if (!move) {
    ThinkingOutput output;
    move = IterativeDeepening(ClockLimits(), output);
    std::fprintf(engineOut, "\n");
    std::fflush(engineOut);
  }
  if (!move) return false;
  MoveToText(moveText, move, current->side);
  WriteLog("Vorlek: %s\n", moveText);
  MakeMove(move);
  return true;
}

}  // namespace vorlek
