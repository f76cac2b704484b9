// The end of the game the loop judges on the position stack: mate, stalemate, fifty moves or repetition, and
// which comes first.
#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <string>

#include "board/position.h"
#include "game/game_end.h"
#include "support/board_helpers.h"

namespace vorlek::test {
namespace {

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
#define KNIGHTS_OUT_AND_BACK "g1f3 g8f6 f3g1 f6g8 "

// The result of the position after the moves; judging it leaves the position as it was.
struct EndCase {
  const char* name;
  const char* fen;
  const char* moves;
  int result;
};
std::ostream& operator<<(std::ostream& out, const EndCase& c) { return out << c.name; }

class GameEnd : public ::testing::TestWithParam<EndCase> {};

TEST_P(GameEnd, Result) {
  const EndCase& c = GetParam();
  ASSERT_EQ(SetUpPosition(c.fen), 1);
  ASSERT_TRUE(PlayMoves(c.moves));
  Position* const at = current;
  const Position before = *current;
  EXPECT_EQ(CheckGameEnd(), c.result);
  EXPECT_EQ(current, at);
  EXPECT_EQ(std::memcmp(current, &before, sizeof(Position)), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Game, GameEnd,
    ::testing::Values(EndCase{"FoolsMate", INITIAL, "f2f3 e7e5 g2g4 d8h4", RESULT_BLACK_WINS},
                      EndCase{"BackRankMate", "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "a1a8", RESULT_WHITE_WINS},
                      EndCase{"CheckAnsweredOnlyByCapture", "6k1/5ppp/8/8/8/5q2/8/R5K1 w - - 0 1", "a1a8", RESULT_NONE},
                      EndCase{"StalemateWithFiftyAt100", "7k/5Q2/6K1/8/8/8/8/8 b - - 100 80", "", RESULT_STALEMATE},
                      EndCase{"MateWithFiftyAt100", "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 100 3",
                              "", RESULT_BLACK_WINS},
                      EndCase{"NoGeneratedMoveAtAll", "8/8/8/8/8/p7/P7/K7 b - - 0 1", "", RESULT_STALEMATE},
                      EndCase{"OnlyPseudoLegalMovesLeft", "k7/P7/1K6/8/8/8/8/8 b - - 0 1", "", RESULT_STALEMATE},
                      EndCase{"Fifty99", "4k3/8/8/8/8/8/8/4K2R w - - 99 80", "", RESULT_NONE},
                      EndCase{"Fifty100", "4k3/8/8/8/8/8/8/4K2R w - - 100 80", "", RESULT_FIFTY_MOVES},
                      EndCase{"ThirdOccurrence", INITIAL, KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK, RESULT_REPETITION},
                      // Repetition is judged before fifty moves.
                      EndCase{"RepetitionAtFifty", "4k3/8/8/8/8/8/8/4K2R w - - 92 80",
                              "h1h2 e8d8 h2h1 d8e8 h1h2 e8d8 h2h1 d8e8", RESULT_REPETITION},
                      EndCase{"FourthOccurrence", INITIAL,
                              KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK, RESULT_NONE}),
    [](const ::testing::TestParamInfo<EndCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek::test
