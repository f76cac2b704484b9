// The alpha-beta search: mate and draw scores, the positions that return at once, the illegal-move
// score, the remembered move's place in the order, what is stored, and node counts of fixed searches.
#include "search/search.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>

#include "board/all_moves.h"
#include "board/fen.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "game/game_state.h"
#include "search/hash_table.h"
#include "search/think.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

constexpr const char* KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";

// A new game (empty table) set up from `fen`.
void NewGameFrom(const char* fen) {
  InitTables();
  NewGame();
  ASSERT_EQ(SetBoard(*current, fen), 1) << fen;
}

int FullWindow(int depth) { return MATE_SCORE + depth; }

// Score and nodes of one search, as the deepening starts it.
struct Result {
  int score;
  uint64_t nodes;
};
Result SearchOnce(int depth, int alpha, int beta) {
  nodes = 0;
  const int score = Search(depth, alpha, beta);
  return {score, nodes};
}

bool SameRecord(const Position& a, const Position& b) { return std::memcmp(&a, &b, sizeof(Position)) == 0; }

// ---- mates and stalemate ----

struct MateCase {
  const char* fen;
  int depth;
  int score;
};
void PrintTo(const MateCase& c, std::ostream* os) { *os << c.fen << " depth " << c.depth; }

class MateScores : public ::testing::TestWithParam<MateCase> {};

TEST_P(MateScores, NearerMatesScoreMore) {
  NewGameFrom(GetParam().fen);
  const int depth = GetParam().depth;
  EXPECT_EQ(SearchOnce(depth, -FullWindow(depth), FullWindow(depth)).score, GetParam().score);
}

INSTANTIATE_TEST_SUITE_P(Positions, MateScores,
                         ::testing::Values(
                             // Rd8 mates: the mated side has remaining depth d - 1.
                             MateCase{"6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1", 2, 15001},
                             MateCase{"6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1", 4, 15003},
                             // Ra6 bxa6 b7 mate: mated two plies deeper.
                             MateCase{"kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", 4, 15001},
                             MateCase{"kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", 5, 15002},
                             // The side to move is mated already, or is mated whatever it plays.
                             MateCase{"6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1", 3, -15003},
                             MateCase{"6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1", 1, -15001},
                             MateCase{"3R2k1/5ppp/8/8/8/8/5PPP/6K1 b - - 0 1", 2, -15002},
                             // Stalemate, at every depth.
                             MateCase{"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", 1, 0},
                             MateCase{"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", 4, 0}));

TEST(SearchStores, NothingForMateOrStalemate) {
  for (const char* fen : {"6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"}) {
    NewGameFrom(fen);
    SearchOnce(3, -FullWindow(3), FullWindow(3));
    EXPECT_EQ(ProbeHashMove(current->key), MOVE_NONE) << fen;
  }
}

// ---- positions that return at once ----

