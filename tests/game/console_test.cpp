// Console mode as a person at a terminal sees it: the real engine on a pseudo-terminal, the prompt
// before every command and the board drawn after every command, compared byte for byte.
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <ostream>
#include <string>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

const std::string PROMPT = "Comando: ";

// The drawing of eight rows of eight letters, rank 8 first: white at the bottom, one letter centred in each cell.
std::string Board(const std::array<std::string, 8>& rows) {
  const std::string border = "  +---+---+---+---+---+---+---+---+\n";
  std::string text = "\n\n" + border;
  for (int i = 0; i < 8; ++i) {
    text += std::to_string(8 - i) + " |";
    for (char square : rows[i]) text += std::string(" ") + square + " |";
    text += "\n" + border;
  }
  return text + "\n    A   B   C   D   E   F   G   H\n\n";
}

const std::string INITIAL_BOARD =
    Board({"tcadract", "pppppppp", "        ", "        ", "        ", "        ", "PPPPPPPP", "TCADRACT"});
const std::string AFTER_E4 =
    Board({"tcadract", "pppppppp", "        ", "        ", "    P   ", "        ", "PPPP PPP", "TCADRACT"});
const std::string AFTER_E4_E5 =
    Board({"tcadract", "pppp ppp", "        ", "    p   ", "    P   ", "        ", "PPPP PPP", "TCADRACT"});

struct ConsoleCase {
  const char* name;
  std::string keys;  // typed line by line, each at the next prompt
  std::string output;
  std::optional<std::string> log;
};
std::ostream& operator<<(std::ostream& out, const ConsoleCase& c) { return out << c.name; }

class Console : public ::testing::TestWithParam<ConsoleCase> {};

TEST_P(Console, PromptsAndDrawsAfterEveryCommand) {
  const EngineRun run = RunOnTerminal(GetParam().keys);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, GetParam().output);
  EXPECT_EQ(run.log, GetParam().log);
}

INSTANTIATE_TEST_SUITE_P(
    Sessions, Console,
    ::testing::Values(
        // No board before the first command; black to move, and the board still has white at the bottom.
        // The end-of-file character at the start of a line ends the input.
        ConsoleCase{"EndOfInputAfterMove", "e2e4\n\x04", PROMPT + AFTER_E4 + PROMPT, "Avversario: e2e4\n"},
        ConsoleCase{"EngineAnswersBeforeTheBoard", "new\ne2e4\nquit\n",
                    PROMPT + INITIAL_BOARD + PROMPT + "move e7e5 \n" + AFTER_E4_E5 + PROMPT + AFTER_E4_E5 + PROMPT,
                    "Avversario: e2e4\nVorlek: e7e5 \n"},
        ConsoleCase{"RepliesBeforeTheBoard", "hello\ne2e5\nquit\n",
                    PROMPT + "Error(comando non previsto): hello\n" + INITIAL_BOARD + PROMPT +
                        "Illegal move(Pezzo non di turno o casa vuota o casa di destinazione non valida): e2e5\n" +
                        INITIAL_BOARD + PROMPT + INITIAL_BOARD + PROMPT,
                    ""},
        // An emptied square shows as a blank again in the next drawing.
        ConsoleCase{"NewRedrawsEverySquare", "e2e4\nnew\nquit\n",
                    PROMPT + AFTER_E4 + PROMPT + INITIAL_BOARD + PROMPT + INITIAL_BOARD + PROMPT,
                    "Avversario: e2e4\n"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace vorlek::test
