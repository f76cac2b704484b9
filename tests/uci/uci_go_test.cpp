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
};
std::ostream& operator<<(std::ostream& out, const LimitsCase& c) { return out << "go " << c.go; }

class Limits : public ::testing::TestWithParam<LimitsCase> {};

TEST_P(Limits, FromTheArguments) {
  const LimitsCase& c = GetParam();
  std::string ignored;
  const GoRequest request = ParseGo(c.go, ignored);
  const SearchLimits limits = LimitsFor(request, c.side, c.ply);
  EXPECT_EQ(limits.iterationLimit, c.iterationLimit);
  EXPECT_EQ(limits.abandonAfter, c.abandonAfter);
  EXPECT_EQ(limits.maxDepth, c.maxDepth);
  EXPECT_EQ(limits.maxNodes, c.maxNodes);
  EXPECT_EQ(WaitsForStop(request), c.waits);
  EXPECT_EQ(PlaysAGameMove(request), c.bookMayAnswer);
}

constexpr int64_t NONE = NO_TIME_LIMIT;

INSTANTIATE_TEST_SUITE_P(
    Arguments, Limits,
    ::testing::Values(
        // 60 s each, the game reckoned at 60 moves: 1 s, a quarter of it for iterations; abandoned at ten
        // times the budget, no sooner than 10 s.
        LimitsCase{"Clocks", "wtime 60000 btime 60000", WHITE, 0, 250000, 10000000, MAX_SEARCH_DEPTH, 0, false, true},
        // The own increment is spent on the move.
        LimitsCase{"Increment", "wtime 60000 btime 60000 winc 1000 binc 3000", WHITE, 0, 500000, 20000000,
                   MAX_SEARCH_DEPTH, 0, false, true},
        // Black's own clock, and the clock rule: abandoned at four fifths of 1 s.
        LimitsCase{"BlacksClockRule", "wtime 100000 btime 1000", BLACK, 1, 4166, 800000, MAX_SEARCH_DEPTH, 0, false,
                   true},
        LimitsCase{"MovesToGo", "wtime 10000 btime 10000 movestogo 10", WHITE, 0, 250000, 8000000, MAX_SEARCH_DEPTH, 0,
                   false, true},
        // A fixed time: the move comes with a tenth of it to spare.
        LimitsCase{"MoveTime", "movetime 1000", WHITE, 0, 250000, 900000, MAX_SEARCH_DEPTH, 0, false, true},
        LimitsCase{"DepthAndNodes", "depth 5 nodes 1000", WHITE, 0, NONE, NONE, 5, 1000},
        LimitsCase{"Mate", "mate 2", BLACK, 0, NONE, NONE, 4},
        LimitsCase{"Infinite", "infinite", WHITE, 0, NONE, NONE, MAX_SEARCH_DEPTH, 0, true},
        LimitsCase{"NoLimit", "", WHITE, 0, NONE, NONE, MAX_SEARCH_DEPTH, 0, true},
        LimitsCase{"Ponder", "ponder wtime 60000 btime 60000", WHITE, 0, 250000, 10000000, MAX_SEARCH_DEPTH, 0, true}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace vorlek::uci
