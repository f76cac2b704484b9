// The engine's move in process: the limits the xboard loop derives from its clocks ("time" and "otim" in
// centiseconds, "level"), the thinking line's numbers, and a long game of the engine's own moves.
#include "game/engine_move.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <ostream>
#include <string>

#include "board/history.h"
#include "board/position.h"
#include "game/game_state.h"
#include "game/new_game.h"
#include "game/thinking_output.h"
#include "support/board_helpers.h"

namespace vorlek::test {
namespace {

struct ClockCase {
  const char* name;
  int engineTime, opponentTime, levelMoves;  // as the loop stores them: centiseconds, moves per control
  const char* moves;                         // played from the initial position; the engine is to move after
  int64_t iterationLimit, abandonAfter;      // microseconds
};
std::ostream& operator<<(std::ostream& out, const ClockCase& c) { return out << c.name; }

class XboardClocks : public ::testing::TestWithParam<ClockCase> {};

TEST_P(XboardClocks, GiveTheAllotmentOfTheSideToMove) {
  const ClockCase& c = GetParam();
  SetUpInitialPosition();
  ASSERT_TRUE(PlayMoves(c.moves));
  engineTime = c.engineTime;
  opponentTime = c.opponentTime;
  levelMoves = c.levelMoves;
  const SearchLimits limits = ClockLimits();
  ResetClocks();
  EXPECT_EQ(limits.iterationLimit, c.iterationLimit);
  EXPECT_EQ(limits.abandonAfter, c.abandonAfter);
}

std::string KnightsOutAndBack(int times) {
  std::string moves;
  for (int i = 0; i < times; ++i) moves += "g1f3 g8f6 f3g1 f6g8 ";
  return moves;
}
const std::string SIXTY_PLIES = KnightsOutAndBack(15);

INSTANTIATE_TEST_SUITE_P(
    Clocks, XboardClocks,
    ::testing::Values(
        // 300 s each, the game reckoned at 60 moves: 5 s, a quarter of it for iterations; abandoned at ten
        // times the budget, before four fifths of the clock.
        ClockCase{"WhiteEven", 30000, 30000, 0, "", 1250000, 50000000},
        // White ahead takes its lead and a sixtieth of the opponent's clock: 305 s, a fifteenth of it.
        ClockCase{"WhiteAhead", 60000, 30000, 0, "", 20333333, 480000000},
        // Black ahead takes only its lead: 300 s.
        ClockCase{"BlackAhead", 60000, 30000, 0, "e2e4", 20000000, 480000000},
        // The opponent's clock does not count when the engine is behind.
        ClockCase{"WhiteBehind", 30000, 60000, 0, "", 1250000, 50000000},
        // 40 moves per control, 30 moves played by each side: 10 moves to go, 30 s, an eighth of it.
        ClockCase{"LevelForty", 30000, 30000, 40, SIXTY_PLIES.c_str(), 3750000, 240000000},
        // A clock of 1 s: the budget is below 10 s, so the clock rule gives up an iteration at 0.8 s.
        ClockCase{"ShortClock", 100, 100, 0, "", 4166, 800000}),
    [](const auto& info) { return info.param.name; });

// The numbers of a thinking line: depth, score, the elapsed time as seconds then hundredths (so that the
// two read as centiseconds), nodes.
struct ThinkingCase {
  int depth, score;
  int64_t elapsed;  // microseconds
  uint64_t nodes;
  const char* line;
};

class ThinkingLine : public ::testing::TestWithParam<ThinkingCase> {};

TEST_P(ThinkingLine, Columns) {
  char line[128];
  FormatThinkingLine(line, sizeof line, GetParam().depth, GetParam().score, GetParam().elapsed, GetParam().nodes);
  EXPECT_EQ(std::string(line), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(Numbers, ThinkingLine,
                         ::testing::Values(ThinkingCase{1, 612, 0, 36196, "  1     612    000       36196 "},
                                           ThinkingCase{5, -35, 1050000, 162201, "  5     -35    105      162201 "},
                                           ThinkingCase{12, 15003, 12349999, 7, " 12   15003   1234           7 "},
                                           ThinkingCase{7, 0, 99999990000, 123456789012,
                                                        "  7       09999999123456789012 "}));

// The engine's own moves slide the game's history as the opponent's do: a game of 500 plies of the engine's
// alone keeps room above it for every search.
TEST(EngineMove, LongGameOfTheEnginesOwnMovesKeepsRoomForTheSearch) {
  FILE* sink = std::fopen("/dev/null", "w");
  engineOut = sink;
  NewGame();
  ResetClocks();
  ASSERT_EQ(SetUpPosition("4k3/8/8/8/8/8/8/4K3 w - - 0 1"), 1);  // no side can ever be mated
  engineTime = 0;                                                // one iteration a move
  char move[8];
  for (int ply = 1; ply <= 500; ++ply) {
    ASSERT_TRUE(Think(move));
    ASSERT_EQ(GamePly(), ply);
    ASSERT_LE(StackIndex(current), GAME_HISTORY_LIMIT);
  }
  ResetClocks();
  engineOut = stdout;
  std::fclose(sink);
}

}  // namespace
}  // namespace vorlek::test
