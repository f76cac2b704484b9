// The variation vorlek-uci shows for an iteration, in process: no longer than the mate its score announces.
#include "uci/uci_search.h"

#include <gtest/gtest.h>

#include "board/user_move.h"
#include "search/search.h"
#include "support/board_helpers.h"

namespace vorlek::uci {
namespace {

struct ShownCase {
  int depth, score, shown;
};

class UciShownVariation : public ::testing::TestWithParam<ShownCase> {};

TEST_P(UciShownVariation, EndsWithTheMate) {
  test::SetUpInitialPosition();
  // Four moves read from the table; a score says where a mate stands.
  Move pv[4];
  const char* moves[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  for (int i = 0; i < 4; ++i) {
    ASSERT_EQ(FindUserMove(moves[i], pv[i]), MOVE_OK);
    ASSERT_EQ(ReadUserMove(moves[i]), MOVE_OK);
  }
  test::SetUpInitialPosition();
  const Iteration it{GetParam().depth, GetParam().score, 0, 0, pv, 4, WHITE, 1};
  EXPECT_EQ(ShownLength(it), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Scores, UciShownVariation,
                         ::testing::Values(ShownCase{6, 25, 4},                 // no mate: the whole variation
                                           ShownCase{6, MATE_SCORE + 5, 1},     // the side to move mates in one ply
                                           ShownCase{6, MATE_SCORE + 3, 3},     // in three plies
                                           ShownCase{6, -(MATE_SCORE + 4), 2},  // is mated in two plies
                                           ShownCase{6, MATE_SCORE + 7, 4}));   // beyond the depth: no mate read

}  // namespace
}  // namespace vorlek::uci
