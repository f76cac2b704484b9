// The command loop run in this process on memory streams, for the state that the engine never
// prints: the clock values, the side the engine plays and the pending result.
#include "game/command_loop.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <string>

#include "board/types.h"
#include "game/game_state.h"
#include "support/engine_process.h"

namespace vorlek::test {
namespace {

// Runs RunEngine on `input` in a fresh working directory holding SMALL_BOOK; returns its output.
std::string RunInProcess(const std::string& input) {
  TemporaryDirectory dir;
  dir.WriteFile("Aperture.txt", SMALL_BOOK);
  char previous[4096];
  if (!getcwd(previous, sizeof previous)) ADD_FAILURE() << "getcwd failed";
  if (chdir(dir.Path().c_str()) != 0) ADD_FAILURE() << "chdir failed";

  std::string text = input;
  FILE* in = fmemopen(text.data(), text.size(), "r");
  char* outBuffer = nullptr;
  size_t outSize = 0;
  FILE* out = open_memstream(&outBuffer, &outSize);
  EXPECT_EQ(RunEngine(in, out, false), 0);
  std::fclose(in);
  std::fclose(out);
  std::string output(outBuffer, outSize);
  std::free(outBuffer);
  // The loop leaves its stream behind; later code that reports must not write into a closed one.
  engineOut = stdout;

  if (chdir(previous) != 0) ADD_FAILURE() << "chdir back failed";
  return output;
}

struct LoopCase {
  const char* name;
  std::string input;  // after the handshake
  int engineTime;
  int opponentTime;
  int levelMoves;
  int engineSide;
  int gameResult;
};
std::ostream& operator<<(std::ostream& out, const LoopCase& c) { return out << c.name; }

class CommandLoopState : public ::testing::TestWithParam<LoopCase> {};

TEST_P(CommandLoopState, AfterTheLines) {
  const LoopCase& c = GetParam();
  RunInProcess(HANDSHAKE + c.input);
  EXPECT_EQ(engineTime, c.engineTime);
  EXPECT_EQ(opponentTime, c.opponentTime);
  EXPECT_EQ(levelMoves, c.levelMoves);
  EXPECT_EQ(engineSide, c.engineSide);
  EXPECT_EQ(gameResult, c.gameResult);
}

constexpr int DEFAULT_TIME = 30000;
const std::string FOOLS_MATE = "f2f3\ne7e5\ng2g4\nd8h4\n";
const std::string THREE_TIMES = "g1f3\ng8f6\nf3g1\nf6g8\ng1f3\ng8f6\nf3g1\nf6g8\n";

INSTANTIATE_TEST_SUITE_P(
    Commands, CommandLoopState,
    ::testing::Values(
        LoopCase{"StartValues", "", DEFAULT_TIME, DEFAULT_TIME, 0, SIDE_NONE, 0},
        LoopCase{"TimeNegative", "time -5\n", -5, DEFAULT_TIME, 0, SIDE_NONE, 0},
        LoopCase{"TimeWithoutNumberKeepsValue", "time 100\ntime !\n", 100, DEFAULT_TIME, 0, SIDE_NONE, 0},
        LoopCase{"TimeWithLetterIsUnknown", "time 100\ntime x\n", 100, DEFAULT_TIME, 0, SIDE_NONE, 0},
        LoopCase{"Otim", "otim 100\n", DEFAULT_TIME, 100, 0, SIDE_NONE, 0},
        LoopCase{"OtimWithoutNumberKeepsValue", "otim 100\notim !\n", DEFAULT_TIME, 100, 0, SIDE_NONE, 0},
        LoopCase{"LevelMinutes", "level 40 5 0\n", DEFAULT_TIME, DEFAULT_TIME, 40, SIDE_NONE, 0},
        LoopCase{"LevelMinutesAndSeconds", "level 40 0:30 0\n", DEFAULT_TIME, DEFAULT_TIME, 40, SIDE_NONE, 0},
        LoopCase{"LevelWholeGame", "level 40 5 0\nlevel 0 5 0\n", DEFAULT_TIME, DEFAULT_TIME, 0, SIDE_NONE, 0},
        LoopCase{"LevelWithoutNumberKeepsValue", "level 40 5 0\nlevel !\n", DEFAULT_TIME, DEFAULT_TIME, 40, SIDE_NONE,
                 0},
        LoopCase{"NewRestoresClocks", "time 5\notim 6\nlevel 40 5 0\nnew\n", DEFAULT_TIME, DEFAULT_TIME, 0, BLACK, 0},
        LoopCase{"SetboardRestoresClocksKeepsSide",
                 "new\ntime 5\nlevel 40 5 0\nsetboard 7k/8/8/8/8/8/8/K6R w - - 0 1\n", DEFAULT_TIME, DEFAULT_TIME, 0,
                 BLACK, 0},
        LoopCase{"ForceTakesNoSide", "new\nforce\n", DEFAULT_TIME, DEFAULT_TIME, 0, SIDE_NONE, 0},
        LoopCase{"GoTakesTheSideToMove", "e2e4\ngo\n", DEFAULT_TIME, DEFAULT_TIME, 0, BLACK, 0},
        LoopCase{"ResultIsKept", FOOLS_MATE, DEFAULT_TIME, DEFAULT_TIME, 0, SIDE_NONE, 2},
        LoopCase{"GoAfterResultTakesSideOnly", FOOLS_MATE + "go\n", DEFAULT_TIME, DEFAULT_TIME, 0, WHITE, 2},
        LoopCase{"NewClearsResult", FOOLS_MATE + "go\nnew\n", DEFAULT_TIME, DEFAULT_TIME, 0, BLACK, 0},
        LoopCase{"SetboardKeepsResult", FOOLS_MATE + "setboard 7k/8/8/8/8/8/8/K6R w - - 0 1\n", DEFAULT_TIME,
                 DEFAULT_TIME, 0, SIDE_NONE, 2},
        LoopCase{"Repetition", THREE_TIMES, DEFAULT_TIME, DEFAULT_TIME, 0, SIDE_NONE, 5},
        // The check after a later move replaces the result.
        LoopCase{"NextMoveReplacesResult", THREE_TIMES + "e2e4\n", DEFAULT_TIME, DEFAULT_TIME, 0, SIDE_NONE, 0}),
    [](const auto& info) { return info.param.name; });

TEST(CommandLoopOutput, GoAfterResultMakesNoMove) {
  EXPECT_EQ(RunInProcess(HANDSHAKE + FOOLS_MATE + "go\n"), FEATURE_LINE + "0-1 {vince il nero}\n");
}

TEST(CommandLoopOutput, GoAtStartPlaysTheBookMoveForWhite) {
  EXPECT_EQ(RunInProcess(HANDSHAKE + "go\n"), FEATURE_LINE + "move e2e4 \n");
  EXPECT_EQ(engineSide, WHITE);
}

}  // namespace
}  // namespace vorlek::test
