// The position record: the initial key, the change of view, and the parts of the key.
#include "board/position.h"

#include <gtest/gtest.h>

#include <cstring>

#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

bool SameRecord(const Position& a, const Position& b) { return std::memcmp(&a, &b, sizeof(Position)) == 0; }

class PositionRecord : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_F(PositionRecord, InitialKeyIsTheXorOfPiecesAndRights) {
  const int codes[8] = {ROOK, KNIGHT, BISHOP, QUEEN, KING, BISHOP, KNIGHT, ROOK};
  uint64_t key = 0;
  for (int file = 0; file < 8; ++file) {
    key ^= SquareTable.slots[codes[file] | WHITE_PIECE][file].key;  // white back rank, real squares
    key ^= SquareTable.slots[PAWN | WHITE_PIECE][8 + file].key;
    key ^= SquareTable.slots[codes[file]][Mirror(56 + file)].key;  // black pieces in black's own view
    key ^= SquareTable.slots[PAWN][Mirror(48 + file)].key;
  }
  for (uint64_t k : SquareTable.castlingKeys) key ^= k;
  EXPECT_EQ(InitialPosition().key, key);
  EXPECT_EQ(ComputeKey(InitialPosition()), key);
  EXPECT_EQ(ComputeScore(InitialPosition()), 0);
}

TEST_F(PositionRecord, FlipBoardTwiceGivesTheRecordBack) {
  const char* fens[] = {
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w Kq - 7 1",
      "r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1",
      "8/8/8/3pP3/8/8/8/k6K w - d6 3 1",
  };
  for (const char* fen : fens) {
    ASSERT_EQ(test::SetUpPosition(fen), 1) << fen;
    const Position before = *current;
    Position p = before;
    FlipBoard(p);
    EXPECT_FALSE(SameRecord(p, before)) << fen;
    EXPECT_EQ(p.key, ComputeKey(p)) << fen;
    EXPECT_EQ(p.score, ComputeScore(p)) << fen;
    FlipBoard(p);
    EXPECT_TRUE(SameRecord(p, before)) << fen;
  }
}

TEST_F(PositionRecord, ComputeKeyCountsEachPartOfThePosition) {
  // Changing one part of a position changes the key by exactly that part's key.
  Position p = InitialPosition();
  const uint64_t key = ComputeKey(p);
  p.castling = 0x31;  // white's king-side right gone
  EXPECT_EQ(ComputeKey(p), key ^ SquareTable.castlingKeys[0]);
  p.castling = 0x13;  // black's king-side right gone
  EXPECT_EQ(ComputeKey(p), key ^ SquareTable.castlingKeys[1]);
  p.castling = 0x32;  // white's queen-side right gone
  EXPECT_EQ(ComputeKey(p), key ^ SquareTable.castlingKeys[2]);
  p.castling = 0x23;  // black's queen-side right gone
  EXPECT_EQ(ComputeKey(p), key ^ SquareTable.castlingKeys[3]);
  p.castling = 0x33;
  p.epFile = 2;
  EXPECT_EQ(ComputeKey(p), key ^ SquareTable.epKeys[2]);
}

}  // namespace
}  // namespace vorlek
