// Perft: legal leaf counts of the public test positions, in process and through the vorlek-perft tool.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

struct PerftCase {
  const char* name;
  const char* fen;
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
  ASSERT_EQ(test::SetUpPosition(c.fen), 1);
  EXPECT_EQ(Perft(c.depth), c.leaves);
  EXPECT_EQ(current, PositionStack);
}

constexpr const char* INITIAL = test::PERFT_POSITIONS[0];
constexpr const char* KIWIPETE = test::PERFT_POSITIONS[1];
constexpr const char* ENDGAME = test::PERFT_POSITIONS[2];
constexpr const char* PROMOTIONS = test::PERFT_POSITIONS[3];
constexpr const char* PROMOTIONS_MIRRORED = test::PERFT_POSITIONS[4];
constexpr const char* UNDERPROMOTION = test::PERFT_POSITIONS[5];
constexpr const char* MIDDLEGAME = test::PERFT_POSITIONS[6];

// About 17 million leaves: a second in an optimised build, a few seconds under the sanitizers.
INSTANTIATE_TEST_SUITE_P(
    PublicPositions, PerftCounts,
    ::testing::Values(PerftCase{"Initial", INITIAL, 1, 20}, PerftCase{"Initial", INITIAL, 2, 400},
                      PerftCase{"Initial", INITIAL, 3, 8902}, PerftCase{"Initial", INITIAL, 4, 197281},
                      PerftCase{"Initial", INITIAL, 5, 4865609}, PerftCase{"Kiwipete", KIWIPETE, 1, 48},
                      PerftCase{"Kiwipete", KIWIPETE, 2, 2039}, PerftCase{"Kiwipete", KIWIPETE, 3, 97862},
                      PerftCase{"Kiwipete", KIWIPETE, 4, 4085603}, PerftCase{"Endgame", ENDGAME, 1, 14},
                      PerftCase{"Endgame", ENDGAME, 2, 191}, PerftCase{"Endgame", ENDGAME, 3, 2812},
                      PerftCase{"Endgame", ENDGAME, 4, 43238}, PerftCase{"Endgame", ENDGAME, 5, 674624},
                      PerftCase{"Promotions", PROMOTIONS, 1, 6}, PerftCase{"Promotions", PROMOTIONS, 2, 264},
                      PerftCase{"Promotions", PROMOTIONS, 3, 9467}, PerftCase{"Promotions", PROMOTIONS, 4, 422333},
                      PerftCase{"PromotionsMirrored", PROMOTIONS_MIRRORED, 1, 6},
                      PerftCase{"PromotionsMirrored", PROMOTIONS_MIRRORED, 2, 264},
                      PerftCase{"PromotionsMirrored", PROMOTIONS_MIRRORED, 3, 9467},
                      PerftCase{"PromotionsMirrored", PROMOTIONS_MIRRORED, 4, 422333},
                      PerftCase{"Underpromotion", UNDERPROMOTION, 1, 44},
                      PerftCase{"Underpromotion", UNDERPROMOTION, 2, 1486},
                      PerftCase{"Underpromotion", UNDERPROMOTION, 3, 62379},
                      PerftCase{"Underpromotion", UNDERPROMOTION, 4, 2103487},
                      PerftCase{"Middlegame", MIDDLEGAME, 1, 46}, PerftCase{"Middlegame", MIDDLEGAME, 2, 2079},
                      PerftCase{"Middlegame", MIDDLEGAME, 3, 89890}, PerftCase{"Middlegame", MIDDLEGAME, 4, 3894594}),
    [](const ::testing::TestParamInfo<PerftCase>& info) {
      return std::string(info.param.name) + "Depth" + std::to_string(info.param.depth);
    });

// ---- the vorlek-perft tool ----

struct ToolRun {
  std::vector<std::string> lines;  // standard output
  std::string errors;              // standard error
  int status = -1;
};

// Runs vorlek-perft with the given arguments (already quoted for the shell).
ToolRun RunPerftTool(const std::string& arguments) {
  ToolRun run;
  char errorPath[] = "/tmp/vorlek-perft-stderr-XXXXXX";
  const int fd = mkstemp(errorPath);
  if (fd < 0) return run;
  close(fd);
  const std::string command = std::string("'") + VORLEK_PERFT_BINARY + "' " + arguments + " 2>" + errorPath;
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
  if (FILE* err = std::fopen(errorPath, "r")) {
    while (std::fgets(line, sizeof line, err)) run.errors += line;
    std::fclose(err);
  }
  std::remove(errorPath);
  return run;
}

