// Attack tables and magic lookups against slow ray walks, and the in-check test.
#include "board/attacks.h"

#include <gtest/gtest.h>

#include <ostream>

#include "board/fen.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::WalkBishopLines;
using test::WalkKingSteps;
using test::WalkKnightJumps;
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

class Attacks : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

// ---- magic lookups ----

// Every subset of each square's blocker mask, with random squares outside the mask (edges, other lines)
// that must not change the answer.
TEST_F(Attacks, MagicLookupsEqualRayWalksForEverySubsetOfEveryMask) {
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

TEST_F(Attacks, StepTablesAndRaysFollowTheirSteps) {
  for (int sq = 0; sq < 64; ++sq) {
    EXPECT_EQ(KingAttacks[sq], WalkKingSteps(sq)) << "square " << sq;
    EXPECT_EQ(KnightAttacks[sq], WalkKnightJumps(sq)) << "square " << sq;
    // The straight rays together are the rook's empty-board lines, the diagonal ones the bishop's; each
    // ray with its opposite (the next direction) is one line.
    EXPECT_EQ(Rays[4][sq] | Rays[5][sq] | Rays[6][sq] | Rays[7][sq], WalkRookLines(sq, 0)) << "square " << sq;
    EXPECT_EQ(Rays[0][sq] | Rays[1][sq] | Rays[2][sq] | Rays[3][sq], WalkBishopLines(sq, 0)) << "square " << sq;
  }
  // Directions -7, +7, -9, +9, -8, +8, -1, +1, in that order.
  EXPECT_EQ(Rays[0][A1], 0u);
  EXPECT_EQ(Rays[1][H1], test::Squares("g2 f3 e4 d5 c6 b7 a8"));
  EXPECT_EQ(Rays[2][D4], test::Squares("c3 b2 a1"));
  EXPECT_EQ(Rays[3][A1], test::Squares("b2 c3 d4 e5 f6 g7 h8"));
  EXPECT_EQ(Rays[4][D4], test::Squares("d3 d2 d1"));
  EXPECT_EQ(Rays[6][D4], test::Squares("c4 b4 a4"));
  EXPECT_EQ(Rays[7][D4], test::Squares("e4 f4 g4 h4"));
}

// ---- the in-check test ----

struct CheckCase {
  const char* name;
  const char* fen;
  bool inCheck;
};
std::ostream& operator<<(std::ostream& out, const CheckCase& c) { return out << c.name; }

class InCheckFacts : public ::testing::TestWithParam<CheckCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(InCheckFacts, KingOfTheSideToMove) {
  Position p = InitialPosition();
  ASSERT_EQ(SetBoard(p, GetParam().fen), 1);
  EXPECT_EQ(InCheck(p), GetParam().inCheck);
}

INSTANTIATE_TEST_SUITE_P(Board, InCheckFacts,
                         ::testing::Values(
                             // Pawns attack down the board from the side to move's view and never across the edge.
                             CheckCase{"PawnOnH1DoesNotWrapToA1", "7k/8/8/8/8/8/8/K6p w - - 0 1", false},
                             // Sliders along open and blocked lines.
                             CheckCase{"RookBlockedByOwnPiece", "r6k/8/8/8/N7/8/8/K7 w - - 0 1", false},
                             CheckCase{"NoKingIsNeverInCheck", "r6k/8/8/8/8/8/8/8 w - - 0 1", false}),
                         [](const ::testing::TestParamInfo<CheckCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
