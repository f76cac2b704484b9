// The static evaluation against known values and a slow count, and a child's key and static value
// computed without making the move against the real thing, along random games.
#include "search/evaluation.h"

#include <gtest/gtest.h>

#include <iterator>
#include <ostream>
#include <vector>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "search/child_key.h"
#include "search/child_value.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

// What Evaluate adds to the incremental score for a position.
struct PlacementCase {
  const char* fen;
  int added;  // Evaluate - score: both kings' placement and the bishop term
};
void PrintTo(const PlacementCase& c, std::ostream* os) { *os << c.fen; }

class Placement : public ::testing::TestWithParam<PlacementCase> {};

TEST_P(Placement, AddsKingAndBishopTerms) {
  InitTables();
  ASSERT_TRUE(test::SetUpPosition(GetParam().fen));
  EXPECT_EQ(Evaluate(*current) - current->score, GetParam().added);
}

INSTANTIATE_TEST_SUITE_P(Positions, Placement,
                         ::testing::Values(
                             // 32 men: the opening table alone; the black king on e8 adds nothing.
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQRBKN w - - 0 1", 30},
                             // White's king on g1 seen by black to move counts against black.
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQRBKN b - - 0 1", -30},
                             // 16 men, king on g1: (16 x -5 + 16 x 30) / 32 = 12.5, rounded down.
                             PlacementCase{"r1b1kb2/pppp4/8/8/8/8/PPPP4/R1B2BK1 w - - 0 1", 12},
                             // Kings alone: on a1 (30 x 0 + 2 x -5) >> 5 = -1, not 0.
                             PlacementCase{"4k3/8/8/8/8/8/8/K7 w - - 0 1", -1},
                             // Three bishops against two: only exactly two bishops earn the pair.
                             PlacementCase{"2b1kb2/8/8/8/8/3B4/8/2B1KB2 w - - 0 1", -50},
                             // Two against two cancel.
                             PlacementCase{"2b1kb2/8/8/8/8/8/8/2B1KB2 w - - 0 1", 0}));

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

// Along random games from positions with every kind of move (castling, en passant, promotions to a
// third bishop, captures of one of a pair, scores far from zero): the evaluation matches the slow count
// and is negated when the board is turned over (the same placement, the other side to move), and for
// every move the child's key and static value, computed without making it, are what MakeMove gives.
TEST(Evaluation, RandomGamesMatchSlowCountAndChildren) {
  InitTables();
  std::vector<const char*> fens(std::begin(test::PERFT_POSITIONS), std::end(test::PERFT_POSITIONS));
  fens.insert(
      fens.end(),
      {"n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1", "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
       "rnbqkbnr/pppp1ppp/8/8/3Pp3/8/PPP1PPPP/RNBQKBNR b KQkq d3 0 2", "1b2k2b/1P4P1/8/8/8/8/8/2B1K1B1 w - - 0 1",
       "2b1kb2/8/8/8/8/8/3p4/2B1KB2 b - - 0 1", "QQQQkQQQ/QQQQQQQQ/8/8/8/8/8/4K3 b - - 0 1"});
  int positions = 0, checked = 0;
  ASSERT_TRUE(test::WalkRandomGames(fens, 20240611, 3, 120, [&](const char* fen, int ply) {
    const Position& p = *current;
    EXPECT_EQ(Evaluate(p), SlowEvaluate(p)) << fen << " ply " << ply;
    Position turned = p;
    FlipBoard(turned);
    EXPECT_EQ(Evaluate(turned), -Evaluate(p)) << fen << " ply " << ply;
    ++positions;
    FlatMoveList list;
    GenerateAllMoves(p, list);
    for (int i = 0; i < list.count; ++i) {
      const uint64_t predictedKey = ChildKey(*current, list.moves[i]);
      int predicted = 0;
      const bool known = ChildStaticValue(*current, list.moves[i], predicted);
      EXPECT_EQ(known, CapturedPiece(list.moves[i]) != KING) << fen << " ply " << ply;
      MakeMove(list.moves[i]);
      EXPECT_EQ(predictedKey, current->key) << fen << " ply " << ply << " move " << std::hex << list.moves[i];
      if (known) {
        EXPECT_EQ(predicted, Evaluate(*current)) << fen << " ply " << ply << " move " << std::hex << list.moves[i];
      }
      TakeBack();
      ++checked;
    }
    return !::testing::Test::HasFailure();
  }));
  EXPECT_GT(positions, 2000);
  EXPECT_GT(checked, 1000);
  // Positions without one king a side (a set-up may give them) are left to the real thing.
  for (const char* fen : {"4k3/8/8/8/8/8/8/R7 w - - 0 1", "4k3/8/8/8/8/8/8/R3K2K w - - 0 1"}) {
    ASSERT_EQ(test::SetUpPosition(fen), 1);
    int value = 0;
    EXPECT_FALSE(ChildStaticValue(*current, MakeMoveValue(ROOK, 0, 8, 0), value)) << fen;
  }
}

}  // namespace
}  // namespace vorlek
