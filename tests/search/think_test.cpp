// The time allotment, the move text and the thinking line's bytes.
#include "search/think.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "board/fen.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "game/game_state.h"
#include "search/hash_table.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::Sq;

// ---- time allotment ----

struct AllotmentCase {
  int levelMoves, engineTime, opponentTime, ply, side;
  int64_t movesToGo, budget, iterationLimit;
};
std::ostream& operator<<(std::ostream& out, const AllotmentCase& c) {
  return out << "level " << c.levelMoves << " time " << c.engineTime << " otim " << c.opponentTime << " ply " << c.ply;
}

class Allotment : public ::testing::TestWithParam<AllotmentCase> {};

TEST_P(Allotment, FromTheClocks) {
  const AllotmentCase& c = GetParam();
  const TimeAllotment t = ComputeTimeAllotment(c.levelMoves, c.engineTime, c.opponentTime, c.ply, c.side);
  EXPECT_EQ(t.movesToGo, c.movesToGo);
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
                             AllotmentCase{0, 30000, 30000, 1, BLACK, 60, 5000000, 1250000},
                             AllotmentCase{0, 30000, 30000, 99, BLACK, 11, 27272727, 4545454},
                             AllotmentCase{0, 30000, 30000, 100, WHITE, 10, 30000000, 3750000},
                             AllotmentCase{0, 30000, 30000, 101, BLACK, 10, 30000000, 3750000},
                             AllotmentCase{0, 30000, 30000, 102, WHITE, 10, 30000000, 3750000},
                             AllotmentCase{0, 30000, 30000, 400, BLACK, 10, 30000000, 3750000},
                             // White ahead on the clock spends the lead.
                             AllotmentCase{0, 60000, 30000, 0, WHITE, 60, 305000000, 20333333},
                             // Black ahead on the clock: E - E / 60 = 590000000 > 300000000.
                             AllotmentCase{0, 60000, 30000, 1, BLACK, 60, 300000000, 20000000},
                             // Black only slightly ahead keeps the even share.
                             AllotmentCase{0, 30100, 30000, 1, BLACK, 60, 5016666, 1254166},
                             // White behind, or level: the even share.
                             AllotmentCase{0, 20000, 30000, 0, WHITE, 60, 3333333, 833333},
                             // No time left: nothing to spend, and no iteration but the first.
                             AllotmentCase{0, 0, 30000, 0, WHITE, 60, 0, 0},
                             AllotmentCase{0, -500, 30000, 1, BLACK, 60, -83333, -20833},
                             // Malformed controls never divide by zero: a negative count is the whole-game control.
                             AllotmentCase{-40, 30000, 30000, 0, WHITE, 60, 5000000, 1250000},
                             AllotmentCase{-1, 30000, 30000, 150, WHITE, 10, 30000000, 3750000}));

// 10000 moves per control at ply 0 make the budget equal the engine's time: each row of the divisor
// table at both of its ends.
struct DivisorCase {
  int64_t budget;
  int64_t divisor;
};
std::ostream& operator<<(std::ostream& out, const DivisorCase& c) { return out << "budget " << c.budget; }

class Divisor : public ::testing::TestWithParam<DivisorCase> {};

TEST_P(Divisor, ShrinksWithTheBudget) {
  const int64_t budget = GetParam().budget;
  const TimeAllotment t = ComputeTimeAllotment(10000, static_cast<int>(budget), static_cast<int>(budget), 0, WHITE);
  ASSERT_EQ(t.budget, budget);
  EXPECT_EQ(t.iterationLimit, budget / GetParam().divisor);
}

INSTANTIATE_TEST_SUITE_P(Rows, Divisor,
                         ::testing::Values(DivisorCase{1, 4}, DivisorCase{14999999, 4}, DivisorCase{15000000, 6},
                                           DivisorCase{29999999, 6}, DivisorCase{30000000, 8}, DivisorCase{59999999, 8},
                                           DivisorCase{60000000, 10}, DivisorCase{119999999, 10},
                                           DivisorCase{120000000, 12}, DivisorCase{299999999, 12},
                                           DivisorCase{300000000, 15}, DivisorCase{599999999, 15},
                                           DivisorCase{600000000, 18}, DivisorCase{1199999999, 18},
                                           DivisorCase{1200000000, 25}, DivisorCase{2000000000, 25}));

