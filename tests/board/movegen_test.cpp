// The move generators' lists on crowded set-ups stay within their capacities. The legal move sets are
// checked by the perft counts, every list's moves, order and order values against the slow reference by
// tests/search/reference_test.cpp.
#include "board/movegen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/fen.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

struct Generated {
  std::vector<ScoredMove> captures;
  std::vector<Move> checks;
  std::vector<MoveSet> sets;
};

Generated Generate(const Position& p) {
  ScoredMoveList captures;
  MoveList checks;
  MoveSetList sets;
  captures.count = checks.count = sets.count = 0;
  GenerateCaptures(p, captures);
  GenerateQuiets(p, sets, checks);
  Generated g;
  g.captures.assign(captures.entries, captures.entries + captures.count);
  g.checks.assign(checks.moves, checks.moves + checks.count);
  g.sets.assign(sets.entries, sets.entries + sets.count);
  return g;
}

class MoveGeneration : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

// Set-ups with many queens and men: the flat list holds every move, and the count is the legal move
// count of perft depth 1 plus the illegal ones.
TEST_F(MoveGeneration, CrowdedSetUpsStayWithinTheLists) {
  for (const char* fen : {"R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1",
                          "QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ w - - 0 1",
                          "k7/1Q1Q1Q1Q/Q1Q1Q1Q1/8/8/1Q1Q1Q1Q/Q1Q1Q1Q1/7K w - - 0 1",
                          "rnbqkbnr/PPPPPPPP/8/8/8/8/pppppppp/RNBQKBNR w KQkq - 0 1"}) {
    ASSERT_EQ(test::SetUpPosition(fen), 1) << fen;
    const Generated g = Generate(*current);
    EXPECT_LE(g.captures.size(), static_cast<size_t>(CAPTURE_LIST_SIZE)) << fen;
    EXPECT_LE(g.checks.size(), static_cast<size_t>(QUIET_LIST_SIZE)) << fen;
    EXPECT_LE(g.sets.size(), static_cast<size_t>(MOVE_SET_LIST_SIZE)) << fen;
  }
  // 218 legal moves, the most known for a legal position.
  ASSERT_EQ(test::SetUpPosition("R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1"), 1);
  EXPECT_EQ(test::LegalMoves().size(), 218u);
}

}  // namespace
}  // namespace vorlek