TEST(PerftTool, LastLineIsTheTotal) {
  const ToolRun run = RunPerftTool("3");
  EXPECT_EQ(run.status, 0);
  ASSERT_FALSE(run.lines.empty());
  EXPECT_EQ(run.lines.back(), "8902");
}

TEST(PerftTool, TakesTheFenFromTheRemainingArguments) {
  // The FEN may come as one argument or as its six words.
  EXPECT_EQ(RunPerftTool(std::string("2 '") + KIWIPETE + "'").lines.back(), "2039");
  EXPECT_EQ(RunPerftTool(std::string("2 ") + KIWIPETE).lines.back(), "2039");
}

// A move text: from-square, to-square, an optional promotion letter.
bool IsMoveText(const std::string& text) {
  auto square = [&](size_t i) { return text[i] >= 'a' && text[i] <= 'h' && text[i + 1] >= '1' && text[i + 1] <= '8'; };
  if (text.size() != 4 && text.size() != 5) return false;
  return square(0) && square(2) && (text.size() == 4 || std::strchr("nbrq", text[4]));
}

// `--divide` prints one line per legal root move, "e2e4 20": the move text without a trailing blank.
std::vector<std::pair<std::string, uint64_t>> Divide(const ToolRun& run, uint64_t& total) {
  std::vector<std::pair<std::string, uint64_t>> moves;
  for (size_t i = 0; i + 1 < run.lines.size(); ++i) {
    const std::string& line = run.lines[i];
    const size_t blank = line.find(' ');
    const std::string move = line.substr(0, blank), count = blank == std::string::npos ? "" : line.substr(blank + 1);
    EXPECT_TRUE(IsMoveText(move) && !count.empty() && count.find_first_not_of("0123456789") == std::string::npos)
        << '"' << line << '"';
    moves.emplace_back(move, count.empty() ? 0 : std::stoull(count));
  }
  total = run.lines.empty() ? 0 : std::stoull(run.lines.back());
  return moves;
}

TEST(PerftTool, DivideLinesSumToTheTotal) {
  const ToolRun run = RunPerftTool("--divide 2");
  EXPECT_EQ(run.status, 0);
  uint64_t total = 0;
  const auto moves = Divide(run, total);
  EXPECT_EQ(total, 400u);
  ASSERT_EQ(moves.size(), 20u);
  uint64_t sum = 0;
  std::set<std::string> names;
  for (const auto& [move, leaves] : moves) {
    EXPECT_EQ(leaves, 20u) << move;
    sum += leaves;
    names.insert(move);
  }
  EXPECT_EQ(sum, total);
  EXPECT_EQ(names.size(), 20u);
  EXPECT_EQ(names.count("e2e4"), 1u);
  EXPECT_EQ(names.count("g1f3"), 1u);
  EXPECT_EQ(std::count(run.lines.begin(), run.lines.end(), "e2e4 20"), 1);
}

TEST(PerftTool, DivideNamesPromotionsAndBlackMovesInRealSquares) {
  uint64_t total = 0;
  const auto promotions = Divide(RunPerftTool(std::string("--divide 1 '") + UNDERPROMOTION + "'"), total);
  EXPECT_EQ(total, 44u);
  std::set<std::string> names;
  for (const auto& entry : promotions) names.insert(entry.first);
  for (const char* move : {"d7c8q", "d7c8r", "d7c8b", "d7c8n", "e1g1"}) EXPECT_EQ(names.count(move), 1u) << move;

  const auto black =
      Divide(RunPerftTool("--divide 1 'rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1'"), total);
  EXPECT_EQ(total, 20u);
  names.clear();
  for (const auto& entry : black) names.insert(entry.first);
  for (const char* move : {"e7e5", "g8f6", "b8a6", "h7h6"}) EXPECT_EQ(names.count(move), 1u) << move;
}

TEST(PerftTool, RefusedFenEndsWithStatus2) {
  const ToolRun run = RunPerftTool("1 'rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1'");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(run.lines.empty());
  EXPECT_FALSE(run.errors.empty());
}

TEST(PerftTool, BadDepthEndsWithStatus2) {
  for (const char* arguments : {"", "x", "-1", "--divide"}) {
    const ToolRun run = RunPerftTool(arguments);
    EXPECT_EQ(run.status, 2) << arguments;
    EXPECT_FALSE(run.errors.empty()) << arguments;
  }
}

}  // namespace
}  // namespace vorlek
