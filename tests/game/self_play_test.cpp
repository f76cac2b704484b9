// Whole games of the engine against itself through the real binary: "go" after each of its moves makes it
// take the other side. Every move it prints must be legal, as the move reader checks when the game is
// replayed, and the game must end with a result line after which the engine stays silent.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "board/fen.h"
#include "board/init_tables.h"
#include "board/position.h"
#include "game/game_end.h"
#include "game/game_state.h"
#include "game/user_move.h"
#include "support/engine_process.h"

namespace vorlek {
namespace {

struct SelfPlayCase {
  const char* name;
  const char* setUp;  // a "setboard" line, or "new"
  const char* book;
};
std::ostream& operator<<(std::ostream& out, const SelfPlayCase& c) { return out << c.name; }

class SelfPlay : public ::testing::TestWithParam<SelfPlayCase> {};

constexpr char RESULT_PREFIXES[][4] = {"1-0", "0-1", "1/2"};

TEST_P(SelfPlay, EveryMoveIsLegalAndTheGameEndsWithAResult) {
  // Tiny clocks: one shallow iteration a move, so a whole game takes a moment.
  std::string input = test::HANDSHAKE + GetParam().setUp + "\nforce\ntime 2\notim 2\n";
  for (int i = 0; i < 700; ++i) input += "go\ntime 2\n";
  input += "quit\n";
  const test::EngineRun run = test::RunWithInput(input, std::string(GetParam().book));
  ASSERT_TRUE(run.exited && !run.hung);
  EXPECT_EQ(run.exitStatus, 0);

  std::vector<std::string> moves;
  std::string resultLine;
  std::istringstream lines(run.output);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("move ", 0) == 0) {
      EXPECT_TRUE(resultLine.empty()) << "a move after the result: " << line;
      ASSERT_EQ(line.size(), 10u) << line;
      std::string text = line.substr(5);
      if (text.back() == ' ') text.pop_back();
      moves.push_back(text);
    }
    for (const char* prefix : RESULT_PREFIXES) {
      if (line.rfind(prefix, 0) == 0 && resultLine.empty()) resultLine = line;
    }
  }
  ASSERT_FALSE(resultLine.empty()) << "no result after " << moves.size() << " moves";
  ASSERT_GT(moves.size(), 0u);

  // Replay with the move reader from the same start; the last position must give the same result.
  InitTables();
  NewGame();
  const std::string setUp = GetParam().setUp;
  if (setUp != "new") {
    ASSERT_EQ(SetBoard(*current, setUp.c_str() + 9), 1);
  }
  for (const std::string& move : moves) ASSERT_EQ(ReadUserMove(move.c_str()), MOVE_OK) << move;
  const char* expected[] = {nullptr,
                            "1-0 {vince il bianco}",
                            "0-1 {vince il nero}",
                            "1/2-1/2 {pari per stallo}",
                            "1/2-1/2 {pari 50 mosse}",
                            "1/2-1/2 {pari per ripetizione}"};
  const int result = CheckGameEnd();
  ASSERT_GE(result, 1);
  EXPECT_EQ(resultLine, expected[result]);
  EXPECT_NE(run.log->find(resultLine), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Games, SelfPlay,
    ::testing::Values(SelfPlayCase{"FromTheInitialPositionWithABook", "new", "e2e4 e7e5 g1f3 b8c6\nd2d4 d7d5\n"},
                      SelfPlayCase{"RookEnding", "setboard 4k3/8/8/8/8/8/8/4K2R w K - 0 1", "e2e4\n"},
                      SelfPlayCase{"PawnRace", "setboard 8/5k1p/8/8/8/8/P1K5/8 b - - 0 1", "e2e4\n"}),
    [](const ::testing::TestParamInfo<SelfPlayCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
