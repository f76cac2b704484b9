// Perft: legal leaf counts of the public test positions.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "board/all_moves.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

struct PerftCase {
  const char* name;
  int position;  // index into test::PERFT_POSITIONS
  int depth;
  uint64_t leaves;
};
std::ostream& operator<<(std::ostream& out, const PerftCase& c) { return out << c.name << " depth " << c.depth; }

class PerftCounts : public ::testing::TestWithParam<PerftCase> {};

TEST_P(PerftCounts, CountsLegalLeaves) {
  const PerftCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(test::PERFT_POSITIONS[c.position]), 1);
  EXPECT_EQ(Perft(c.depth), c.leaves);
  EXPECT_EQ(current, PositionStack);
}

// About 17 million leaves: a second in an optimised build, a few seconds under the sanitizers.
INSTANTIATE_TEST_SUITE_P(PublicPositions, PerftCounts,
                         ::testing::Values(PerftCase{"Initial", 0, 5, 4865609}, PerftCase{"Kiwipete", 1, 4, 4085603},
                                           PerftCase{"Endgame", 2, 5, 674624}, PerftCase{"Promotions", 3, 4, 422333},
                                           PerftCase{"PromotionsMirrored", 4, 4, 422333},
                                           PerftCase{"Underpromotion", 5, 4, 2103487},
                                           PerftCase{"Middlegame", 6, 4, 3894594}),
                         [](const ::testing::TestParamInfo<PerftCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
