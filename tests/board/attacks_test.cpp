// The magic lookups against slow ray walks.
#include "board/attacks.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

#include "support/board_helpers.h"

namespace vorlek {
namespace {

// The squares a slider on sq reaches by the steps (file, rank) given, walked square by square: each line
// ends on the first occupied square, which it includes.
Bitboard Walk(int sq, Bitboard occupancy, std::initializer_list<std::pair<int, int>> steps) {
  Bitboard seen = 0;
  for (const auto& [df, dr] : steps) {
    for (int f = sq % 8 + df, r = sq / 8 + dr; f >= 0 && f < 8 && r >= 0 && r < 8; f += df, r += dr) {
      seen |= SquareBit(r * 8 + f);
      if (occupancy & SquareBit(r * 8 + f)) break;
    }
  }
  return seen;
}
Bitboard WalkRookLines(int sq, Bitboard occupancy) { return Walk(sq, occupancy, {{1, 0}, {-1, 0}, {0, 1}, {0, -1}}); }
Bitboard WalkBishopLines(int sq, Bitboard occupancy) {
  return Walk(sq, occupancy, {{1, 1}, {-1, 1}, {1, -1}, {-1, -1}});
}

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
