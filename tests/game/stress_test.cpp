// The engine through the real binary at its limits: set-ups no game can reach, absurd clocks, input cut short.
// Every run ends cleanly with moves well formed.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

struct Played {
  std::vector<std::string> moves;  // the move texts, without "move " and without a trailing blank
  std::string result;              // the first result line, "" when there is none
};

// The moves and the first result line of an output; every "move" line must be a move in coordinates.
Played ReadPlayed(const std::string& output) {
  static const std::regex MOVE("move ([a-h][1-8][a-h][1-8][nbrq]?) ?"), RESULT(".* \\{.*\\}");
  Played played;
  std::istringstream lines(output);
  std::smatch move;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("move ", 0) == 0) {
      EXPECT_TRUE(std::regex_match(line, move, MOVE) && line.size() == 10) << line;
      played.moves.push_back(move[1]);
    } else if (played.result.empty() && std::regex_match(line, RESULT)) {
      played.result = line;
    }
  }
  return played;
}

// Searches that must still end in a move, with no book: `input` follows the handshake and asks for
// `moves` moves. With more than one, the game may end earlier (a side left without men or moves, at a
// depth that depends on the machine's speed), but then with a result line.
struct SearchCase {
  const char* name;
  std::string input;
  size_t moves;
};
std::ostream& operator<<(std::ostream& out, const SearchCase& c) { return out << c.name; }

class EngineMoves : public ::testing::TestWithParam<SearchCase> {};

TEST_P(EngineMoves, AndGoesOn) {
  const EngineRun run = RunWithInput(HANDSHAKE + GetParam().input, "");
  ExpectCleanExit(run);
  const Played played = ReadPlayed(run.output);
  EXPECT_GE(played.moves.size(), 1u) << run.output;
  EXPECT_LE(played.moves.size(), GetParam().moves) << run.output;
  EXPECT_TRUE(played.moves.size() == GetParam().moves || !played.result.empty()) << run.output;
}

const std::string FOUR_MOVES = "\ntime 5\notim 5\ngo\ngo\ngo\ngo\nquit\n";

INSTANTIATE_TEST_SUITE_P(
    Stress, EngineMoves,
    ::testing::Values(
        // Capture sequences that would take hours: the search stops at its emergency deadline and still plays.
        SearchCase{"ExplodingCaptureSequences",
                   "setboard QQQQQQQQ/QQQQQQQQ/8/8/8/8/qqqqqqqq/qqqqqqqk w - - 0 1\ntime 5\notim 5\ngo\nquit\n", 1},
        SearchCase{"NoKings", "setboard 8/8/3q4/8/8/4Q3/8/8 w - - 0 1" + FOUR_MOVES, 4},
        SearchCase{"FortyEightMen",
                   "setboard rnbqkbnr/pppppppp/pppppppp/8/8/PPPPPPPP/PPPPPPPP/RNBQKBNR w KQkq - 0 1" + FOUR_MOVES, 4},
        // Clocks and controls no interface sends on purpose.
        SearchCase{"TimeZero", "new\ntime 0\notim 0\ngo\nquit\n", 1},
        SearchCase{"TimeBelowIntRange", "new\ntime -99999999999\notim 5\ngo\nquit\n", 1},
        SearchCase{"LevelZero", "new\nlevel 0 0 0\ntime 10\notim 10\ngo\nquit\n", 1},
        // Input that ends in the middle of the "go" line: it is a whole line, then the run ends quietly.
        SearchCase{"InputCutAfterGo", "new\ntime 5\notim 5\ngo", 1}),
    [](const ::testing::TestParamInfo<SearchCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek::test
