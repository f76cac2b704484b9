// The static evaluation: king placement between the two tables by the men on the board, rounding toward
// minus infinity, the bishop pair, and the symmetry between the two sides' views.
#include "search/evaluation.h"

#include <gtest/gtest.h>

#include <ostream>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::Sq;

class EvaluationTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_F(EvaluationTest, InitialPositionIsLevel) {
  test::SetUpInitialPosition();
  EXPECT_EQ(Evaluate(*current), 0);
}

// What Evaluate adds to the incremental score for a position.
struct PlacementCase {
  const char* fen;
  int added;  // Evaluate - score: both kings' placement and the bishop term
};
void PrintTo(const PlacementCase& c, std::ostream* os) { *os << c.fen; }

class Placement : public EvaluationTest, public ::testing::WithParamInterface<PlacementCase> {};

TEST_P(Placement, AddsKingAndBishopTerms) {
  ASSERT_TRUE(test::SetUpPosition(GetParam().fen));
  EXPECT_EQ(Evaluate(*current) - current->score, GetParam().added);
}

INSTANTIATE_TEST_SUITE_P(Positions, Placement,
                         ::testing::Values(
                             // 32 men: the opening table alone; the black king on e8 adds nothing.
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQRBKN w - - 0 1", 30},
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNKQRBBN w - - 0 1", 20},
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBKQBNR w - - 0 1", -10},
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQBRNK w - - 0 1", -5},
                             // The same from black's side: its king on g8 is on g1 in its own view.
                             PlacementCase{"rnbqrbkn/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b - - 0 1", 30},
                             // White's king on g1 seen by black to move counts against black.
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQRBKN b - - 0 1", -30},
                             // 16 men, king on g1: (16 x -5 + 16 x 30) / 32 = 12.5, rounded down.
                             PlacementCase{"r1b1kb2/pppp4/8/8/8/8/PPPP4/R1B2BK1 w - - 0 1", 12},
                             // Kings alone: on a1 (30 x 0 + 2 x -5) >> 5 = -1, not 0; on d4 440 / 32 rounds down to 13.
                             PlacementCase{"4k3/8/8/8/8/8/8/K7 w - - 0 1", -1},
                             PlacementCase{"4k3/8/8/8/3K4/8/8/8 w - - 0 1", 13},
                             // Both kings count: the opponent's a1 king in black's view is its a8 (-1 against white).
                             PlacementCase{"8/8/8/8/3K4/8/8/k7 w - - 0 1", 14},
                             PlacementCase{"8/8/8/8/3K4/8/8/k7 b - - 0 1", -14},
                             // Three bishops against two: only exactly two bishops earn the pair.
                             PlacementCase{"2b1kb2/8/8/8/8/3B4/8/2B1KB2 w - - 0 1", -50},
                             PlacementCase{"2b1kb2/8/8/8/8/3B4/8/2B1KB2 b - - 0 1", 50},
                             // One bishop against two, and two against two.
                             PlacementCase{"2b1kb2/8/8/8/8/8/8/2B1K3 w - - 0 1", -50},
                             PlacementCase{"2b1kb2/8/8/8/8/8/8/2B1KB2 w - - 0 1", 0}));

// Kings' terms at chosen squares and men counts; the shift rounds toward minus infinity.
struct KingTermCase {
  int index;
  int menCount;
  int term;
};
std::ostream& operator<<(std::ostream& out, const KingTermCase& c) {
  return out << "square " << c.index << " with " << c.menCount << " men";
}

class KingTerms : public EvaluationTest, public ::testing::WithParamInterface<KingTermCase> {};

TEST_P(KingTerms, InterpolateTheTables) { EXPECT_EQ(KingTerm(GetParam().index, GetParam().menCount), GetParam().term); }

