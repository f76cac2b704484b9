// The key of a move's child computed without making the move, against the key MakeMove gives.
#include "search/child_key.h"

#include <gtest/gtest.h>

#include <vector>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

// The search asks for a child's entry ahead of time with the key computed without making the move;
// it must be the key MakeMove gives, for every kind of move (castling rights and en passant included).
TEST(ChildKey, MatchesTheKeyAfterMakeMove) {
  InitTables();
  const auto fens = {
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1",
      "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
      "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
      "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1",
      "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
      "rnbqkbnr/pppp1ppp/8/8/3Pp3/8/PPP1PPPP/RNBQKBNR b KQkq d3 0 2",
      "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1",
      "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1",
  };
  int checked = 0;
  ASSERT_TRUE(test::WalkRandomGames(fens, 99, 1, 12, [&](const char* fen, int ply) {
    FlatMoveList list;
    GenerateAllMoves(*current, list);
    for (int i = 0; i < list.count; ++i) {
      const uint64_t predicted = ChildKey(*current, list.moves[i]);
      MakeMove(list.moves[i]);
      EXPECT_EQ(predicted, current->key) << fen << " ply " << ply << " move " << std::hex << list.moves[i];
      TakeBack();
      ++checked;
    }
    return true;
  }));
  EXPECT_GT(checked, 1000);
}

}  // namespace
}  // namespace vorlek
