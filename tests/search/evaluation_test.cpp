// The static evaluation against the values its rules give in chosen positions (the slow reference checks it
// on every record of random games, tests/search/reference_test.cpp).
#include "search/evaluation.h"

#include <gtest/gtest.h>

#include <ostream>

#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

// What Evaluate adds to the incremental score for a position.
struct PlacementCase {
  const char* fen;
  int added;  // Evaluate - score: both kings' placement and the bishop term
};
void PrintTo(const PlacementCase& c, std::ostream* os) { *os << c.fen; }

class Placement : public ::testing::TestWithParam<PlacementCase> {};

TEST_P(Placement, AddsKingAndBishopTerms) {
  InitTables();
  ASSERT_TRUE(test::SetUpPosition(GetParam().fen));
  EXPECT_EQ(Evaluate(*current) - current->score, GetParam().added);
}

INSTANTIATE_TEST_SUITE_P(Positions, Placement,
                         ::testing::Values(
                             // 32 men: the opening table alone; the black king on e8 adds nothing.
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQRBKN w - - 0 1", 30},
                             // White's king on g1 seen by black to move counts against black.
                             PlacementCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQRBKN b - - 0 1", -30},
                             // 16 men, king on g1: (16 x -5 + 16 x 30) / 32 = 12.5, rounded down.
                             PlacementCase{"r1b1kb2/pppp4/8/8/8/8/PPPP4/R1B2BK1 w - - 0 1", 12},
                             // Kings alone: on a1 (30 x 0 + 2 x -5) >> 5 = -1, not 0.
                             PlacementCase{"4k3/8/8/8/8/8/8/K7 w - - 0 1", -1},
                             // Three bishops against two: only exactly two bishops earn the pair.
                             PlacementCase{"2b1kb2/8/8/8/8/3B4/8/2B1KB2 w - - 0 1", -50},
                             // Two against two cancel.
                             PlacementCase{"2b1kb2/8/8/8/8/8/8/2B1KB2 w - - 0 1", 0}));

}  // namespace
}  // namespace vorlek
