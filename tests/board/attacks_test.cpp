// Attack tables and magic lookups against slow ray walks, and the in-check test.
#include "board/attacks.h"

#include <gtest/gtest.h>

#include <ostream>

#include "board/fen.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::Sq;
using test::Squares;
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

TEST_F(Attacks, RookLookupEqualsRayWalkForEverySubsetOfEveryMask) {
  test::Random random(1);
  for (int sq = 0; sq < 64; ++sq) {
    const Bitboard mask = WalkMask(sq, WalkRookLines);
    Bitboard subset = 0;
    do {
      // Squares outside the mask (edges, other lines) must not change the answer.
      const Bitboard occupancy = subset | (random.Next() & ~mask);
      ASSERT_EQ(RookAttacks(sq, occupancy), WalkRookLines(sq, occupancy)) << "square " << sq;
      subset = (subset - mask) & mask;
    } while (subset);
  }
}

TEST_F(Attacks, BishopLookupEqualsRayWalkForEverySubsetOfEveryMask) {
  test::Random random(2);
  for (int sq = 0; sq < 64; ++sq) {
    const Bitboard mask = WalkMask(sq, WalkBishopLines);
    Bitboard subset = 0;
    do {
      const Bitboard occupancy = subset | (random.Next() & ~mask);
      ASSERT_EQ(BishopAttacks(sq, occupancy), WalkBishopLines(sq, occupancy)) << "square " << sq;
      subset = (subset - mask) & mask;
    } while (subset);
  }
}

TEST_F(Attacks, QueenLookupEqualsRayWalkForRandomOccupancies) {
  test::Random random(3);
  for (int sq = 0; sq < 64; ++sq) {
    for (int i = 0; i < 600; ++i) {
      // Sparse, middling and crowded boards.
      Bitboard occupancy = random.Next();
      if (i % 3 == 0) occupancy &= random.Next() & random.Next();
      if (i % 3 == 1) occupancy |= random.Next();
      ASSERT_EQ(QueenAttacks(sq, occupancy), WalkRookLines(sq, occupancy) | WalkBishopLines(sq, occupancy))
          << "square " << sq << " occupancy " << std::hex << occupancy;
    }
  }
}

struct LookupCase {
  const char* name;
  bool rook;
  const char* square;
  const char* occupied;
  const char* attacked;
};
std::ostream& operator<<(std::ostream& out, const LookupCase& c) { return out << c.name; }

class LookupFacts : public ::testing::TestWithParam<LookupCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(LookupFacts, AttackSet) {
  const LookupCase& c = GetParam();
  const Bitboard occupancy = Squares(c.occupied);
  const Bitboard got = c.rook ? RookAttacks(Sq(c.square), occupancy) : BishopAttacks(Sq(c.square), occupancy);
  EXPECT_EQ(got, Squares(c.attacked));
}

INSTANTIATE_TEST_SUITE_P(
    Board, LookupFacts,
    ::testing::Values(LookupCase{"RookA1EmptyBoard", true, "a1", "", "a2 a3 a4 a5 a6 a7 a8 b1 c1 d1 e1 f1 g1 h1"},
                      LookupCase{"RookA1BlockedOnA2AndC1", true, "a1", "a2 c1", "a2 b1 c1"},
                      LookupCase{"RookA1EdgeBlockerChangesNothing", true, "a1", "a8 h1",
                                 "a2 a3 a4 a5 a6 a7 a8 b1 c1 d1 e1 f1 g1 h1"},
                      LookupCase{"RookD4OwnSquareIgnored", true, "d4", "d4 d6 f4 d2 b4", "d5 d6 e4 f4 d3 d2 c4 b4"},
                      LookupCase{"BishopD4EmptyBoard", false, "d4", "", "a1 b2 c3 e5 f6 g7 h8 a7 b6 c5 e3 f2 g1"},
                      LookupCase{"BishopH8Corner", false, "h8", "e5", "g7 f6 e5"},
                      LookupCase{"BishopA8NeighbourBlocks", false, "a8", "b7", "b7"}),
    [](const ::testing::TestParamInfo<LookupCase>& info) { return std::string(info.param.name); });

// ---- magic records ----

