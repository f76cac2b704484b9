// The engine through the real binary at work and at its limits: games against itself, a game longer than the
// stack, set-ups no game can reach, absurd clocks, input cut short. Every run ends cleanly with moves well formed.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "board/fen.h"
#include "board/position.h"
#include "board/user_move.h"
#include "game/game_end.h"
#include "game/game_state.h"
#include "game/new_game.h"
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

struct SelfPlayCase {
  const char* name;
  const char* setUp;  // a "setboard" line, or "new"
  const char* book;
};
std::ostream& operator<<(std::ostream& out, const SelfPlayCase& c) { return out << c.name; }

class SelfPlay : public ::testing::TestWithParam<SelfPlayCase> {};

// "go" after each of its moves makes the engine take the other side. Every move it prints must be legal,
// as the move reader checks when the game is replayed, and the game must end with the result line of
// its last position.
TEST_P(SelfPlay, EveryMoveIsLegalAndTheGameEndsWithAResult) {
  // Tiny clocks: one shallow iteration a move, so a whole game takes a moment.
  std::string input = HANDSHAKE + GetParam().setUp + "\nforce\ntime 2\notim 2\n";
  for (int i = 0; i < 700; ++i) input += "go\ntime 2\n";
  const EngineRun run = RunWithInput(input + "quit\n", std::string(GetParam().book));
  ExpectCleanExit(run);
  const Played played = ReadPlayed(run.output);
  ASSERT_FALSE(played.result.empty()) << "no result after " << played.moves.size() << " moves";

  NewGame();
  ASSERT_EQ(std::string(GetParam().setUp) == "new" ? 1 : SetBoard(*current, GetParam().setUp + 9), 1);
  for (const std::string& move : played.moves) ASSERT_EQ(ReadUserMove(move.c_str()), MOVE_OK) << move;
  const char* expected[] = {nullptr,
                            "1-0 {vince il bianco}",
                            "0-1 {vince il nero}",
                            "1/2-1/2 {pari per stallo}",
                            "1/2-1/2 {pari 50 mosse}",
                            "1/2-1/2 {pari per ripetizione}"};
  const int result = CheckGameEnd();
  ASSERT_GE(result, 1);
  EXPECT_EQ(played.result, expected[result]);
  EXPECT_NE(run.log.value_or("").find(played.result), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Games, SelfPlay,
    ::testing::Values(SelfPlayCase{"FromTheInitialPositionWithABook", "new", "e2e4 e7e5 g1f3 b8c6\nd2d4 d7d5\n"},
                      SelfPlayCase{"RookEnding", "setboard 4k3/8/8/8/8/8/8/4K2R w K - 0 1", "e2e4\n"},
                      SelfPlayCase{"PawnRace", "setboard 8/5k1p/8/8/8/8/P1K5/8 b - - 0 1", "e2e4\n"}),
    [](const ::testing::TestParamInfo<SelfPlayCase>& info) { return std::string(info.param.name); });

// A game far longer than the 600 records of the position stack, typed in force mode: knights out and back
// repeat the start every four plies and take the fifty-move count past 100 and round. Every move is
// accepted, the draws are announced and the game goes on, and after a pawn move "go" makes the engine move.
TEST(Stress, GameLongerThanThePositionStack) {
  std::string input = HANDSHAKE + "new\nforce\n";
  for (int i = 0; i < 200; ++i) input += "g1f3\ng8f6\nf3g1\nf6g8\n";  // 800 plies
  const EngineRun run = RunWithInput(input + "e2e4\ntime 5\notim 5\ngo\nquit\n", "");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output.find("Illegal move"), std::string::npos);
  EXPECT_NE(run.output.find("\n1/2-1/2 {pari per ripetizione}\n"), std::string::npos);
  EXPECT_NE(run.output.find("\n1/2-1/2 {pari 50 mosse}\n"), std::string::npos);
  EXPECT_EQ(ReadPlayed(run.output).moves.size(), 1u) << run.output;
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
        SearchCase{"SixtySixCaptures", "setboard QQQQQQQQ/pppppppp/QQQQQQQQ/pppppppp/8/8/8/K6k w - - 0 1" + FOUR_MOVES,
                   4},
        SearchCase{"PawnsOnTheBackRanks", "setboard P3k2P/8/8/8/8/8/8/p3K2p w - - 0 1" + FOUR_MOVES, 4},
        SearchCase{"CastlingRightsWithoutRooks", "setboard 4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1" + FOUR_MOVES, 4},
        // Clocks and controls no interface sends on purpose.
        SearchCase{"TimeZero", "new\ntime 0\notim 0\ngo\nquit\n", 1},
        SearchCase{"TimeBelowIntRange", "new\ntime -99999999999\notim 5\ngo\nquit\n", 1},
        SearchCase{"LevelZero", "new\nlevel 0 0 0\ntime 10\notim 10\ngo\nquit\n", 1},
        // Input that ends in the middle of the "go" line: it is a whole line, then the run ends quietly.
        SearchCase{"InputCutAfterGo", "new\ntime 5\notim 5\ngo", 1}),
    [](const ::testing::TestParamInfo<SearchCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek::test
