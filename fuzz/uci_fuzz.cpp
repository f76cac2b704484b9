// Fuzz target: vorlek-uci's command reader, the real one (RunUci) in process, on arbitrary input: "position"
// with any FEN and move list, "go" with any words and numbers, "setoption" with any name and value, and any
// command while a search runs on its thread. Every search is bounded to two plies and 20000 nodes so that
// each input ends at once; the engine's lines go to /dev/null. The input ends as a runner's would: a search
// still running is stopped, or finishes, and sends its move.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "uci/uci_go.h"
#include "uci/uci_loop.h"
#include "work_folder.h"

namespace {

// A small book, so that game moves come from it.
constexpr char BOOK[] =
    "e2e4 e7e5 g1f3 b8c6 f1b5\n"
    "d2d4 d7d5 c2c4 e7e6\n";

FILE* sink = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  sink = vorlek::fuzz::EnterWorkFolder(BOOK);
  vorlek::uci::searchDepthCap = 2;
  vorlek::uci::searchNodeCap = 20000;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string input(reinterpret_cast<const char*>(data), size);
  FILE* in = fmemopen(input.data(), input.size() == 0 ? 1 : input.size(), "r");
  if (!in) return 0;
  vorlek::uci::RunUci(in, sink, vorlek::fuzz::workFolder);
  std::fclose(in);
  return 0;
}
