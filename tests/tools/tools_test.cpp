// The tools as separate processes: vorlek-book on the shipped book and a broken one, vorlek-bench on its
// built-in positions and a file (node counts change with any change to the order or number of nodes searched).
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

// The number after `label` in `output`, or -1 when the label is missing.
int NumberAfter(const std::string& output, const std::string& label) {
  const size_t at = output.find(label);
  return at == std::string::npos ? -1 : std::atoi(output.c_str() + at + label.size());
}

// The shipped book leaves room for a user's own lines: at least 45 of the 300 positions (15%) free.
TEST(BookTool, PassesTheShippedBook) {
  const EngineRun run = RunCommand("'" VORLEK_BOOK_BINARY "' check '" VORLEK_SOURCE_DIR "/Aperture.txt' 2>&1");
  EXPECT_EQ(run.exitStatus, 0) << run.output;
  EXPECT_NE(run.output.find("the engine loads this book"), std::string::npos) << run.output;
  EXPECT_EQ(run.output.find("warning"), std::string::npos) << run.output;
  const int usedPositions = NumberAfter(run.output, "\n  positions used: ");
  const int freePositions = NumberAfter(run.output, "\n  positions free: ");
  EXPECT_EQ(usedPositions + freePositions, 300) << run.output;
  EXPECT_GE(freePositions, 45) << run.output;
}

// The node-count signature of the built-in positions at depth 5 (the default depth 7 gives 107759746).
TEST(Bench, SignatureAtDepthFive) {
  const EngineRun run = RunCommand("'" VORLEK_BENCH_BINARY "' 5 2>/dev/null");
  ASSERT_EQ(run.exitStatus, 0);
  const std::string last = "\ntotal 4556387\n";
  ASSERT_GT(run.output.size(), last.size());
  EXPECT_EQ(run.output.substr(run.output.size() - last.size()), last);
}

}  // namespace
}  // namespace vorlek::test
