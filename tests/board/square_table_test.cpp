// Zobrist keys from the seeded generator. (The square values are checked by the node-count signatures and,
// colour against colour, by the reference along random games.)
#include "board/square_table.h"

#include <gtest/gtest.h>

namespace vorlek {
namespace {

// The 1037 draws of the key generator fill the slots, then the castling, en-passant and side keys: the first
// draw adds seed words 0 and 34, and every draw depends on all before it, so the last one, the side key,
// checks the whole sequence and its order (found with a slow re-count of the series when first written).
TEST(SquareTableFacts, FirstAndLastKeyOfTheDraws) {
  EXPECT_EQ(SquareTable.slots[0][0].key, 0x0000fab103782155ULL + 0x800001c00755fcc1ULL);
  EXPECT_EQ(SquareTable.castlingKeys[0], 0x40a56c3d00486dc7ULL);
  EXPECT_EQ(SquareTable.sideKey, 0xc056c02e10759de8ULL);
}

}  // namespace
}  // namespace vorlek
