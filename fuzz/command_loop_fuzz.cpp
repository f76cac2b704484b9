// Fuzz target: the real command loop on arbitrary input, in process. The first byte chooses the
// mode: bit 0 console mode, and in xboard mode bit 1 clear puts a correct handshake before the rest,
// so that most inputs reach the command table. The search is bounded to two plies per move so that
// every input runs quickly whatever clocks it sends; the engine's lines go to /dev/null.
//
// The quiescence search has no depth limit, and its work grows exponentially with the number of men
// that can capture one another: a set-up with twenty queens takes minutes even at depth 1. Inputs that
// set up more than MAX_SETUP_MEN men besides the kings are therefore skipped here (the FEN target
// covers such positions, and the stress tests play some of them through the engine).
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "game/command_loop.h"
#include "game/game_state.h"
#include "work_folder.h"

namespace {

constexpr char HANDSHAKE[] = "xboard\nprotover 2\n";
// A small book, so that the first moves of a game come from it.
constexpr char BOOK[] =
    "e2e4 e7e5 g1f3 b8c6 f1b5\n"
    "e2e4 c7c5 g1f3 d7d6\n"
    "d2d4 d7d5 c2c4 e7e6\n"
    "g1f3 g8f6 c2c4 e7e6\n";

constexpr int MAX_SETUP_MEN = 16;

// Whether some "setboard" line of the input places more than MAX_SETUP_MEN men other than kings.
bool SetsUpCrowdedBoard(const std::string& input) {
  for (size_t start = 0; start < input.size();) {
    size_t end = input.find('\n', start);
    if (end == std::string::npos) end = input.size();
    if (input.compare(start, 9, "setboard ") == 0) {
      int men = 0;
      size_t c = start + 9;
      while (c < end && input[c] == ' ') ++c;
      for (; c < end && input[c] != ' ' && input[c] != '\0'; ++c) {
        if (std::strchr("PNBRQpnbrq", input[c])) ++men;
      }
      if (men > MAX_SETUP_MEN) return true;
    }
    start = end + 1;
  }
  return false;
}

FILE* sink = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  sink = vorlek::fuzz::EnterWorkFolder(BOOK);
  vorlek::maxThinkDepth = 2;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const bool consoleMode = data[0] & 1;
  std::string input;
  if (!consoleMode && !(data[0] & 2)) input = HANDSHAKE;
  input.append(reinterpret_cast<const char*>(data) + 1, size - 1);
  if (input.empty() || SetsUpCrowdedBoard(input)) return 0;
  FILE* in = fmemopen(input.data(), input.size(), "r");
  if (!in) return 0;
  vorlek::RunEngine(in, sink, consoleMode);
  std::fclose(in);
  return 0;
}
