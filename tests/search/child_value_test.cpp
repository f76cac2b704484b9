// The static value of a move's child computed without making the move, against Evaluate after MakeMove.
#include "search/child_value.h"

#include <gtest/gtest.h>

#include <vector>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

TEST(ChildStaticValue, MatchesEvaluateAfterMakeMove) {
  InitTables();
  const auto fens = {
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
      "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
      "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1",
      "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
      // Bishops: promotions to a third bishop, captures of one of a pair.
      "1b2k2b/1P4P1/8/8/8/8/8/2B1K1B1 w - - 0 1",
      "2b1kb2/8/8/8/8/8/3p4/2B1KB2 b - - 0 1",
      // Crowded: scores far from zero.
      "QQQQkQQQ/QQQQQQQQ/8/8/8/8/8/4K3 b - - 0 1",
  };
  int checked = 0;
  ASSERT_TRUE(test::WalkRandomGames(fens, 4242, 1, 16, [&](const char* fen, int ply) {
    FlatMoveList list;
    GenerateAllMoves(*current, list);
    for (int i = 0; i < list.count; ++i) {
      int predicted = 0;
      const bool known = ChildStaticValue(*current, list.moves[i], predicted);
      EXPECT_EQ(known, CapturedPiece(list.moves[i]) != KING) << fen << " ply " << ply;
      if (!known) continue;
      MakeMove(list.moves[i]);
      EXPECT_EQ(predicted, Evaluate(*current)) << fen << " ply " << ply << " move " << std::hex << list.moves[i];
      TakeBack();
      ++checked;
    }
    return true;
  }));
  EXPECT_GT(checked, 1000);
}

TEST(ChildStaticValue, LeavesPositionsWithoutOneKingASideAlone) {
  InitTables();
  ASSERT_EQ(test::SetUpPosition("4k3/8/8/8/8/8/8/R7 w - - 0 1"), 1);
  int value = 0;
  EXPECT_FALSE(ChildStaticValue(*current, MakeMoveValue(ROOK, 0, 8, 0), value));
  ASSERT_EQ(test::SetUpPosition("4k3/8/8/8/8/8/8/R3K2K w - - 0 1"), 1);
  EXPECT_FALSE(ChildStaticValue(*current, MakeMoveValue(ROOK, 0, 8, 0), value));
}

}  // namespace
}  // namespace vorlek
