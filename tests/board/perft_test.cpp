// Perft: legal leaf counts of the public test positions, in process and through the vorlek-perft tool.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"
#include "support/engine_process.h"

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

// vorlek-perft's output lines for the given arguments (already quoted for the shell); standard error dropped.
std::vector<std::string> RunPerftTool(const std::string& arguments) {
  const test::EngineRun run = test::RunCommand("'" VORLEK_PERFT_BINARY "' " + arguments + " 2>/dev/null");
  EXPECT_EQ(run.exitStatus, 0) << arguments;
  std::vector<std::string> lines;
  std::istringstream output(run.output);
  for (std::string line; std::getline(output, line);) lines.push_back(line);
  return lines;
}

TEST(PerftTool, DivideNamesRealSquaresAndEndsWithTheTotal) {
  // One line per root move, "d7c8q 1", then the total; black's moves are named on the real board.
  const std::string underpromotion = std::string("'") + test::PERFT_POSITIONS[5] + "'";
  std::vector<std::string> lines = RunPerftTool("--divide 1 " + underpromotion);
  ASSERT_EQ(lines.size(), 45u);
  EXPECT_EQ(lines.back(), "44");
  for (const char* line : {"d7c8q 1", "d7c8n 1", "e1g1 1"})
    EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1) << line;

  lines = RunPerftTool("--divide 2 'rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1'");
  EXPECT_EQ(lines.back(), "600");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "g8f6 30"), 1);

  // The FEN may also come as its six words.
  EXPECT_EQ(RunPerftTool(std::string("2 ") + test::PERFT_POSITIONS[1]).back(), "2039");
}

}  // namespace
}  // namespace vorlek