INSTANTIATE_TEST_SUITE_P(Squares, KingTerms,
                         ::testing::Values(KingTermCase{Sq("g1"), 32, 30}, KingTermCase{Sq("c1"), 32, 20},
                                           KingTermCase{Sq("e1"), 32, 0}, KingTermCase{Sq("d1"), 32, -10},
                                           KingTermCase{Sq("f1"), 32, -10}, KingTermCase{Sq("h1"), 32, -5},
                                           KingTermCase{Sq("e2"), 32, -5}, KingTermCase{Sq("g1"), 16, 12},
                                           KingTermCase{Sq("a1"), 2, -1}, KingTermCase{Sq("d4"), 2, 13},
                                           // c1 and g1 hold -5 at the end, c8 and g8 hold 0.
                                           KingTermCase{Sq("c1"), 0, -5}, KingTermCase{Sq("c8"), 0, 0},
                                           KingTermCase{Sq("g8"), 0, 0}, KingTermCase{Sq("e5"), 0, 15},
                                           // -150 / 32 rounds to -5, -10 / 32 to -1.
                                           KingTermCase{Sq("a2"), 30, -5}, KingTermCase{Sq("b8"), 2, -1},
                                           // The opponent's half: its own g1 is g8 in the mover's view.
                                           KingTermCase{64 + Sq("g8"), 32, 30}, KingTermCase{64 + Sq("c8"), 0, -5},
                                           KingTermCase{64 + Sq("c1"), 0, 0}));

TEST_F(EvaluationTest, SecondHalvesMirrorTheRanks) {
  for (int sq = 0; sq < 64; ++sq) {
    EXPECT_EQ(KingOpeningTable[64 + sq], KingOpeningTable[sq ^ 56]) << sq;
    EXPECT_EQ(KingEndgameTable[64 + sq], KingEndgameTable[sq ^ 56]) << sq;
  }
}

// The same evaluation counted square by square, with a floor division instead of the shift.
int FloorDiv32(int x) { return x >= 0 ? x / 32 : -((-x + 31) / 32); }

int SlowEvaluate(const Position& p) {
  int men = 0, ownBishops = 0, opponentBishops = 0, ownKing = -1, opponentKing = -1;
  for (int sq = 0; sq < 64; ++sq) {
    const int code = PieceAt(p, sq);
    if (code == EMPTY) continue;
    const bool own = (p.own >> sq) & 1;
    ++men;
    if (code == BISHOP) ++(own ? ownBishops : opponentBishops);
    if (code == KING && own && ownKing < 0) ownKing = sq;
    if (code == KING && !own && opponentKing < 0) opponentKing = sq;
  }
  auto term = [&](int index) {
    return FloorDiv32((32 - men) * KingEndgameTable[index] + men * KingOpeningTable[index]);
  };
  return p.score + (ownBishops == 2 ? 50 : 0) - (opponentBishops == 2 ? 50 : 0) + term(ownKing) -
         term(64 + opponentKing);
}

// Positions along random games: the evaluation matches the slow count, and turning the board over
// (the same placement, the other side to move) negates it.
TEST_F(EvaluationTest, RandomGamesMatchSlowCountAndNegateWhenTurned) {
  test::Random random(20240611);
  int positions = 0;
  for (int game = 0; game < 40; ++game) {
    test::SetUpInitialPosition();
    for (int ply = 0; ply < 160; ++ply) {
      const Position& p = *current;
      ASSERT_EQ(Evaluate(p), SlowEvaluate(p)) << "game " << game << " ply " << ply;
      Position turned = p;
      FlipBoard(turned);
      ASSERT_EQ(Evaluate(turned), -Evaluate(p)) << "game " << game << " ply " << ply;
      ++positions;
      const std::vector<Move> moves = test::LegalMoves();
      if (moves.empty() || p.fifty >= 100) break;
      MakeMove(moves[random.Below(static_cast<int>(moves.size()))]);
    }
  }
  EXPECT_GT(positions, 2000);
}

}  // namespace
}  // namespace vorlek
