// Copy-make on chosen moves: repetition counts, non-moves, and the game's history slid down
// the stack. (The slow reference checks every field of every move's record along random games, and the key
// and score against their computation from scratch, tests/search/reference_test.cpp.)
#include "board/make_move.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/history.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

class MakeMoveFacts : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

struct RepetitionCase {
  const char* name;
  const char* moves;
  int repetition;
};
std::ostream& operator<<(std::ostream& out, const RepetitionCase& c) { return out << c.name; }

class RepetitionCount : public ::testing::TestWithParam<RepetitionCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(RepetitionCount, FromTheInitialPosition) {
  test::SetUpInitialPosition();
  ASSERT_TRUE(test::PlayMoves(GetParam().moves));
  EXPECT_EQ(current->repetition, GetParam().repetition);
}

#define KNIGHTS_OUT_AND_BACK "g1f3 g8f6 f3g1 f6g8 "
INSTANTIATE_TEST_SUITE_P(
    Board, RepetitionCount,
    ::testing::Values(RepetitionCase{"FirstOccurrence", "g1f3 g8f6", 0},
                      RepetitionCase{"ThirdOccurrence", KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK, 2},
                      // The en-passant file is part of the position even when nobody can take.
                      RepetitionCase{"DoubleStepPositionDiffers", "e2e4 e7e5 " KNIGHTS_OUT_AND_BACK, 0},
                      RepetitionCase{"AfterACapture", "e2e4 d7d5 e4d5 d8d5 g1f3 d5d8 f3g1 d8d5 g1f3 d5d8 f3g1 d8d5",
                                     2}),
    [](const ::testing::TestParamInfo<RepetitionCase>& info) { return std::string(info.param.name); });

// Sliding the history down keeps the current record and the 255 before it, more than the fifty counter
// reaches back, and the count of plies played.
TEST_F(MakeMoveFacts, SlidingTheHistoryKeepsItsLastRecords) {
  test::SetUpInitialPosition();
  droppedPlies = 0;
  for (int i = 1; i <= GAME_HISTORY_LIMIT; ++i) {
    PositionStack[i] = PositionStack[0];
    PositionStack[i].key = static_cast<uint64_t>(i);
  }
  current = PositionStack + GAME_HISTORY_LIMIT;
  KeepRoomAboveHistory();
  EXPECT_EQ(GamePly(), GAME_HISTORY_LIMIT);
  EXPECT_EQ(StackIndex(current), 255);
  for (int i = 0; i <= 255; ++i) EXPECT_EQ(PositionStack[i].key, static_cast<uint64_t>(GAME_HISTORY_LIMIT - 255 + i));
}

TEST_F(MakeMoveFacts, RepetitionScanStopsWhereTheFiftyCounterEnds) {
  // The same position four plies back counts only when the fifty counter reaches four plies back.
  for (int fifty : {2, 3}) {
    test::SetUpInitialPosition();
    ASSERT_TRUE(test::PlayMoves("g1f3 g8f6 f3g1"));
    current->fifty = static_cast<uint8_t>(fifty);
    ASSERT_TRUE(test::PlayMoves("f6g8"));
    EXPECT_EQ(current->key, PositionStack[0].key);
    EXPECT_EQ(current->fifty, fifty + 1);
    EXPECT_EQ(current->repetition, fifty == 3 ? 1 : 0);
  }
}

}  // namespace
}  // namespace vorlek