TEST(AllotmentMovesToGo, AlwaysAtLeastOne) {
  for (int level = -100; level <= 100; ++level) {
    for (int ply = 0; ply < 600; ++ply) {
      const TimeAllotment t = ComputeTimeAllotment(level, 30000, 30000, ply, ply % 2 ? BLACK : WHITE);
      ASSERT_GE(t.movesToGo, 1) << level << " " << ply;
      if (level > 0) {
        ASSERT_LE(t.movesToGo, level) << level << " " << ply;
      }
    }
  }
}

// ---- move text ----

struct MoveTextCase {
  int kind, from, to, extra;  // in the mover's view
  int side;
  const char* text;
};
void PrintTo(const MoveTextCase& c, std::ostream* os) { *os << c.text; }

class MoveText : public ::testing::TestWithParam<MoveTextCase> {};

TEST_P(MoveText, AbsoluteSquaresAndPromotionLetter) {
  const MoveTextCase& c = GetParam();
  Position p{};
  p.side = static_cast<uint16_t>(c.side);
  char text[6] = "xxxxx";
  MoveToText(text, MakeMoveValue(c.kind, c.from, c.to, c.extra), p);
  EXPECT_EQ(std::string(text, 6), std::string(c.text, 6));
}

INSTANTIATE_TEST_SUITE_P(
    Moves, MoveText,
    ::testing::Values(MoveTextCase{PAWN, Sq("e2"), Sq("e4"), 0, WHITE, "e2e4 "},
                      // Black's e7e5 is stored as e2e4 in its own view.
                      MoveTextCase{PAWN, Sq("e2"), Sq("e4"), 0, BLACK, "e7e5 "},
                      MoveTextCase{KNIGHT, Sq("g1"), Sq("f3"), 0, BLACK, "g8f6 "},
                      MoveTextCase{KIND_PROMOTION, Sq("a7"), Sq("a8"), KNIGHT << 4, WHITE, "a7a8n"},
                      MoveTextCase{KIND_PROMOTION, Sq("a7"), Sq("a8"), BISHOP << 4, WHITE, "a7a8b"},
                      MoveTextCase{KIND_PROMOTION, Sq("a7"), Sq("a8"), ROOK << 4, WHITE, "a7a8r"},
                      MoveTextCase{KIND_PROMOTION, Sq("a7"), Sq("a8"), QUEEN << 4, WHITE, "a7a8q"},
                      MoveTextCase{KIND_PROMOTION, Sq("a7"), Sq("a8"), QUEEN << 4, BLACK, "a2a1q"},
                      MoveTextCase{KIND_CAPTURE_PROMOTION, Sq("g7"), Sq("h8"), KNIGHT << 4 | ROOK, BLACK, "g2h1n"},
                      MoveTextCase{KIND_CAPTURE + QUEEN, Sq("d1"), Sq("h5"), PAWN, WHITE, "d1h5 "},
                      MoveTextCase{KIND_CASTLE_KING_SIDE, Sq("e1"), Sq("g1"), 0, WHITE, "e1g1 "},
                      MoveTextCase{KIND_CASTLE_KING_SIDE, Sq("e1"), Sq("g1"), 0, BLACK, "e8g8 "},
                      MoveTextCase{KIND_CASTLE_QUEEN_SIDE, Sq("e1"), Sq("c1"), 0, WHITE, "e1c1 "},
                      MoveTextCase{KIND_CASTLE_QUEEN_SIDE, Sq("e1"), Sq("c1"), 0, BLACK, "e8c8 "},
                      MoveTextCase{KIND_EN_PASSANT, Sq("e5"), Sq("d6"), 0, WHITE, "e5d6 "},
                      // Black's d4xe3 en passant: d5 to e6 in its own view.
                      MoveTextCase{KIND_EN_PASSANT, Sq("d5"), Sq("e6"), 0, BLACK, "d4e3 "}));

