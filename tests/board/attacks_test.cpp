// The magic lookups against slow ray walks.
#include "board/attacks.h"

#include <gtest/gtest.h>

#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::WalkBishopLines;
using test::WalkRookLines;

// The squares of a slider's lines whose occupancy matters: a blocker there hides the squares behind it.
// These are all squares of the lines but the last of each.
Bitboard WalkMask(int sq, Bitboard (*walk)(int, Bitboard)) {
  const Bitboard lines = walk(sq, 0);
  Bitboard mask = 0;
  for (int t = 0; t < 64; ++t) {
    if ((lines & SquareBit(t)) && walk(sq, SquareBit(t)) != lines) mask |= SquareBit(t);
  }
  return mask;
}

// ---- magic lookups ----

// Every subset of each square's blocker mask, with random squares outside the mask (edges, other lines)
// that must not change the answer.
TEST(Attacks, MagicLookupsEqualRayWalksForEverySubsetOfEveryMask) {
  test::Random random(1);
  for (const bool rook : {true, false}) {
    const auto walk = rook ? WalkRookLines : WalkBishopLines;
    for (int sq = 0; sq < 64; ++sq) {
      const Bitboard mask = WalkMask(sq, walk);
      Bitboard subset = 0;
      do {
        const Bitboard occupancy = subset | (random.Next() & ~mask);
        ASSERT_EQ(rook ? RookAttacks(sq, occupancy) : BishopAttacks(sq, occupancy), walk(sq, occupancy))
            << (rook ? "rook" : "bishop") << " square " << sq;
        ASSERT_EQ(QueenAttacks(sq, occupancy), WalkRookLines(sq, occupancy) | WalkBishopLines(sq, occupancy));
        subset = (subset - mask) & mask;
      } while (subset);
    }
  }
}

}  // namespace
}  // namespace vorlek
