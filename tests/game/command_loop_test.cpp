// The command loop in process: what each command leaves in the loop's state (the clocks, the moves per
// control, the side the engine plays, the result, book use), which the protocol's bytes do not show.
#include "game/command_loop.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <ostream>
#include <string>

#include "board/types.h"
#include "game/game_state.h"
#include "game/new_game.h"
#include "support/engine_process.h"

namespace vorlek::test {
namespace {

struct StateCase {
  const char* name;
  std::string input;  // after the handshake, before "quit"
  int engineTime = 30000, opponentTime = 30000, levelMoves = 0, engineSide = SIDE_NONE, gameResult = 0, useBook = 1;
};
std::ostream& operator<<(std::ostream& out, const StateCase& c) { return out << c.name; }

class LoopState : public ::testing::TestWithParam<StateCase> {};

TEST_P(LoopState, AfterTheCommands) {
  TemporaryDirectory dir;
  dir.WriteFile("Aperture.txt", "g1f3 g8f6 b1c3 b8c6\n");
  char* const previous = getcwd(nullptr, 0);
  ASSERT_EQ(chdir(dir.Path().c_str()), 0);
  std::string input = HANDSHAKE + GetParam().input + "quit\n";
  FILE* in = fmemopen(input.data(), input.size(), "r");
  FILE* out = std::tmpfile();
  EXPECT_EQ(RunEngine(in, out, false), 0);
  std::fclose(in);
  std::fclose(out);
  ASSERT_EQ(chdir(previous), 0);
  free(previous);
  EXPECT_EQ(engineTime, GetParam().engineTime);
  EXPECT_EQ(opponentTime, GetParam().opponentTime);
  EXPECT_EQ(levelMoves, GetParam().levelMoves);
  EXPECT_EQ(engineSide, GetParam().engineSide);
  EXPECT_EQ(gameResult, GetParam().gameResult);
  EXPECT_EQ(useBook, GetParam().useBook);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, LoopState,
    ::testing::Values(StateCase{"TimeAndOtim", "time 1234\notim 987\n", 1234, 987},
                      StateCase{"OtimAlone", "otim 987\n", 30000, 987},
                      // 2^64 + 1234: a number read without saturating would wrap to 1234.
                      StateCase{"NumbersSaturate", "time 18446744073709552850\notim -99999999999\n", INT_MAX, INT_MIN},
                      StateCase{"Level", "level 40 5 0\n", 30000, 30000, 40},
                      StateCase{"LevelMinutesAndSeconds", "level 40 0:30 0\n", 30000, 30000, 40},
                      StateCase{"NewResetsClocksAndPlaysBlack", "time 5\notim 6\nlevel 30 1 0\nforce\nnew\n", 30000,
                                30000, 0, BLACK},
                      StateCase{"GoPlaysTheSideToMove", "force\nb1c3\ntime 0\ngo\n", 0, 30000, 0, BLACK, 0, 0},
                      StateCase{"Force", "new\nforce\n"},
                      StateCase{"MateResult", "f2f3\ne7e5\ng2g4\nd8h4\n", 30000, 30000, 0, SIDE_NONE, 2},
                      StateCase{"NewClearsTheResult", "f2f3\ne7e5\ng2g4\nd8h4\nnew\n", 30000, 30000, 0, BLACK, 0},
                      // Out of the book (the position after b1c3 is not in it), the engine stays out, also where the
                      // game comes back into it (b1c3 g8f6 g1f3 is g1f3 g8f6 b1c3); a new game takes the book again.
                      StateCase{"BookLeftAtTheFirstMiss", "new\ntime 0\nb1c3\ng1f3\n", 0, 30000, 0, BLACK, 0, 0},
                      StateCase{"NewGameTakesTheBookAgain", "new\ntime 0\nb1c3\nnew\n", 30000, 30000, 0, BLACK, 0, 1}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace vorlek::test
