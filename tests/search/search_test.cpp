// The search: node counts of fixed searches, mate, stalemate and draw scores, standing pat, the table of
// remembered moves and the time allotment from the clocks.
#include "search/search.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <string>

#include "search/deepening.h"
#include "search/evaluation.h"
#include "search/hash_table.h"
#include "search/time_control.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

constexpr const char* KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";

// A new game (empty table) set up from `fen`.
void NewGameFrom(const char* fen) {
  NewSearchGame(InitialPosition());
  ASSERT_EQ(test::SetUpPosition(fen), 1) << fen;
}

struct Result {
  int score;
  uint64_t nodes;
};
// One iteration at `depth`, with the window the deepening gives every iteration; or quiescence.
Result SearchOnce(int depth) {
  nodes = 0;
  const int score = Search(depth, -(MATE_SCORE + depth), MATE_SCORE + depth);
  return {score, nodes};
}
Result QuiesceOnce(int alpha, int beta) {
  nodes = 0;
  const int score = Quiesce(alpha, beta);
  return {score, nodes};
}

// ---- scores ----

struct ScoreCase {
  const char* fen;
  const char* moves;  // played from the set-up
  int fifty;          // written into the record after the set-up and moves, unless negative
  int depth, score;
  uint64_t nodes;  // 0: not counted
};
void PrintTo(const ScoreCase& c, std::ostream* os) { *os << c.fen << " " << c.moves << " depth " << c.depth; }

class Scores : public ::testing::TestWithParam<ScoreCase> {};

TEST_P(Scores, OfMatesStalemateDrawsAndKingCaptures) {
  const ScoreCase& c = GetParam();
  NewGameFrom(c.fen);
  ASSERT_TRUE(test::PlayMoves(c.moves));
  if (c.fifty >= 0) current->fifty = static_cast<uint8_t>(c.fifty);
  const Result r = SearchOnce(c.depth);
  EXPECT_EQ(r.score, c.score);
  if (c.nodes == 0) return;
  EXPECT_EQ(r.nodes, c.nodes);
}

INSTANTIATE_TEST_SUITE_P(Positions, Scores,
                         ::testing::Values(
                             // Rd8 mates: the mated side has remaining depth d - 1, so nearer mates score more.
                             ScoreCase{"6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1", "", -1, 2, 15001, 0},
                             ScoreCase{"6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1", "", -1, 4, 15003, 0},
                             // Ra6 bxa6 b7 mate: mated two plies deeper.
                             ScoreCase{"kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", "", -1, 4, 15001, 0},
                             // The side to move is mated already.
                             ScoreCase{"6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1", "", -1, 3, -15003, 0},
                             // Stalemate.
                             ScoreCase{"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", "", -1, 4, 0, 0},
                             // Returned at once, in one node: the third occurrence, the fifty-move counter above 100 or
                             // at 100 out of check, and a king to take.
                             ScoreCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                                       "g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8", -1, 4, 0, 1},
                             ScoreCase{"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", "", 100, 4, 0, 1},
                             ScoreCase{"4k3/8/8/8/8/8/3q4/R3K3 w - - 0 1", "", 101, 4, 0, 1},
                             ScoreCase{"4k3/8/8/8/8/8/8/4RK2 w - - 0 1", "", -1, 4, ILLEGAL_SCORE, 1},
                             // At 100 in check the search goes on.
                             ScoreCase{"4k3/8/8/8/8/8/3q4/R3K3 w - - 0 1", "", 100, 2, 500, 26},
                             // The depth-1 shortcut leaves out neither a third occurrence nor the counter reaching 100.
                             ScoreCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                                       "g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1", -1, 3, 34, 7213},
                             ScoreCase{"4k3/8/8/8/8/8/8/R3K3 w - - 92 1", "a1a2 e8d8 a2a1 d8e8 a1a2 e8d8", -1, 2, 0,
                                       43}));

// A man of code 7 (no move or set-up makes one) is taken first, an illegal move (white is in check); the king
// capture picked after it is searched as a move, not taken for the sign of an illegal position.
TEST(Scores, KingCapturedAfterTheFirstPickIsAMove) {
  NewGameFrom("r3k3/8/8/8/8/8/8/K3R3 w - - 0 1");
  current->type0 |= SquareBit(H1);
  current->type1 |= SquareBit(H1);
  current->type2 |= SquareBit(H1);
  const Result r = SearchOnce(2);
  EXPECT_EQ(r.score, 9);
  EXPECT_EQ(r.nodes, 112u);
}

