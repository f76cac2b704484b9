// Zobrist keys from the seeded generator, and the square values: material plus the bonus of the square.
#include "board/square_table.h"

#include <gtest/gtest.h>

#include <ostream>

#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::Sq;

class SquareTableFacts : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

// The 1037 draws of the key generator fill the slots, then the castling, en-passant and side keys: the first
// draw adds seed words 0 and 34, and every draw depends on all before it, so the last one, the side key,
// checks the whole sequence and its order (found with a slow re-count of the series when first written).
TEST_F(SquareTableFacts, FirstAndLastKeyOfTheDraws) {
  EXPECT_EQ(SquareTable.slots[0][0].key, 0x0000fab103782155ULL + 0x800001c00755fcc1ULL);
  EXPECT_EQ(SquareTable.castlingKeys[0], 0x40a56c3d00486dc7ULL);
  EXPECT_EQ(SquareTable.sideKey, 0xc056c02e10759de8ULL);
}

struct ValueCase {
  const char* name;
  int code;
  const char* square;  // in the owner's view
  int value;
};
std::ostream& operator<<(std::ostream& out, const ValueCase& c) { return out << c.name; }

class SquareValues : public ::testing::TestWithParam<ValueCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(SquareValues, MaterialPlusBonus) {
  const ValueCase& c = GetParam();
  EXPECT_EQ(SquareTable.slots[c.code][Sq(c.square)].value, c.value);
  EXPECT_EQ(SquareTable.slots[c.code | WHITE_PIECE][Sq(c.square)].value, c.value);
}

INSTANTIATE_TEST_SUITE_P(Board, SquareValues,
                         ::testing::Values(ValueCase{"KnightA1", KNIGHT, "a1", 295},
                                           // Castling moves the rook between squares of equal value.
                                           ValueCase{"RookA1", ROOK, "a1", 500},      //
                                           ValueCase{"RookH1", ROOK, "h1", 500},      //
                                           ValueCase{"RookB1", ROOK, "b1", 495},      //
                                           ValueCase{"PawnE2", PAWN, "e2", 98},       //
                                           ValueCase{"PawnE4", PAWN, "e4", 112},      //
                                           ValueCase{"PawnA7", PAWN, "a7", 160},      //
                                           ValueCase{"KnightD5", KNIGHT, "d5", 320},  //
                                           ValueCase{"QueenD1", QUEEN, "d1", 954},    //
                                           ValueCase{"KingE1", KING, "e1", 15000}),
                         [](const ::testing::TestParamInfo<ValueCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
