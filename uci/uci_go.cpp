#include "uci/uci_go.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "board/types.h"
#include "search/time_control.h"

namespace vorlek::uci {

namespace {

constexpr int64_t MICROSECONDS_PER_MILLISECOND = 1000;

bool HasClock(const GoRequest& r) { return r.time[0] >= 0 || r.time[1] >= 0; }

}  // namespace

GoRequest ParseGo(const std::string& arguments, std::string& ignored) {
  GoRequest r;
  std::istringstream in(arguments);
  auto number = [&](auto& field) {
    long long value = 0;
    if (in >> value) field = static_cast<std::remove_reference_t<decltype(field)>>(value);
    in.clear();
  };
  bool moves = false;  // the words after "searchmoves" are moves until the next keyword
  for (std::string word; in >> word;) {
    if (word == "searchmoves") {
      moves = true;
      continue;
    }
    static const char* const KEYWORDS[] = {"wtime", "btime", "winc",     "binc",     "movestogo", "depth",
                                           "nodes", "mate",  "movetime", "infinite", "ponder"};
    if (std::find(std::begin(KEYWORDS), std::end(KEYWORDS), word) != std::end(KEYWORDS)) moves = false;
    if (moves) {
      r.searchMoves.push_back(word);
    } else if (word == "wtime") {
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
    } else {
      ignored += (ignored.empty() ? "" : " ") + word;
    }
  }
  return r;
}

bool PlaysAGameMove(const GoRequest& r) {
  return !r.infinite && !r.ponder && r.depth == 0 && r.nodes == 0 && r.mate == 0 && r.searchMoves.empty() &&
         HasClock(r);
}

bool WaitsForStop(const GoRequest& r) {
  const bool limited = HasClock(r) || r.moveTime >= 0 || r.depth > 0 || r.nodes > 0 || r.mate > 0;
  return r.infinite || r.ponder || !limited;
}

SearchLimits LimitsFor(const GoRequest& r, int side, int ply, int moveOverhead) {
  // Left for the way of the move to the interface and of its clock back: the overhead, at most half of
  // what there is.
  const auto reserve = [&](int64_t time) {
    return std::min(int64_t{moveOverhead} * MICROSECONDS_PER_MILLISECOND, std::max<int64_t>(time, 0) / 2);
  };
  SearchLimits limits;
  if (r.depth > 0) limits.maxDepth = std::min(r.depth, MAX_SEARCH_DEPTH);
  if (r.mate > 0) limits.maxDepth = std::min(limits.maxDepth, 2 * r.mate);
  limits.maxNodes = r.nodes;
  limits.maxDepth = std::min(limits.maxDepth, searchDepthCap);
  if (searchNodeCap != 0)
    limits.maxNodes = limits.maxNodes == 0 ? searchNodeCap : std::min(limits.maxNodes, searchNodeCap);
  if (r.infinite) return limits;

  const int us = side == WHITE ? 0 : 1;
  if (r.time[us] >= 0) {
    // The reserve comes off the clock before anything is reckoned from it.
    const int64_t given = r.time[us] * MICROSECONDS_PER_MILLISECOND;
    const int64_t clock = given - reserve(given);
    const int64_t theirs = r.time[1 - us] >= 0 ? r.time[1 - us] * MICROSECONDS_PER_MILLISECOND : given;
    const int64_t movesToGo = r.movesToGo > 0 ? r.movesToGo : MovesToGo(0, ply);
    TimeAllotment allotment = ComputeTimeAllotment(movesToGo, clock, theirs, side);
    // The increment comes back with the move: it may be spent on it.
    allotment.budget += r.increment[us] * MICROSECONDS_PER_MILLISECOND;
    allotment.iterationLimit = IterationLimit(allotment.budget);
    limits.iterationLimit = allotment.iterationLimit;
    limits.abandonAfter = std::max<int64_t>(0, AbandonAfter(allotment, clock));
    // Pondering searches on, and may be deep in an iteration when the opponent plays the move pondered
    // on: from then (the clock starts at "ponderhit") the move comes within the budget.
    if (r.ponder) limits.abandonAfter = std::min(limits.abandonAfter, std::max<int64_t>(allotment.budget, 0));
  } else if (r.moveTime >= 0) {
    // The move must be on the interface's side before the time is up: the reserve, and a tenth of the
    // rest for the way back through an adapter, are left.
    const int64_t given = r.moveTime * MICROSECONDS_PER_MILLISECOND;
    const int64_t budget = given - reserve(given);
    limits.iterationLimit = IterationLimit(budget);
    limits.abandonAfter = budget - budget / 10;
  }
  return limits;
}

}  // namespace vorlek::uci
