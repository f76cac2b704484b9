#include "uci/uci_go.h"

#include <algorithm>
#include <sstream>

#include "board/types.h"
#include "search/time_control.h"

namespace vorlek::uci {

namespace {

constexpr int64_t MICROSECONDS_PER_MILLISECOND = 1000;
// Left on the clock for the interface to receive the move and stop the clock: at most this much, and at
// most half of what is left.
constexpr int64_t MOVE_OVERHEAD = 50 * MICROSECONDS_PER_MILLISECOND;

int64_t Reserve(int64_t clock) { return std::min(MOVE_OVERHEAD, clock / 2); }

}  // namespace

GoRequest ParseGo(const std::string& arguments, std::string& ignored) {
  GoRequest r;
  std::istringstream in(arguments);
  auto number = [&](auto& field) {
    long long value = 0;
    if (in >> value) field = static_cast<std::remove_reference_t<decltype(field)>>(value);
    in.clear();
  };
  for (std::string word; in >> word;) {
    if (word == "wtime") {
      number(r.time[0]);
    } else if (word == "btime") {
      number(r.time[1]);
    } else if (word == "winc") {
      number(r.increment[0]);
    } else if (word == "binc") {
      number(r.increment[1]);
    } else if (word == "movestogo") {
      number(r.movesToGo);
    } else if (word == "depth") {
      number(r.depth);
    } else if (word == "nodes") {
      number(r.nodes);
    } else if (word == "mate") {
      number(r.mate);
    } else if (word == "movetime") {
      number(r.moveTime);
    } else if (word == "infinite") {
      r.infinite = true;
    } else if (word == "ponder") {
      r.ponder = true;
    } else {  // "searchmoves" and its moves among them
      ignored += (ignored.empty() ? "" : " ") + word;
    }
  }
  return r;
}

bool PlaysAGameMove(const GoRequest& r) {
  return !r.infinite && !r.ponder && r.depth == 0 && r.nodes == 0 && r.mate == 0 &&
         (r.time[0] >= 0 || r.time[1] >= 0 || r.moveTime >= 0);
}

bool WaitsForStop(const GoRequest& r) {
  const bool limited = r.time[0] >= 0 || r.time[1] >= 0 || r.moveTime >= 0 || r.depth > 0 || r.nodes > 0 || r.mate > 0;
  return r.infinite || r.ponder || !limited;
}

SearchLimits LimitsFor(const GoRequest& r, int side, int ply) {
  SearchLimits limits;
  if (r.depth > 0) limits.maxDepth = std::min(r.depth, MAX_SEARCH_DEPTH);
  if (r.mate > 0) limits.maxDepth = std::min(limits.maxDepth, 2 * r.mate);
  limits.maxNodes = r.nodes;
  if (r.infinite) return limits;

  const int us = side == WHITE ? 0 : 1;
  if (r.time[us] >= 0) {
    const int64_t clock = r.time[us] * MICROSECONDS_PER_MILLISECOND;
    const int64_t theirs = r.time[1 - us] >= 0 ? r.time[1 - us] * MICROSECONDS_PER_MILLISECOND : clock;
    const int64_t movesToGo = r.movesToGo > 0 ? r.movesToGo : MovesToGo(0, ply);
    TimeAllotment allotment = ComputeTimeAllotment(movesToGo, clock, theirs, side);
    // The increment comes back with the move: it may be spent on it.
    allotment.budget += r.increment[us] * MICROSECONDS_PER_MILLISECOND;
    allotment.iterationLimit = IterationLimit(allotment.budget);
    limits.iterationLimit = allotment.iterationLimit;
    limits.abandonAfter = std::max<int64_t>(0, std::min(AbandonAfter(allotment, clock), clock - Reserve(clock)));
  } else if (r.moveTime >= 0) {
    // The move must be on the interface's side before the time is up: a tenth of it, and at least the
    // reserve of a clock, is left for the way there.
    const int64_t budget = r.moveTime * MICROSECONDS_PER_MILLISECOND;
    limits.iterationLimit = IterationLimit(budget);
    limits.abandonAfter = budget - std::max(Reserve(budget), budget / 10);
  }
  return limits;
}

}  // namespace vorlek::uci
