// The tools as separate processes: vorlek-book on the shipped book and a broken one, vorlek-bench on its
// built-in positions and a file (node counts change with any change to the order or number of nodes searched).
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

EngineRun RunTool(const std::string& command, const std::string& file = "", const std::string& contents = "") {
  return RunCommand(command, file.empty() ? Files{} : Files{{file, contents}});
}

// The number after `label` in `output`, or -1 when the label is missing.
int NumberAfter(const std::string& output, const std::string& label) {
  const size_t at = output.find(label);
  return at == std::string::npos ? -1 : std::atoi(output.c_str() + at + label.size());
}

// The shipped book leaves room for a user's own lines: at least 45 of the 300 positions (15%) free.
TEST(BookTool, PassesTheShippedBook) {
  const EngineRun run = RunTool("'" VORLEK_BOOK_BINARY "' check '" VORLEK_SOURCE_DIR "/Aperture.txt' 2>&1");
  EXPECT_EQ(run.exitStatus, 0) << run.output;
  EXPECT_NE(run.output.find("the engine loads this book"), std::string::npos) << run.output;
  EXPECT_EQ(run.output.find("warning"), std::string::npos) << run.output;
  const int usedPositions = NumberAfter(run.output, "\n  positions used: ");
  const int freePositions = NumberAfter(run.output, "\n  positions free: ");
  EXPECT_EQ(usedPositions + freePositions, 300) << run.output;
  EXPECT_GE(freePositions, 45) << run.output;
}

TEST(BookTool, NamesTheLineTheTokenAndTheReasonOfABrokenBook) {
  const EngineRun run =
      RunTool("'" VORLEK_BOOK_BINARY "' check book.txt 2>&1", "book.txt",
              "e2e4 a7a6\ne2e4 b7b6\ne2e4 c7c6\ne2e4 d7d6\ne2e4 e7e6\ne2e4 f7f6\ne2e4 g7g6\ne2e4 h7h6\ne2e4 a7a5\n");
  EXPECT_EQ(run.exitStatus, 1) << run.output;
  EXPECT_EQ(run.output.rfind("book.txt:9: token \"a7a5\" (token 2", 0), 0u) << run.output;
  EXPECT_NE(run.output.find("holds the 8 moves it has room for: a7a6 b7b6 c7c6 d7d6 e7e6 f7f6 g7g6 h7h6"),
            std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("The engine would end with: \"Errore nel vettore Aperture, ricerca mossa\"\n"),
            std::string::npos)
      << run.output;
}

// The node-count signature of the built-in positions at depth 5 (the default depth 7 gives 107759746).
TEST(Bench, SignatureAtDepthFive) {
  const EngineRun run = RunTool("'" VORLEK_BENCH_BINARY "' 5 2>/dev/null");
  ASSERT_EQ(run.exitStatus, 0);
  const std::string last = "\ntotal 4556387\n";
  ASSERT_GT(run.output.size(), last.size());
  EXPECT_EQ(run.output.substr(run.output.size() - last.size()), last);
}

TEST(Bench, PositionsFromAFileStopAtAMate) {
  // Blank lines and carriage returns carry no position.
  const EngineRun run =
      RunTool("'" VORLEK_BENCH_BINARY "' 3 fens.txt 2>/dev/null", "fens.txt",
              "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1\r\n\n6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1\n");
  ASSERT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.output,
            "1 104 34 b4f4\n"
            "2 100 235 b4f4 h4g5\n"
            "3 110 618 b4f4 h4g5 f4d4\n"
            "1 510 41 d1d8\n"
            "2 15001 77 d1d8\n"
            "total 1005\n");
}

}  // namespace
}  // namespace vorlek::test
