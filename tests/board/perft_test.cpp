// Perft: legal leaf counts of the public test positions, in process and through the vorlek-perft tool.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

struct PerftCase {
  const char* name;
  int position;  // index into test::PERFT_POSITIONS
  int depth;
  uint64_t leaves;
};
std::ostream& operator<<(std::ostream& out, const PerftCase& c) { return out << c.name << " depth " << c.depth; }

class PerftCounts : public ::testing::TestWithParam<PerftCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(PerftCounts, CountsLegalLeaves) {
  const PerftCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(test::PERFT_POSITIONS[c.position]), 1);
  EXPECT_EQ(Perft(c.depth), c.leaves);
  EXPECT_EQ(current, PositionStack);
}

// About 17 million leaves: a second in an optimised build, a few seconds under the sanitizers.
INSTANTIATE_TEST_SUITE_P(PublicPositions, PerftCounts,
                         ::testing::Values(PerftCase{"Initial", 0, 5, 4865609}, PerftCase{"Kiwipete", 1, 4, 4085603},
                                           PerftCase{"Endgame", 2, 5, 674624}, PerftCase{"Promotions", 3, 4, 422333},
                                           PerftCase{"PromotionsMirrored", 4, 4, 422333},
                                           PerftCase{"Underpromotion", 5, 4, 2103487},
                                           PerftCase{"Middlegame", 6, 4, 3894594}),
                         [](const ::testing::TestParamInfo<PerftCase>& info) { return std::string(info.param.name); });

// ---- the vorlek-perft tool ----

struct ToolRun {
  std::vector<std::string> lines;  // standard output
  int status = -1;
};

// Runs vorlek-perft with the given arguments (already quoted for the shell); standard error is dropped.
ToolRun RunPerftTool(const std::string& arguments) {
  ToolRun run;
  const std::string command = std::string("'") + VORLEK_PERFT_BINARY + "' " + arguments + " 2>/dev/null";
  FILE* out = popen(command.c_str(), "r");
  if (!out) return run;
  char line[256];
  while (std::fgets(line, sizeof line, out)) {
    std::string text = line;
    if (!text.empty() && text.back() == '\n') text.pop_back();
    run.lines.push_back(text);
  }
  const int status = pclose(out);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return run;
}

TEST(PerftTool, DivideNamesRealSquaresAndEndsWithTheTotal) {
  // One line per root move, "d7c8q 1", then the total; black's moves are named on the real board.
  const std::string underpromotion = std::string("'") + test::PERFT_POSITIONS[5] + "'";
  ToolRun run = RunPerftTool("--divide 1 " + underpromotion);
  EXPECT_EQ(run.status, 0);
  ASSERT_EQ(run.lines.size(), 45u);
  EXPECT_EQ(run.lines.back(), "44");
  for (const char* line : {"d7c8q 1", "d7c8n 1", "e1g1 1"})
    EXPECT_EQ(std::count(run.lines.begin(), run.lines.end(), line), 1) << line;

  run = RunPerftTool("--divide 2 'rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1'");
  EXPECT_EQ(run.lines.back(), "600");
  EXPECT_EQ(std::count(run.lines.begin(), run.lines.end(), "g8f6 30"), 1);

  // The FEN may also come as its six words.
  EXPECT_EQ(RunPerftTool(std::string("2 ") + test::PERFT_POSITIONS[1]).lines.back(), "2039");
}

TEST(PerftTool, RefusedInputEndsWithStatus2) {
  for (const char* arguments :
       {"", "x", "-1", "--divide", "1 'rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1'"}) {
    const ToolRun run = RunPerftTool(arguments);
    EXPECT_EQ(run.status, 2) << arguments;
    EXPECT_TRUE(run.lines.empty()) << arguments;
  }
}

}  // namespace
}  // namespace vorlek
