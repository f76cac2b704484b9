// The two move generators on chosen positions: the order and scores of the capture list, the checking
// list and the quiet move sets, list capacities on crowded set-ups, and which moves IsGeneratedMove
// accepts. The legal move sets themselves are checked by the perft counts.
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

using test::Sq;
using test::Squares;

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

std::string MoveName(Move m) {
  char text[32];
  std::snprintf(text, sizeof text, "{%d %c%c-%c%c %02x}", MoveKind(m), 'a' + MoveFrom(m) % 8, '1' + MoveFrom(m) / 8,
                'a' + MoveTo(m) % 8, '1' + MoveTo(m) / 8, MoveExtra(m));
  return text;
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

// IsGeneratedMove accepts every generated move and refuses the same moves with another kind, another
// origin or another extra part.
TEST_F(MoveGeneration, IsGeneratedMoveAcceptsExactlyTheGeneratedMoves) {
  int positions = 0;
  ASSERT_TRUE(test::WalkRandomGames(test::PERFT_POSITIONS, 4, 2, 60, [&](const char* fen, int ply) {
    FlatMoveList list;
    GenerateAllMoves(*current, list);
    const std::vector<Move> moves(list.moves, list.moves + list.count);
    auto generated = [&](Move m) { return std::find(moves.begin(), moves.end(), m) != moves.end(); };
    for (Move m : moves) {
      EXPECT_TRUE(IsGeneratedMove(*current, m)) << fen << " ply " << ply << " " << MoveName(m);
      for (Move other : {MakeMoveValue(MoveKind(m) ^ 1, MoveFrom(m), MoveTo(m), MoveExtra(m)),
                         MakeMoveValue(MoveKind(m), MoveFrom(m) ^ 8, MoveTo(m), MoveExtra(m)),
                         MakeMoveValue(MoveKind(m), MoveFrom(m), MoveTo(m), MoveExtra(m) ^ 0x10)})
        EXPECT_EQ(IsGeneratedMove(*current, other), generated(other))
            << fen << " ply " << ply << " " << MoveName(other);
    }
    ++positions;
    return !HasFailure();
  }));
  EXPECT_GT(positions, 500);
}

// ---- chosen positions ----

struct CaptureListCase {
  const char* name;
  const char* fen;
  std::vector<ScoredMove> first;  // the list begins with these entries
  size_t size;                    // and has this many
};
std::ostream& operator<<(std::ostream& out, const CaptureListCase& c) { return out << c.name; }

class CaptureList : public ::testing::TestWithParam<CaptureListCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(CaptureList, BeginsWith) {
  const CaptureListCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(c.fen), 1);
  const Generated g = Generate(*current);
  ASSERT_GE(g.captures.size(), c.first.size());
  for (size_t i = 0; i < c.first.size(); ++i) {
    EXPECT_EQ(MoveName(g.captures[i].move), MoveName(c.first[i].move)) << "entry " << i;
    EXPECT_EQ(g.captures[i].order, c.first[i].order) << "entry " << i;
  }
  EXPECT_EQ(g.captures.size(), c.size);
}

ScoredMove Entry(int kind, const char* from, const char* to, int extra, int order) {
  return {MakeMoveValue(kind, Sq(from), Sq(to), extra), order};
}

INSTANTIATE_TEST_SUITE_P(
    Board, CaptureList,
    ::testing::Values(
        CaptureListCase{
            "PromotionsUpperRightFirst",
            "r1n1k3/1P6/8/8/8/8/8/4K3 w - - 0 1",
            {Entry(25, "b7", "c8", 0x52, 85), Entry(25, "b7", "c8", 0x42, -1), Entry(25, "b7", "c8", 0x32, -2),
             Entry(25, "b7", "c8", 0x22, -3), Entry(25, "b7", "a8", 0x54, 85), Entry(25, "b7", "a8", 0x44, -1),
             Entry(25, "b7", "a8", 0x34, -2), Entry(25, "b7", "a8", 0x24, -3), Entry(17, "b7", "b8", 0x50, 85)},
            12},
        CaptureListCase{
            "QueenPromotionTakingTheKing",
            "1k6/P7/8/8/8/8/8/4K3 w - - 0 1",
            {Entry(25, "a7", "b8", 0x56, 96), Entry(25, "a7", "b8", 0x46, -1), Entry(25, "a7", "b8", 0x36, -2),
             Entry(25, "a7", "b8", 0x26, -3), Entry(17, "a7", "a8", 0x50, 85)},
            8},
        CaptureListCase{"RookTakesTheKing", "4k3/8/8/8/8/8/8/4R2K w - - 0 1", {Entry(12, "e1", "e8", 6, 98)}, 1},
        CaptureListCase{"EnPassantBeforePawnCaptures",
                        "4k3/8/5n2/3pP3/8/8/8/4K3 w - d6 0 1",
                        {Entry(41, "e5", "d6", 0, 21), Entry(9, "e5", "f6", KNIGHT, 37)},
                        2},
        CaptureListCase{"EnPassantFromBothSides",
                        "4k3/8/8/3PpP2/8/8/8/4K3 w - e6 0 1",
                        {Entry(41, "d5", "e6", 0, 21), Entry(41, "f5", "e6", 0, 21)},
                        2},
        CaptureListCase{
            "EnPassantOnFileANotFromFileH", "4k3/8/8/pP6/7P/8/8/4K3 w - a6 0 1", {Entry(41, "b5", "a6", 0, 21)}, 1},
        CaptureListCase{
            "PawnsBeforePiecesVictimsBySquare",
            "4k3/8/8/2q1r3/1P6/3N4/8/4K3 w - - 0 1",
            {Entry(9, "b4", "c5", QUEEN, 85), Entry(10, "d3", "c5", QUEEN, 84), Entry(10, "d3", "e5", ROOK, 68)},
            3},
        CaptureListCase{
            "EveryAttackerOnOneVictim",
            "k7/8/8/4K3/3q3Q/1NP5/5B2/3R4 w - - 0 1",
            {Entry(9, "c3", "d4", QUEEN, 85), Entry(10, "b3", "d4", QUEEN, 84), Entry(11, "f2", "d4", QUEEN, 83),
             Entry(12, "d1", "d4", QUEEN, 82), Entry(13, "h4", "d4", QUEEN, 81), Entry(14, "e5", "d4", QUEEN, 80)},
            6}),
    [](const ::testing::TestParamInfo<CaptureListCase>& info) { return std::string(info.param.name); });