TEST(SearchDraws, ThirdOccurrenceScoresZeroAtAnyDepthAndStoresNothing) {
  NewGameFrom("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
  ASSERT_TRUE(test::PlayMoves("g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8"));
  ASSERT_EQ(current->repetition, 2);
  for (int depth = 0; depth <= 5; ++depth) {
    const Result r = SearchOnce(depth, -FullWindow(depth), FullWindow(depth));
    EXPECT_EQ(r.score, 0) << depth;
    EXPECT_EQ(r.nodes, 1u) << depth;
  }
  EXPECT_EQ(ProbeHashMove(current->key), MOVE_NONE);
  // The second occurrence is searched.
  TakeBack();
  EXPECT_EQ(current->repetition, 1);
  EXPECT_GT(SearchOnce(2, -FullWindow(2), FullWindow(2)).nodes, 1u);
}

struct FiftyCase {
  const char* fen;
  int fifty;      // written into the record after the set-up
  bool searched;  // false: 0 at once
};
void PrintTo(const FiftyCase& c, std::ostream* os) { *os << c.fen << " fifty " << c.fifty; }

class FiftyMoves : public ::testing::TestWithParam<FiftyCase> {};

TEST_P(FiftyMoves, DrawUnlessInCheckAtExactlyHundred) {
  NewGameFrom(GetParam().fen);
  current->fifty = static_cast<uint8_t>(GetParam().fifty);
  for (int depth = 1; depth <= 3; ++depth) {
    const Result r = SearchOnce(depth, -FullWindow(depth), FullWindow(depth));
    if (GetParam().searched) {
      // Only Kxd2 resets the counter; every other reply scores 0 in its child.
      EXPECT_GT(r.score, 400) << depth;
      EXPECT_GT(r.nodes, 2u) << depth;
    } else {
      EXPECT_EQ(r.score, 0) << depth;
      EXPECT_EQ(r.nodes, 1u) << depth;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Counters, FiftyMoves,
                         ::testing::Values(FiftyCase{"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", 100, false},
                                           FiftyCase{"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", 101, false},
                                           FiftyCase{"4k3/8/8/8/8/8/3q4/R3K3 w - - 0 1", 101, false},
                                           FiftyCase{"4k3/8/8/8/8/8/3q4/R3K3 w - - 0 1", 100, true},
                                           FiftyCase{"4k3/8/8/8/8/8/3q4/R3K3 w - - 0 1", 99, true}));

TEST(SearchHorizon, DepthZeroIsQuiesceCountedTwice) {
  for (const char* fen : {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", KIWIPETE}) {
    for (const int bound : {50, 500, 15000}) {
      const int alpha = -bound, beta = bound;
      NewGameFrom(fen);
      const Result quiesce = [&] {
        nodes = 0;
        const int score = Quiesce(alpha, beta);
        return Result{score, nodes};
      }();
      const Result search = SearchOnce(0, alpha, beta);
      EXPECT_EQ(search.score, quiesce.score) << fen << " " << alpha;
      EXPECT_EQ(search.nodes, quiesce.nodes + 1) << fen << " " << alpha;
    }
  }
  NewGameFrom("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
  EXPECT_EQ(SearchOnce(0, -50, 50).nodes, 2u);
}

TEST(SearchIllegal, KingCaptureScoresIllegalAtOnce) {
  NewGameFrom("4k3/8/8/8/8/8/8/4RK2 w - - 0 1");
  for (int depth = 1; depth <= 4; ++depth) {
    const Result r = SearchOnce(depth, -FullWindow(depth), FullWindow(depth));
    EXPECT_EQ(r.score, ILLEGAL_SCORE) << depth;
    EXPECT_EQ(r.nodes, 1u) << depth;
  }
  EXPECT_EQ(ProbeHashMove(current->key), MOVE_NONE);
}

// ---- the remembered move ----

TEST(SearchHashMove, CutOffSearchesNothingElse) {
  // What a2a3 alone costs and scores in the window the root hands its children.
  NewGameFrom(KIWIPETE);
  const Move a3 = test::FindMove("a2a3");
  ASSERT_NE(a3, MOVE_NONE);
  MakeMove(a3);
  const Result child = SearchOnce(1, 13999, 14000);
  TakeBack();

  NewGameFrom(KIWIPETE);
  StoreHashMove(current->key, a3);
  const Result root = SearchOnce(2, -14000, -13999);
  EXPECT_EQ(root.score, -child.score);
  EXPECT_GE(root.score, -13999);
  EXPECT_EQ(root.nodes, 1 + child.nodes);
  EXPECT_EQ(ProbeHashMove(current->key), a3);
}

TEST(SearchHashMove, CutOffReturnsTheMoveScoreBeyondBeta) {
  // A mate found by the remembered move is returned whole, not cut down to beta.
  NewGameFrom("6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1");
  const Move mate = test::FindMove("d1d8");
  MakeMove(mate);
  const Result child = SearchOnce(1, -14000, 14000);
  TakeBack();
  ASSERT_EQ(child.score, -15001);

  NewGameFrom("6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1");
  StoreHashMove(current->key, mate);
  const Result root = SearchOnce(2, -14000, 14000);
  EXPECT_EQ(root.score, 15001);
  EXPECT_EQ(root.nodes, 1 + child.nodes);
}

TEST(SearchHashMove, SearchedOnceWhenItDoesNotCut) {
  // Failing low at depth 1, every child stands pat at once: two nodes for each move searched.
  for (const char* fen : {KIWIPETE, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"}) {
    NewGameFrom(fen);
    FlatMoveList list;
    GenerateAllMoves(*current, list);
    const uint64_t expected = 1 + 2 * static_cast<uint64_t>(list.count);
    EXPECT_EQ(SearchOnce(1, 14000, 14001).nodes, expected) << fen;
    for (const char* text : {"a2a3", "e2e4", "e1g1", "d5e6", "g1f3"}) {
      NewGameFrom(fen);
      const Move m = test::FindMove(text);
      if (m == MOVE_NONE) continue;
      StoreHashMove(current->key, m);
      const Result r = SearchOnce(1, 14000, 14001);
      EXPECT_EQ(r.score, 14000) << fen << " " << text;
      EXPECT_EQ(r.nodes, expected) << fen << " " << text;
      EXPECT_EQ(ProbeHashMove(current->key), m) << fen << " " << text;
    }
  }
}

TEST(SearchStores, MoveEqualToAlphaIsNoBestMove) {
  const char* fen = "4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1";
  NewGameFrom(fen);
  const int best = SearchOnce(1, -FullWindow(1), FullWindow(1)).score;
  const Move bestMove = ProbeHashMove(current->key);
  ASSERT_EQ(bestMove, test::FindMove("e4d5"));

  NewGameFrom(fen);
  EXPECT_EQ(SearchOnce(1, best, best + 1).score, best);
  EXPECT_EQ(ProbeHashMove(current->key), MOVE_NONE);

  NewGameFrom(fen);
  EXPECT_EQ(SearchOnce(1, best - 1, best + 1).score, best);
  EXPECT_EQ(ProbeHashMove(current->key), bestMove);
}

TEST(SearchStores, FailLowLeavesTheEntryAlone) {
  NewGameFrom(KIWIPETE);
  // Another position's entry at the root's index survives a root that fails low.
  const uint64_t other = current->key ^ (uint64_t{1} << 40);
  const Move otherMove = MakeMoveValue(KNIGHT, 1, 18, 0);
  StoreHashMove(other, otherMove);
  EXPECT_EQ(SearchOnce(3, 14000, 14001).score, 14000);
  EXPECT_EQ(HashEntryFor(current->key).key, other);
  EXPECT_EQ(HashEntryFor(current->key).move, otherMove);
}

TEST(SearchHashMove, MoveThatDoesNotFitThePositionIsIgnored) {
  NewGameFrom(KIWIPETE);
  const Result clean = SearchOnce(3, -FullWindow(3), FullWindow(3));
  const Move bogus[] = {
      MakeMoveValue(KNIGHT, 16, 33, 0),                  // from an empty square (a3)
      MakeMoveValue(KIND_CAPTURE + BISHOP, 11, 2, 4),    // a bishop takes a rook on an empty square
      MakeMoveValue(KIND_CAPTURE + QUEEN, 21, 12, 3),    // queen takes its own bishop
      MakeMoveValue(ROOK, 0, 8, 0),                      // rook onto its own pawn
      MakeMoveValue(PAWN, 8, 24, 0) | 0x40000000,        // a pawn push with a promotion nibble
      MakeMoveValue(KIND_EN_PASSANT, 33, 40, 0),         // en passant without a double step
      MakeMoveValue(KIND_PROMOTION, 8, 16, QUEEN << 4),  // a promotion from rank 2
      MakeMoveValue(KING, 4, 60, 0),                     // the king across the board
      MakeMoveValue(3, 99, 200, 0),                      // squares off the board
      0xdeadbeef,
      0xffffffff,
  };
  for (const Move m : bogus) {
    NewGameFrom(KIWIPETE);
    const Position root = *current;
    Position* const rootPointer = current;
    StoreHashMove(current->key, m);
    const Result r = SearchOnce(3, -FullWindow(3), FullWindow(3));
    EXPECT_EQ(r.score, clean.score) << std::hex << m;
    EXPECT_EQ(r.nodes, clean.nodes) << std::hex << m;
    EXPECT_EQ(current, rootPointer);
    EXPECT_TRUE(SameRecord(*current, root)) << std::hex << m;
  }
}

// ---- node-count signatures ----

// Iterations 1..depth as the deepening runs them (one table for all), their nodes added up.
struct SignatureCase {
  const char* fen;
  int depth;
  int score;  // of the last iteration
  uint64_t nodes;
  const char* principalVariation;
};
void PrintTo(const SignatureCase& c, std::ostream* os) { *os << c.fen << " depth " << c.depth; }

class Signature : public ::testing::TestWithParam<SignatureCase> {};

TEST_P(Signature, FixedSearchCountsTheSameNodes) {
  NewGameFrom(GetParam().fen);
  uint64_t total = 0;
  int score = 0;
  for (int depth = 1; depth <= GetParam().depth; ++depth) {
    score = SearchIteration(depth);
    total += nodes;
  }
  EXPECT_EQ(score, GetParam().score);
  EXPECT_EQ(total, GetParam().nodes);
  char pv[256] = "";
  AppendPrincipalVariation(pv, sizeof pv, GetParam().depth);
  EXPECT_STREQ(pv, GetParam().principalVariation);
}

INSTANTIATE_TEST_SUITE_P(Positions, Signature,
                         ::testing::Values(SignatureCase{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 5,
                                                         14, 314709, "g1f3  g8f6  b1c3  b8c6  e2e4  "},
                                           SignatureCase{KIWIPETE, 4, 33, 60676, "e2a6  e6d5  g2h3  e7e5  "},
                                           SignatureCase{"n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1", 5, 933, 21108,
                                                         "g2h1q b7b8q h1e4  e2f2  h2h1q "},
                                           SignatureCase{"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 6, 100, 42210,
                                                         "b4f4  h4g3  f4f7  h5e5  f7c7  g3g2  "}));

}  // namespace
}  // namespace vorlek
