#include "search/time_control.h"

#include <algorithm>

#include "board/types.h"

namespace vorlek {

namespace {

constexpr int64_t EMERGENCY_STOP_MINIMUM = 10000000;  // microseconds

int64_t IterationDivisor(int64_t budget) {
  if (budget < 15000000) return 4;
  if (budget < 30000000) return 6;
  if (budget < 60000000) return 8;
  if (budget < 120000000) return 10;
  if (budget < 300000000) return 12;
  if (budget < 600000000) return 15;
  if (budget < 1200000000) return 18;
  return 25;
}

}  // namespace

int64_t IterationLimit(int64_t budget) { return budget / IterationDivisor(budget); }

int64_t MovesToGo(int levelMoves, int ply) {
  const int64_t fullMoves = ply / 2;
  if (levelMoves > 0) return levelMoves - fullMoves % levelMoves;
  // A negative count, from a malformed "level", is taken as a whole-game control.
  if (ply < 102) return 60 - fullMoves;
  return 10;
}

TimeAllotment ComputeTimeAllotment(int64_t movesToGo, int64_t engineClock, int64_t opponentClock, int side) {
  const int64_t E = engineClock, O = opponentClock;
  TimeAllotment t{};
  if (side == WHITE) {
    t.budget = E > O ? E - O + O / movesToGo : E / movesToGo;
  } else {
    t.budget = E - E / movesToGo > O ? E - O : E / movesToGo;
  }
  t.iterationLimit = IterationLimit(t.budget);
  return t;
}

int64_t AbandonAfter(const TimeAllotment& allotment, int64_t engineClock) {
  int64_t after = std::max<int64_t>(10 * allotment.budget, EMERGENCY_STOP_MINIMUM);
  if (engineClock > 0) after = std::min(after, engineClock * 4 / 5);
  return after;
}

}  // namespace vorlek