TEST_F(Attacks, MasksAndShiftsFollowTheLines) {
  for (int sq = 0; sq < 64; ++sq) {
    EXPECT_EQ(RookMagics[sq].mask, WalkMask(sq, WalkRookLines)) << "rook square " << sq;
    EXPECT_EQ(BishopMagics[sq].mask, WalkMask(sq, WalkBishopLines)) << "bishop square " << sq;
    EXPECT_EQ(RookMagics[sq].shift, static_cast<uint64_t>(64 - PopCount(RookMagics[sq].mask)));
    EXPECT_EQ(BishopMagics[sq].shift, static_cast<uint64_t>(64 - PopCount(BishopMagics[sq].mask)));
  }
  EXPECT_EQ(PopCount(RookMagics[Sq("a1")].mask), 12);
  EXPECT_EQ(PopCount(RookMagics[Sq("d4")].mask), 10);
  EXPECT_EQ(PopCount(BishopMagics[Sq("a1")].mask), 6);
  EXPECT_EQ(PopCount(BishopMagics[Sq("d4")].mask), 9);
}

// The slices follow each other, square 0 first, and fill their tables exactly.
void ExpectSlicesTile(const std::array<MagicEntry, 64>& magics, const Bitboard* table, int size) {
  int offset = 0;
  for (int sq = 0; sq < 64; ++sq) {
    EXPECT_EQ(magics[sq].attacks, table + offset) << "square " << sq;
    offset += 1 << (64 - magics[sq].shift);
  }
  EXPECT_EQ(offset, size);
}

TEST_F(Attacks, RookSlicesTileTheRookTable) {
  ExpectSlicesTile(RookMagics, RookAttackTable, 102400);
  EXPECT_EQ(ROOK_ATTACK_TABLE_SIZE, 102400);
}

TEST_F(Attacks, BishopSlicesTileTheBishopTable) {
  ExpectSlicesTile(BishopMagics, BishopAttackTable, 5248);
  EXPECT_EQ(BISHOP_ATTACK_TABLE_SIZE, 5248);
}

struct MagicRow {
  const char* name;
  const std::array<MagicEntry, 64>* magics;
  int square;
  Bitboard mask, magic;
  uint64_t shift;
};
std::ostream& operator<<(std::ostream& out, const MagicRow& c) { return out << c.name; }

class GivenMagicRows : public ::testing::TestWithParam<MagicRow> {};

TEST_P(GivenMagicRows, AreInUse) {
  const MagicRow& row = GetParam();
  const MagicEntry& e = (*row.magics)[row.square];
  EXPECT_EQ(e.mask, row.mask);
  EXPECT_EQ(e.magic, row.magic);
  EXPECT_EQ(e.shift, row.shift);
}

INSTANTIATE_TEST_SUITE_P(
    Board, GivenMagicRows,
    ::testing::Values(MagicRow{"RookA1", &RookMagics, 0, 0x101010101017eULL, 0xa8002c000108020ULL, 52},
                      MagicRow{"RookB1", &RookMagics, 1, 0x202020202027cULL, 0x6c00049b0002001ULL, 53},
                      MagicRow{"BishopA1", &BishopMagics, 0, 0x40201008040200ULL, 0x89a1121896040240ULL, 58}),
    [](const ::testing::TestParamInfo<MagicRow>& info) { return std::string(info.param.name); });

// ---- constant tables ----

TEST_F(Attacks, RaysFollowTheirDirections) {
  // Rays[d]: -7, +7, -9, +9, -8, +8, -1, +1 as file and rank steps.
  constexpr int DIRECTIONS[8][2] = {{1, -1}, {-1, 1}, {-1, -1}, {1, 1}, {0, -1}, {0, 1}, {-1, 0}, {1, 0}};
  for (int d = 0; d < 8; ++d) {
    for (int sq = 0; sq < 64; ++sq) {
      Bitboard ray = 0;
      int f = sq % 8 + DIRECTIONS[d][0], r = sq / 8 + DIRECTIONS[d][1];
      for (; f >= 0 && f < 8 && r >= 0 && r < 8; f += DIRECTIONS[d][0], r += DIRECTIONS[d][1]) {
        ray |= Bitboard{1} << (r * 8 + f);
      }
      EXPECT_EQ(Rays[d][sq], ray) << "direction " << d << " square " << sq;
    }
  }
  EXPECT_EQ(Rays[3][Sq("a1")], Squares("b2 c3 d4 e5 f6 g7 h8"));
  EXPECT_EQ(Rays[0][Sq("a1")], 0u);
  EXPECT_EQ(Rays[7][Sq("d4")], Squares("e4 f4 g4 h4"));
}

