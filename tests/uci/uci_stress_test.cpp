// vorlek-uci hammered while it searches: every kind of command arriving at once, searches begun, stopped,
// pondered and replaced, options and positions changed, and the input ending or "quit" in the middle. Each
// "go" gets exactly one "bestmove" and each "isready" one "readyok", and the run ends cleanly (under the
// ThreadSanitizer presets: with no report).
#include <gtest/gtest.h>

#include <iterator>
#include <regex>
#include <string>

#include "support/board_helpers.h"
#include "support/engine_process.h"

namespace vorlek::test {
namespace {

// The lines of an output that begin with `prefix`.
long CountLines(const std::string& output, const std::string& prefix) {
  const std::regex line("^" + prefix, std::regex::multiline);
  return std::distance(std::sregex_iterator(output.begin(), output.end(), line), std::sregex_iterator());
}

class UciStress : public ::testing::TestWithParam<bool> {};

TEST_P(UciStress, EveryGoGetsOneBestMove) {
  const bool quitAtTheEnd = GetParam();
  static const char* const GOES[] = {"go infinite",
                                     "go depth 30",
                                     "go wtime 300 btime 300 winc 10 binc 10",
                                     "go nodes 200000",
                                     "go movetime 30",
                                     "go ponder wtime 1000 btime 1000",
                                     "go mate 3",
                                     "go"};
  static const char* const OTHERS[] = {
      "stop",
      "isready",
      "ucinewgame",
      "position startpos moves e2e4 e7e5",
      "position fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
      "position startpos",
      "setoption name Hash value 4",
      "setoption name Clear Hash",
      "setoption name Move Overhead value 10",
      "ponderhit",
      "debug on",
      "uci",
      "position fen 8/8/8/8/8/8/8/8 w - - 0 1",
  };
  Random random(quitAtTheEnd ? 12345 : 678);
  EngineSession engine(VORLEK_UCI_BINARY, {});
  std::string commands = "setoption name Hash value 8\n";
  long goes = 0, readies = 0;
  for (int i = 0; i < 300; ++i) {
    if (random.Below(3) == 0) {
      commands += std::string(GOES[random.Below(std::size(GOES))]) + "\n";
      ++goes;
    } else {
      const std::string other = OTHERS[random.Below(std::size(OTHERS))];
      commands += other + "\n";
      readies += other == "isready";
    }
  }
  commands += "position startpos\ngo infinite\n";
  ++goes;
  if (quitAtTheEnd) commands += "quit\n";
  engine.Send(commands);
  const EngineRun run = engine.Finish();  // without "quit", the input ends in the middle of the last search
  ExpectCleanExit(run);
  EXPECT_EQ(CountLines(run.output, "bestmove "), goes) << run.output;
  EXPECT_EQ(CountLines(run.output, "readyok"), readies);
}

INSTANTIATE_TEST_SUITE_P(Ends, UciStress, ::testing::Values(true, false),
                         [](const auto& info) { return info.param ? "WithQuit" : "WithTheInput"; });

}  // namespace
}  // namespace vorlek::test
