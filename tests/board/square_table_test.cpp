// Zobrist keys from the seeded generator, and the square values of every piece.
#include "board/square_table.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::Sq;

class SquareTableFacts : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

// The key sequence as a flat series: w[0..63] are the seed words, and every later word is the sum of
// the words 63 and 29 places before it. The first key is w[63].
std::vector<uint64_t> KeySeries(int count) {
  std::vector<uint64_t> w = {
      0x0000fab103782155, 0x003e45aa83e55101, 0x0000000000115feb, 0xf00173bbc9053111,  //
      0x0100dda436670311, 0xc2df6f8b90003678, 0x667dbc2574ae9770, 0x111fa8177b143214,  //
      0x8896453eed221da3, 0x744325dbb6789540, 0x0000436111d7cb43, 0x880ff4f5f32c0049,  //
      0x15154d7a210eae65, 0x915fd6b6435bd0f0, 0x0040060fa4025571, 0x48766321ffe4cca2,  //
      0x264dd68311fa355d, 0x886477d4b20001a2, 0x1000f4c378000cca, 0x3712ab5ccc790873,  //
      0xfffff25489990144, 0xa3590271bc556438, 0xce4ee16888f11234, 0x45a745339c0a00f1,  //
      0x0016f39ae377cb4f, 0x0010573d44e12b60, 0x5467a09ddb873811, 0x69f3712131a81095,  //
      0x729999bac5335147, 0x0007aa42796078bb, 0xa43756498ced2746, 0x5723d5c7156000aa,  //
      0x7734c70929183a65, 0x99cca4480e2e4d12, 0x800001c00755fcc1, 0x00000000000083a2,  //
      0x466434598d234156, 0xc076fbb32a94ed62, 0xac4896765453211f, 0x5739786894321caa,  //
      0xdd37568456a4bc36, 0x74538473e214bc34, 0x6378dd00000001ab, 0x472341a88ed49354,  //
      0xca54cab456baac79, 0x8361511111ffa400, 0x0000007452aed091, 0x34654f890b3333ca,  //
      0x88833254aaaa4321, 0xd4ee56289653ced4, 0xf43200ab12d65ec7, 0x49208532aa90b325,  //
      0xa00004627a12ee38, 0xcc45437479660354, 0xeed352777231caa7, 0xbb478365d7a21011,  //
      0x9d543e327444659c, 0x82351aac8342456f, 0x83565758435366a0, 0xeeaa450045475823,  //
      0x468213224435dda7, 0xc765cc9945362012, 0x7ff3200000cda132,
  };
  while (static_cast<int>(w.size()) < 63 + count) w.push_back(w[w.size() - 63] + w[w.size() - 29]);
  return std::vector<uint64_t>(w.begin() + 63, w.end());
}

TEST_F(SquareTableFacts, KeysAreDrawnInTableOrder) {
  const std::vector<uint64_t> keys = KeySeries(1037);
  int n = 0;
  for (int slot = 0; slot < 16; ++slot) {
    for (int sq = 0; sq < 64; ++sq, ++n) {
      ASSERT_EQ(SquareTable.slots[slot][sq].key, keys[n]) << "slot " << slot << " square " << sq;
    }
  }
  for (int i = 0; i < 4; ++i, ++n) EXPECT_EQ(SquareTable.castlingKeys[i], keys[n]) << "castling key " << i;
  for (int i = 0; i < 8; ++i, ++n) EXPECT_EQ(SquareTable.epKeys[i], keys[n]) << "en-passant key " << i;
  EXPECT_EQ(SquareTable.sideKey, keys[n]);
}

TEST_F(SquareTableFacts, ValuesAreTheSameForBothColours) {
  for (int code = 0; code < 8; ++code) {
    for (int sq = 0; sq < 64; ++sq) {
      EXPECT_EQ(SquareTable.slots[code][sq].value, SquareTable.slots[code | WHITE_PIECE][sq].value)
          << "code " << code << " square " << sq;
    }
  }
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
                                           ValueCase{"RookE7", ROOK, "e7", 510},      //
                                           ValueCase{"PawnE2", PAWN, "e2", 98},       //
                                           ValueCase{"PawnE4", PAWN, "e4", 112},      //
                                           ValueCase{"PawnD6", PAWN, "d6", 130},      //
                                           ValueCase{"PawnA7", PAWN, "a7", 160},      //
                                           ValueCase{"KnightD5", KNIGHT, "d5", 320},  //
                                           ValueCase{"BishopA3", BISHOP, "a3", 295},  //
                                           ValueCase{"QueenD1", QUEEN, "d1", 954},    //
                                           ValueCase{"KingE1", KING, "e1", 15000},    //
                                           ValueCase{"EmptyE4", EMPTY, "e4", 0}),
                         [](const ::testing::TestParamInfo<ValueCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