struct QuietCase {
  const char* name;
  const char* fen;
  const char* checks;   // the checking list as "e4d6 e4f6", castling as "O-O-O" and "O-O"
  const char* setFrom;  // one piece's set entry: its square and its targets, or empty
  const char* setTargets;
};
std::ostream& operator<<(std::ostream& out, const QuietCase& c) { return out << c.name; }

class QuietLists : public ::testing::TestWithParam<QuietCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

std::string QuietText(Move m, int side) {
  if (m == MOVE_CASTLE_QUEEN_SIDE) return "O-O-O";
  if (m == MOVE_CASTLE_KING_SIDE) return "O-O";
  const int from = side == BLACK ? Mirror(MoveFrom(m)) : MoveFrom(m),
            to = side == BLACK ? Mirror(MoveTo(m)) : MoveTo(m);
  return std::string{static_cast<char>('a' + from % 8), static_cast<char>('1' + from / 8),
                     static_cast<char>('a' + to % 8), static_cast<char>('1' + to / 8)};
}

TEST_P(QuietLists, ChecksAndSets) {
  const QuietCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(c.fen), 1);
  const Generated g = Generate(*current);
  std::string checks;
  for (Move m : g.checks) {
    if (!checks.empty()) checks += ' ';
    checks += QuietText(m, current->side);
  }
  EXPECT_EQ(checks, c.checks);
  if (*c.setFrom) {
    const MoveSet* found = nullptr;
    for (const MoveSet& s : g.sets)
      if (MoveFrom(s.head) == Sq(c.setFrom)) found = &s;
    ASSERT_NE(found, nullptr) << "no set for " << c.setFrom;
    EXPECT_EQ(found->targets, Squares(c.setTargets));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Board, QuietLists,
    ::testing::Values(
        QuietCase{"KnightChecksFirst", "4k3/8/8/8/4N3/8/8/K7 w - - 0 1", "e4d6 e4f6", "e4", "c3 c5 d2 f2 g3 g5"},
        QuietCase{"BishopDiscoversTheRook", "4k3/8/8/8/4B3/8/8/4R2K w - - 0 1",
                  "e4b1 e4c2 e4g2 e4d3 e4f3 e4d5 e4f5 e4c6 e4g6 e4b7 e4h7 e4a8", "e1", "a1 b1 c1 d1 e2 e3 f1 g1"},
        QuietCase{"RookDiscoversTheBishop", "7k/8/8/8/8/2R5/8/B6K w - - 0 1",
                  "c3c1 c3c2 c3a3 c3b3 c3d3 c3e3 c3f3 c3g3 c3h3 c3c4 c3c5 c3c6 c3c7 c3c8", "", ""},
        QuietCase{"PawnPushStillCountsAsDiscovery", "4k3/8/8/8/8/4P3/8/4R2K w - - 0 1", "e3e4", "", ""},
        QuietCase{"QueenIsNoDiscoverer", "4k3/8/8/8/4Q3/8/8/4R2K w - - 0 1", "e4a4 e4e5 e4c6 e4e6 e4g6 e4e7 e4a8", "",
                  ""},
        QuietCase{"KingStepsOffTheLineDiscover", "4k3/8/8/8/4K3/8/8/4R3 w - - 0 1", "e4d3 e4f3 e4d4 e4f4 e4d5 e4f5",
                  "e4", "e3 e5"},
        QuietCase{"PawnChecks", "4k3/8/8/3P4/8/5P2/8/4K3 w - - 0 1", "", "d5", "d6"},
        QuietCase{"PawnCheckSquares", "8/8/4k3/8/3P1P2/8/8/4K3 w - - 0 1", "d4d5 f4f5", "", ""}),
    [](const ::testing::TestParamInfo<QuietCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
