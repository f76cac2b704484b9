// The position record: the initial position, its key, the change of view, the record after 1. e4.
#include "board/position.h"

#include <gtest/gtest.h>

#include <cstring>

#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::Sq;

bool SameRecord(const Position& a, const Position& b) { return std::memcmp(&a, &b, sizeof(Position)) == 0; }

class PositionRecord : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_F(PositionRecord, InitialPositionFields) {
  const Position p = InitialPosition();
  EXPECT_EQ(p.own, 0xffffu);
  EXPECT_EQ(Occupancy(p), 0xffff00000000ffffULL);  // ranks 1, 2, 7 and 8
  EXPECT_EQ(p.castling, 0x33);
  EXPECT_EQ(p.epFile, EP_NONE);
  EXPECT_EQ(p.fifty, 0);
  EXPECT_EQ(p.repetition, 0);
  EXPECT_EQ(p.side, WHITE);
  EXPECT_EQ(p.score, 0);
  const char* backRank = "RNBQKBNR";
  const int codes[8] = {ROOK, KNIGHT, BISHOP, QUEEN, KING, BISHOP, KNIGHT, ROOK};
  for (int file = 0; file < 8; ++file) {
    EXPECT_EQ(PieceAt(p, file), codes[file]) << backRank[file] << " on rank 1";
    EXPECT_EQ(PieceAt(p, 56 + file), codes[file]) << backRank[file] << " on rank 8";
    EXPECT_EQ(PieceAt(p, 8 + file), PAWN);
    EXPECT_EQ(PieceAt(p, 48 + file), PAWN);
  }
}

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

TEST_F(PositionRecord, FlipBoardTurnsTheInitialPositionOver) {
  Position p = InitialPosition();
  FlipBoard(p);
  EXPECT_EQ(p.own, 0xffffu);  // black's pieces, now on ranks 1 and 2
  EXPECT_EQ(Occupancy(p), 0xffff00000000ffffULL);
  EXPECT_EQ(PieceAt(p, Sq("e1")), KING);  // black's king, e8 seen from black
  EXPECT_EQ(PieceAt(p, Sq("d1")), QUEEN);
  EXPECT_EQ(p.side, BLACK);
  EXPECT_EQ(p.castling, 0x33);
  EXPECT_EQ(p.key, InitialPosition().key ^ SquareTable.sideKey);
  EXPECT_EQ(p.score, 0);
}

TEST_F(PositionRecord, FlipBoardExchangesTheCastlingNibbles) {
  Position p = InitialPosition();
  p.castling = 0x12;
  FlipBoard(p);
  EXPECT_EQ(p.castling, 0x21);
  p.castling = 0x03;
  FlipBoard(p);
  EXPECT_EQ(p.castling, 0x30);
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

TEST_F(PositionRecord, RecordAfterE2E4IsSeenFromBlack) {
  test::SetUpInitialPosition();
  const uint64_t initialKey = current->key;
  ASSERT_TRUE(test::PlayMoves("e2e4"));
  const Position& p = *current;
  EXPECT_EQ(StackIndex(current), 1);
  EXPECT_EQ(p.side, BLACK);
  EXPECT_EQ(p.epFile, 4);
  EXPECT_EQ(p.castling, 0x33);
  EXPECT_EQ(p.fifty, 0);
  EXPECT_EQ(p.own, 0xffffu);        // black's pawns on rank 2 of the record
  EXPECT_EQ(PieceAt(p, 36), PAWN);  // white's e4 pawn: e5 in black's view
  EXPECT_FALSE(p.own & SquareBit(36));
  EXPECT_EQ(PieceAt(p, 44), EMPTY);        // the en-passant target square
  EXPECT_EQ(PieceAt(p, Sq("e7")), EMPTY);  // white's e2 in black's view
  EXPECT_EQ(p.score, -(112 - 98));
  EXPECT_EQ(p.score, ComputeScore(p));
  EXPECT_EQ(p.key, initialKey ^ SquareTable.slots[PAWN | WHITE_PIECE][Sq("e2")].key ^
                       SquareTable.slots[PAWN | WHITE_PIECE][Sq("e4")].key ^ SquareTable.epKeys[4] ^
                       SquareTable.sideKey);
  EXPECT_EQ(p.key, ComputeKey(p));
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