TEST(MoveTextOfGeneratedMoves, CastlingAndEnPassantAsTheGeneratorsMakeThem) {
  InitTables();
  struct Case {
    const char* fen;
    const char* text;
  };
  for (const Case& c :
       {Case{"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1g1"}, Case{"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1c1"},
        Case{"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "e8g8"}, Case{"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "e8c8"},
        Case{"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 2", "e5d6"}, Case{"4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 2", "d4e3"},
        Case{"4k3/8/8/8/8/8/p7/4K3 b - - 0 1", "a2a1q"}}) {
    ASSERT_EQ(test::SetUpPosition(c.fen), 1) << c.fen;
    const Move m = test::FindMove(c.text);
    ASSERT_NE(m, MOVE_NONE) << c.text;
    char text[6];
    MoveToText(text, m, *current);
    std::string expected = c.text;
    if (expected.size() == 4) expected += ' ';
    EXPECT_EQ(std::string(text), expected);
  }
}

// ---- thinking line ----

struct ThinkingCase {
  int depth, score;
  int64_t elapsed;  // microseconds
  uint64_t nodes;
  const char* line;
};
std::ostream& operator<<(std::ostream& out, const ThinkingCase& c) { return out << c.line; }

class ThinkingNumbers : public ::testing::TestWithParam<ThinkingCase> {};

TEST_P(ThinkingNumbers, ColumnsAndCentiseconds) {
  const ThinkingCase& c = GetParam();
  char line[128];
  FormatThinkingLine(line, sizeof line, c.depth, c.score, c.elapsed, c.nodes);
  EXPECT_EQ(std::string(line), c.line);
}

INSTANTIATE_TEST_SUITE_P(Lines, ThinkingNumbers,
                         ::testing::Values(ThinkingCase{5, 31, 1050000, 12345, "  5      31    105       12345 "},
                                           ThinkingCase{1, 0, 0, 21, "  1       0    000          21 "},
                                           ThinkingCase{12, -15003, 9999, 7, " 12  -15003    000           7 "},
                                           ThinkingCase{7, 15002, 10000, 0, "  7   15002    001           0 "},
                                           ThinkingCase{32, -42, 123456789, 987654321098ULL,
                                                        " 32     -42  12345987654321098 "}));

TEST(ThinkingLine, NumbersThenPrincipalVariationFromTheTable) {
  InitTables();
  NewGame();
  // The remembered line e2e4 e7e5 g1f3, and a promotion, each move followed by its text and a blank.
  const Move e4 = test::FindMove("e2e4");
  StoreHashMove(current->key, e4);
  MakeMove(e4);
  const Move e5 = test::FindMove("e7e5");
  StoreHashMove(current->key, e5);
  MakeMove(e5);
  const Move nf3 = test::FindMove("g1f3");
  StoreHashMove(current->key, nf3);
  current = PositionStack;

  char line[512];
  FormatThinkingLine(line, sizeof line, 3, 35, 2340000, 4567);
  AppendPrincipalVariation(line, sizeof line, 3);
  EXPECT_EQ(std::string(line), "  3      35    234        4567 e2e4  e7e5  g1f3  ");
  EXPECT_EQ(current, PositionStack);

  // No more moves than asked for.
  FormatThinkingLine(line, sizeof line, 2, 35, 0, 1);
  AppendPrincipalVariation(line, sizeof line, 2);
  EXPECT_EQ(std::string(line), "  2      35    000           1 e2e4  e7e5  ");

  ASSERT_EQ(test::SetUpPosition("4k3/1P6/8/8/8/8/8/4K3 w - - 0 1"), 1);
  ClearHashTable();
  StoreHashMove(current->key, test::FindMove("b7b8q"));
  FormatThinkingLine(line, sizeof line, 1, 900, 0, 3);
  AppendPrincipalVariation(line, sizeof line, 1);
  EXPECT_EQ(std::string(line), "  1     900    000           3 b7b8q ");
  ClearHashTable();
}

}  // namespace
}  // namespace vorlek
