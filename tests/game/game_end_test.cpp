// The end of the game: mate, stalemate, fifty moves and repetition, and which of them comes first.
#include "game/game_end.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <string>

#include "board/init_tables.h"
#include "board/position.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* FOOLS_MATE = "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3";
#define KNIGHTS_OUT_AND_BACK "g1f3 g8f6 f3g1 f6g8 "

struct EndCase {
  const char* name;
  const char* fen;
  const char* moves;
  int result;
};
std::ostream& operator<<(std::ostream& out, const EndCase& c) { return out << c.name; }

class GameEnd : public ::testing::TestWithParam<EndCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(GameEnd, Result) {
  const EndCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(c.fen), 1);
  ASSERT_TRUE(test::PlayMoves(c.moves));
  Position* const at = current;
  const Position before = *current;
  EXPECT_EQ(CheckGameEnd(), c.result);
  EXPECT_EQ(current, at);
  EXPECT_EQ(std::memcmp(current, &before, sizeof(Position)), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Game, GameEnd,
    ::testing::Values(EndCase{"GameGoesOn", INITIAL, "e2e4", RESULT_NONE},
                      EndCase{"FoolsMate", INITIAL, "f2f3 e7e5 g2g4 d8h4", RESULT_BLACK_WINS},
                      EndCase{"ScholarsMate", INITIAL, "e2e4 e7e5 f1c4 b8c6 d1h5 g8f6 h5f7", RESULT_WHITE_WINS},
                      EndCase{"CheckWithAnAnswer", "4k3/8/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", RESULT_NONE},
                      EndCase{"BackRankMate", "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "a1a8", RESULT_WHITE_WINS},
                      EndCase{"CheckAnsweredOnlyByCapture", "6k1/5ppp/8/8/8/5q2/8/R5K1 w - - 0 1", "a1a8", RESULT_NONE},
                      EndCase{"StalemateBlackToMove", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", "", RESULT_STALEMATE},
                      EndCase{"StalemateWithFiftyAt100", "7k/5Q2/6K1/8/8/8/8/8 b - - 100 80", "", RESULT_STALEMATE},
                      EndCase{"MateWithFiftyAt100", "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 100 3",
                              "", RESULT_BLACK_WINS},
                      EndCase{"NoGeneratedMoveAtAll", "8/8/8/8/8/p7/P7/K7 b - - 0 1", "", RESULT_STALEMATE},
                      EndCase{"OnlyPseudoLegalMovesLeft", "k7/P7/1K6/8/8/8/8/8 b - - 0 1", "", RESULT_STALEMATE},
                      EndCase{"Fifty99", "4k3/8/8/8/8/8/8/4K2R w - - 99 80", "", RESULT_NONE},
                      EndCase{"Fifty100", "4k3/8/8/8/8/8/8/4K2R w - - 100 80", "", RESULT_FIFTY_MOVES},
                      EndCase{"FiftyResetByAPawnMove", "4k3/8/8/8/8/8/4P3/4K2R w - - 99 80", "e2e3", RESULT_NONE},
                      EndCase{"SecondOccurrence", INITIAL, KNIGHTS_OUT_AND_BACK, RESULT_NONE},
                      EndCase{"ThirdOccurrence", INITIAL, KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK, RESULT_REPETITION},
                      EndCase{"ThirdOccurrenceMidway", INITIAL, KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK "g1f3",
                              RESULT_REPETITION},
                      EndCase{"FourthOccurrence", INITIAL,
                              KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK, RESULT_NONE}),
    [](const ::testing::TestParamInfo<EndCase>& info) { return std::string(info.param.name); });

// Exactly two earlier occurrences make a repetition, which is judged before mate and fifty moves.
TEST(GameEndOrder, RepetitionOutranksMateAndFiftyMoves) {
  InitTables();
  ASSERT_EQ(test::SetUpPosition(FOOLS_MATE), 1);
  current->repetition = 2;
  EXPECT_EQ(CheckGameEnd(), RESULT_REPETITION);
  current->repetition = 3;
  EXPECT_EQ(CheckGameEnd(), RESULT_BLACK_WINS);
  ASSERT_EQ(test::SetUpPosition("4k3/8/8/8/8/8/8/4K2R w - - 100 80"), 1);
  current->repetition = 2;
  EXPECT_EQ(CheckGameEnd(), RESULT_REPETITION);
}

}  // namespace
}  // namespace vorlek
