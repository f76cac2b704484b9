// The quiescence search: standing pat, the illegal-position score, and which capture is tried first.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "board/fen.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "game/game_state.h"
#include "search/evaluation.h"
#include "search/search.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

void SetUpFen(const char* fen) {
  InitTables();
  NewGame();
  ASSERT_EQ(SetBoard(*current, fen), 1) << fen;
}

struct Result {
  int score;
  uint64_t nodes;
};
Result QuiesceOnce(int alpha, int beta) {
  nodes = 0;
  const int score = Quiesce(alpha, beta);
  return {score, nodes};
}

// Positions without a capture, promotion or en-passant capture for the side to move.
struct QuietCase {
  const char* fen;
  int alpha, beta;
};
void PrintTo(const QuietCase& c, std::ostream* os) { *os << c.fen << " (" << c.alpha << ", " << c.beta << ")"; }

class QuietPosition : public ::testing::TestWithParam<QuietCase> {};

TEST_P(QuietPosition, ReturnsTheBetterOfAlphaAndStaticValueInOneNode) {
  SetUpFen(GetParam().fen);
  const int standPat = Evaluate(*current);
  const Result r = QuiesceOnce(GetParam().alpha, GetParam().beta);
  EXPECT_EQ(r.score, std::max(GetParam().alpha, standPat));
  EXPECT_EQ(r.nodes, 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Windows, QuietPosition,
    ::testing::Values(QuietCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", -50, 50},
                      QuietCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 20, 50},
                      QuietCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", -50, 0},
                      // In check with no capture: no special treatment, it stands pat.
                      QuietCase{"4k3/8/8/4r3/8/8/8/R3K3 w - - 0 1", -15000, 15000},
                      QuietCase{"4k3/8/8/4r3/8/8/8/R3K3 w - - 0 1", 300, 15000}));

TEST(Quiesce, StandsPatAtOrAboveBetaWithoutSearching) {
  // White could take a queen and a rook (in check), or the king: at or above beta nothing is searched.
  for (const char* fen : {"r3k3/8/8/8/8/8/3q4/R3K2R w - - 0 1", "4k3/8/8/8/8/8/8/4RK2 w - - 0 1"}) {
    SetUpFen(fen);
    const int standPat = Evaluate(*current);
    for (const int beta : {standPat, standPat - 1, standPat - 1000}) {
      const Result r = QuiesceOnce(beta - 5000, beta);
      EXPECT_EQ(r.score, standPat) << fen << " " << beta;
      EXPECT_EQ(r.nodes, 1u) << fen << " " << beta;
    }
  }
}

TEST(Quiesce, KingCaptureScoresIllegalWithoutMakingAMove) {
  SetUpFen("4k3/8/8/8/8/8/8/4RK2 w - - 0 1");
  const Result r = QuiesceOnce(-15100, 15100);
  EXPECT_EQ(r.score, ILLEGAL_SCORE);
  EXPECT_EQ(r.nodes, 1u);
}

TEST(Quiesce, ResolvesCaptureSequences) {
  // Rxd5 wins a pawn, but d5 is guarded by the c6 pawn: Rxd5 cxd5 loses the exchange.
  SetUpFen("4k3/8/2p5/3p4/8/8/8/3RK3 w - - 0 1");
  const int standPat = Evaluate(*current);
  EXPECT_EQ(QuiesceOnce(-15000, 15000).score, standPat);
  // Without the guard the pawn falls.
  SetUpFen("4k3/8/8/3p4/8/8/8/3RK3 w - - 0 1");
  const int before = Evaluate(*current);
  EXPECT_GT(QuiesceOnce(-15000, 15000).score, before + 50);
}

// Value and nodes of one move at the root of a quiescence search with the window (alpha, beta).
Result MoveResult(const char* text, int alpha, int beta) {
  const Move m = test::FindMove(text);
  EXPECT_NE(m, MOVE_NONE) << text;
  MakeMove(m);
  nodes = 0;
  const int value = -Quiesce(-beta, -alpha);
  const uint64_t counted = nodes;
  TakeBack();
  return {value, counted};
}

TEST(Quiesce, EqualOrderValuesAreTriedInListOrder) {
  // The queen promotion by push (85) is generated before the pawn capture of the queen (85), so it is
  // searched first. Either reaches beta, and a cut-off in the quiescence search returns beta itself:
  // the nodes tell which move was searched.
  SetUpFen("4k3/1P6/8/3q4/4P3/8/8/4K3 w - - 0 1");
  const int standPat = Evaluate(*current);
  const int alpha = standPat, beta = standPat + 1;
  const Result promotion = MoveResult("b7b8q", alpha, beta);
  const Result capture = MoveResult("e4d5", alpha, beta);
  ASSERT_GE(promotion.score, beta);
  ASSERT_GE(capture.score, beta);
  ASSERT_NE(promotion.nodes, capture.nodes);
  const Result root = QuiesceOnce(alpha, beta);
  EXPECT_EQ(root.score, beta);
  EXPECT_EQ(root.nodes, 1 + promotion.nodes);
}

}  // namespace
}  // namespace vorlek