TEST_F(Attacks, KingAndKnightTablesFollowTheirSteps) {
  for (int sq = 0; sq < 64; ++sq) {
    EXPECT_EQ(KingAttacks[sq], WalkKingSteps(sq)) << "square " << sq;
    EXPECT_EQ(KnightAttacks[sq], WalkKnightJumps(sq)) << "square " << sq;
  }
  EXPECT_EQ(KnightAttacks[Sq("a1")], Squares("b3 c2"));
  EXPECT_EQ(KnightAttacks[Sq("h8")], Squares("g6 f7"));
  EXPECT_EQ(PopCount(KingAttacks[Sq("h1")]), 3);
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
                             CheckCase{"PawnOnB2AttacksA1", "7k/8/8/8/8/8/1p6/K7 w - - 0 1", true},
                             CheckCase{"PawnOnH1DoesNotWrapToA1", "7k/8/8/8/8/8/8/K6p w - - 0 1", false},
                             CheckCase{"PawnOnH2DoesNotWrapToA1", "7k/8/8/8/8/8/7p/K7 w - - 0 1", false},
                             CheckCase{"PawnOnG5AttacksH4", "k7/8/8/6p1/7K/8/8/8 w - - 0 1", true},
                             CheckCase{"PawnOnA6DoesNotWrapToH4", "k7/8/p7/8/7K/8/8/8 w - - 0 1", false},
                             CheckCase{"PawnOnH4DoesNotWrapToA4", "k7/8/8/8/K6p/8/8/8 w - - 0 1", false},
                             CheckCase{"PawnBelowTheKingDoesNotAttack", "k7/8/8/8/4K3/3p4/8/8 w - - 0 1", false},
                             CheckCase{"PawnAheadOfTheKingDoesNotAttack", "k7/8/8/4p3/4K3/8/8/8 w - - 0 1", false},
                             CheckCase{"BlackKingAttackedByWhitePawn", "8/8/8/3k4/4P3/8/8/K7 b - - 0 1", true},
                             CheckCase{"BlackKingNotAttackedByPawnAbove", "8/8/4P3/3k4/8/8/8/K7 b - - 0 1", false},
                             // Sliders along open and blocked lines.
                             CheckCase{"RookOnOpenFile", "r6k/8/8/8/8/8/8/K7 w - - 0 1", true},
                             CheckCase{"RookBlockedByOwnPiece", "r6k/8/8/8/N7/8/8/K7 w - - 0 1", false},
                             CheckCase{"RookBlockedByEnemyPiece", "r6k/8/8/8/n7/8/8/K7 w - - 0 1", false},
                             CheckCase{"RookAlongTheRank", "7k/8/8/8/8/8/8/K6r w - - 0 1", true},
                             CheckCase{"RookOnADiagonalDoesNotAttack", "7k/8/8/8/8/8/1r6/K7 w - - 0 1", false},
                             CheckCase{"BishopOnOpenDiagonal", "7k/8/5b2/8/8/8/8/K7 w - - 0 1", true},
                             CheckCase{"BishopOnAFileDoesNotAttack", "7k/8/8/8/8/8/b7/K7 w - - 0 1", false},
                             CheckCase{"QueenOnTheFile", "q6k/8/8/8/8/8/8/K7 w - - 0 1", true},
                             CheckCase{"QueenOnTheDiagonal", "7k/6q1/8/8/8/8/8/K7 w - - 0 1", true},
                             CheckCase{"QueenBlockedOnTheDiagonal", "7k/6q1/8/8/3P4/8/8/K7 w - - 0 1", false},
                             CheckCase{"KnightJump", "7k/8/8/8/8/1n6/8/K7 w - - 0 1", true},
                             CheckCase{"KnightNotAJump", "7k/8/8/8/8/2n5/8/K7 w - - 0 1", false},
                             CheckCase{"KingNextToKing", "8/8/8/8/8/8/1k6/K7 w - - 0 1", true},
                             CheckCase{"KingTwoSquaresAway", "8/8/8/8/8/2k5/8/K7 w - - 0 1", false},
                             CheckCase{"OwnRookDoesNotAttack", "R6k/8/8/8/8/8/8/K7 w - - 0 1", false},
                             CheckCase{"BlackKingAttackedByRook", "4k3/8/8/8/8/8/8/4R2K b - - 0 1", true},
                             CheckCase{"KingWithoutAttacker", "4k3/8/8/8/8/8/8/4K3 w - - 0 1", false},
                             CheckCase{"NoKingIsNeverInCheck", "r6k/8/8/8/8/8/8/8 w - - 0 1", false},
                             CheckCase{"InitialPosition", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                                       false}),
                         [](const ::testing::TestParamInfo<CheckCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
