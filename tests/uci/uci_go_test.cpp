// The "go" command's arguments and the limits they give the search: the engine's allotment from the clocks
// with the increment, a fixed move time, depth, nodes and mate limits, and when the move waits for "stop".
#include "uci/uci_go.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "board/types.h"

namespace vorlek::uci {
namespace {

struct LimitsCase {
  const char* name;
  const char* go;
  int side, ply;
  int64_t iterationLimit, abandonAfter;  // microseconds; NO_TIME_LIMIT when none
  int maxDepth = MAX_SEARCH_DEPTH;
  uint64_t maxNodes = 0;
  bool waits = false, bookMayAnswer = false;
  int moveOverhead = DEFAULT_MOVE_OVERHEAD;
};
std::ostream& operator<<(std::ostream& out, const LimitsCase& c) { return out << "go " << c.go; }

class UciLimits : public ::testing::TestWithParam<LimitsCase> {};

TEST_P(UciLimits, FromTheArguments) {
  const LimitsCase& c = GetParam();
  std::string ignored;
  const GoRequest request = ParseGo(c.go, ignored);
  const SearchLimits limits = LimitsFor(request, c.side, c.ply, c.moveOverhead);
  EXPECT_EQ(limits.iterationLimit, c.iterationLimit);
  EXPECT_EQ(limits.abandonAfter, c.abandonAfter);
  EXPECT_EQ(limits.maxDepth, c.maxDepth);
  EXPECT_EQ(limits.maxNodes, c.maxNodes);
  EXPECT_EQ(WaitsForStop(request), c.waits);
  EXPECT_EQ(PlaysAGameMove(request), c.bookMayAnswer);
}

constexpr int64_t NONE = NO_TIME_LIMIT;

INSTANTIATE_TEST_SUITE_P(
    Arguments, UciLimits,
    ::testing::Values(
        // 60 s each, less the move overhead of 50 ms, the game reckoned at 60 moves: 1 s, a quarter of it for
        // iterations; abandoned at ten times the budget, no sooner than 10 s.
        LimitsCase{"Clocks", "wtime 60000 btime 60000", WHITE, 0, 249791, 10000000, MAX_SEARCH_DEPTH, 0, false, true},
        // The own increment is spent on the move.
        LimitsCase{"Increment", "wtime 60000 btime 60000 winc 1000 binc 3000", WHITE, 0, 499791, 19991660,
                   MAX_SEARCH_DEPTH, 0, false, true},
        // Black's own clock, and the clock rule: abandoned at four fifths of what 1 s leaves after the overhead.
        LimitsCase{"BlacksClockRule", "wtime 100000 btime 1000", BLACK, 1, 3958, 760000, MAX_SEARCH_DEPTH, 0, false,
                   true},
        // One clock given alone: the other is taken to be the same.
        LimitsCase{"OwnClockAlone", "btime 1000", BLACK, 1, 3958, 760000, MAX_SEARCH_DEPTH, 0, false, true},
        LimitsCase{"MovesToGo", "wtime 10000 btime 10000 movestogo 10", WHITE, 0, 248750, 7960000, MAX_SEARCH_DEPTH, 0,
                   false, true},
        // The move overhead comes off the clock first: 300 ms of 1 s leave 700 ms; none leaves all of it.
        LimitsCase{"MoveOverhead", "wtime 1000 btime 1000", WHITE, 0, 2916, 560000, MAX_SEARCH_DEPTH, 0, false, true,
                   300},
        LimitsCase{"NoMoveOverhead", "wtime 1000 btime 1000", WHITE, 0, 4166, 800000, MAX_SEARCH_DEPTH, 0, false, true,
                   0},
        // A fixed time: the overhead and a tenth of the rest are left. Analysis panes send it (ChessX): the
        // book does not answer.
        LimitsCase{"MoveTime", "movetime 1000", WHITE, 0, 237500, 855000, MAX_SEARCH_DEPTH, 0, false, false},
        // The interface asks about chosen moves: the book does not answer.
        LimitsCase{"SearchMoves", "wtime 1000 btime 1000 searchmoves e2e4 d2d4", WHITE, 0, 3958, 760000,
                   MAX_SEARCH_DEPTH, 0, false, false},
        LimitsCase{"DepthAndNodes", "depth 5 nodes 1000", WHITE, 0, NONE, NONE, 5, 1000},
        LimitsCase{"Mate", "mate 2", BLACK, 0, NONE, NONE, 4},
        LimitsCase{"Infinite", "infinite", WHITE, 0, NONE, NONE, MAX_SEARCH_DEPTH, 0, true},
        LimitsCase{"NoLimit", "", WHITE, 0, NONE, NONE, MAX_SEARCH_DEPTH, 0, true},
        // Pondering: once "ponderhit" starts the clock, the move comes within the budget whatever iteration runs.
        LimitsCase{"Ponder", "ponder wtime 60000 btime 60000", WHITE, 0, 249791, 999166, MAX_SEARCH_DEPTH, 0, true}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace vorlek::uci