// White could take a queen and a rook (in check), or the king: at or above beta nothing is searched.
// Below it the king capture scores as illegal, at once.
TEST(Quiesce, StandsPatAtOrAboveBetaWithoutSearching) {
  for (const char* fen : {"r3k3/8/8/8/8/8/3q4/R3K2R w - - 0 1", "4k3/8/8/8/8/8/8/4RK2 w - - 0 1"}) {
    NewGameFrom(fen);
    const int standPat = Evaluate(*current);
    for (const int beta : {standPat, standPat - 1, standPat - 1000}) {
      const Result r = QuiesceOnce(beta - 5000, beta);
      EXPECT_EQ(r.score, standPat) << fen << " " << beta;
      EXPECT_EQ(r.nodes, 1u) << fen << " " << beta;
    }
  }
  const Result r = QuiesceOnce(-15100, 15100);
  EXPECT_EQ(r.score, ILLEGAL_SCORE);
  EXPECT_EQ(r.nodes, 1u);
}

// A table entry whose move does not fit the position (another position's move under a colliding key,
// or garbage) changes neither the result nor the position.
TEST(SearchHashMove, MoveThatDoesNotFitThePositionIsIgnored) {
  NewGameFrom(KIWIPETE);
  const Result clean = SearchOnce(3);
  const Move bogus[] = {
      MakeMoveValue(KNIGHT, 16, 33, 0),                // from an empty square (a3)
      MakeMoveValue(KIND_CAPTURE + QUEEN, 21, 12, 3),  // queen takes its own bishop
      0xffffffff,
  };
  for (const Move m : bogus) {
    NewGameFrom(KIWIPETE);
    const Position root = *current;
    Position* const rootPointer = current;
    StoreHashMove(current->key, m);
    const Result r = SearchOnce(3);
    EXPECT_EQ(r.score, clean.score) << std::hex << m;
    EXPECT_EQ(r.nodes, clean.nodes) << std::hex << m;
    EXPECT_EQ(current, rootPointer);
    EXPECT_EQ(std::memcmp(current, &root, sizeof root), 0) << std::hex << m;
  }
}

// ---- time and thinking output ----

// No iteration begins once the iteration limit has passed: with the limit at 0, the search is one iteration.
TEST(Deepening, BeginsNoIterationPastItsLimit) {
  NewGameFrom(KIWIPETE);
  struct : IterationListener {
    int count = 0;
    void Finished(const Iteration&) override { ++count; }
  } counter;
  SearchLimits limits;
  limits.iterationLimit = 0;
  limits.maxDepth = 4;
  EXPECT_NE(IterativeDeepening(limits, counter), MOVE_NONE);
  EXPECT_EQ(counter.count, 1);
}

struct AllotmentCase {
  int levelMoves, engineTime, opponentTime, ply, side;  // clocks in centiseconds
  int64_t movesToGo, budget, iterationLimit;
};
std::ostream& operator<<(std::ostream& out, const AllotmentCase& c) {
  return out << "level " << c.levelMoves << " time " << c.engineTime << " otim " << c.opponentTime << " ply " << c.ply;
}

class Allotment : public ::testing::TestWithParam<AllotmentCase> {};

TEST_P(Allotment, FromTheClocks) {
  const AllotmentCase& c = GetParam();
  const int64_t movesToGo = MovesToGo(c.levelMoves, c.ply);
  EXPECT_EQ(movesToGo, c.movesToGo);
  const TimeAllotment t =
      ComputeTimeAllotment(movesToGo, int64_t{c.engineTime} * 10000, int64_t{c.opponentTime} * 10000, c.side);
  EXPECT_EQ(t.budget, c.budget);
  EXPECT_EQ(t.iterationLimit, c.iterationLimit);
}

INSTANTIATE_TEST_SUITE_P(Clocks, Allotment,
                         ::testing::Values(
                             // 40 moves per control: 30 moves made leave 10, 40 made start a new control.
                             AllotmentCase{40, 30000, 30000, 60, WHITE, 10, 30000000, 3750000},
                             AllotmentCase{40, 30000, 30000, 80, WHITE, 40, 7500000, 1875000},
                             // The whole game reckoned at 60 moves, then 10 from ply 100 on.
                             AllotmentCase{0, 30000, 30000, 0, WHITE, 60, 5000000, 1250000},
                             AllotmentCase{0, 30000, 30000, 102, WHITE, 10, 30000000, 3750000},
                             // White ahead on the clock spends the lead.
                             AllotmentCase{0, 60000, 30000, 0, WHITE, 60, 305000000, 20333333},
                             // Black ahead on the clock: E - E / 60 = 590000000 > 300000000.
                             AllotmentCase{0, 60000, 30000, 1, BLACK, 60, 300000000, 20000000},
                             // Black only slightly ahead keeps the even share.
                             AllotmentCase{0, 30100, 30000, 1, BLACK, 60, 5016666, 1254166},
                             // 15 s and more: a sixth of the budget for the iterations, below it a quarter.
                             AllotmentCase{0, 90000, 90000, 0, WHITE, 60, 15000000, 2500000},
                             // Malformed controls never divide by zero: a negative count is the whole-game control.
                             AllotmentCase{-40, 30000, 30000, 0, WHITE, 60, 5000000, 1250000}));

}  // namespace
}  // namespace vorlek
