// The bench tool: its node-count signature over the built-in positions, the shape of its lines, and
// positions read from a file.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct BenchRun {
  std::string output;  // standard output; standard error is dropped
  int status = -1;     // exit status, -1 when the tool did not exit normally
};

BenchRun RunBench(const std::string& arguments) {
  BenchRun run;
  const std::string command = std::string(VORLEK_BENCH_BINARY) + " " + arguments + " 2>/dev/null";
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return run;
  char buffer[4096];
  for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) run.output.append(buffer, n);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) run.status = WEXITSTATUS(status);
  return run;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// A file of the given contents that is removed at the end of the test.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& contents) {
    char name[] = "/tmp/vorlek-bench-test-XXXXXX";
    const int fd = mkstemp(name);
    path_ = name;
    if (fd >= 0) {
      const ssize_t written = write(fd, contents.data(), contents.size());
      (void)written;
      close(fd);
    }
  }
  ~TemporaryFile() { std::remove(path_.c_str()); }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

// "depth score nodes pv": single blanks, no blank at the end, moves of four squares and a promotion letter.
bool IsIterationLine(const std::string& line) {
  std::istringstream fields(line);
  std::string depth, score, nodes, move;
  if (!(fields >> depth >> score >> nodes)) return false;
  auto digits = [](const std::string& s) {
    return !s.empty() && s.find_first_not_of("0123456789") == std::string::npos;
  };
  if (!digits(depth) || depth[0] == '0' || !digits(nodes)) return false;
  if (!digits(score[0] == '-' ? score.substr(1) : score)) return false;
  while (fields >> move) {
    const bool square = move.size() >= 4 && move[0] >= 'a' && move[0] <= 'h' && move[1] >= '1' && move[1] <= '8' &&
                        move[2] >= 'a' && move[2] <= 'h' && move[3] >= '1' && move[3] <= '8';
    if (!square || move.size() > 5 || (move.size() == 5 && std::string("nbrq").find(move[4]) == std::string::npos))
      return false;
  }
  return line.find("  ") == std::string::npos && line.back() != ' ';
}

// The signature of the built-in positions at depth 5 (the default depth 7 gives 107759746). A change
// that only makes the search faster leaves it alone; one that changes the order or the count of the
// nodes does not.
TEST(Bench, SignatureAtDepthFive) {
  const BenchRun run = RunBench("5");
  ASSERT_EQ(run.status, 0);
  const std::vector<std::string> lines = Lines(run.output);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "total 4556387");

  // Every other line: depth, score, nodes and the variation, single blanks, none at the end.
  int firstIterations = 0;
  for (size_t i = 0; i + 1 < lines.size(); ++i) {
    EXPECT_TRUE(IsIterationLine(lines[i])) << lines[i];
    if (lines[i].rfind("1 ", 0) == 0) ++firstIterations;
  }
  EXPECT_GE(firstIterations, 30);  // one per built-in position
}

TEST(Bench, PositionsFromAFileStopAtAMate) {
  // Blank lines and carriage returns carry no position.
  const TemporaryFile fens(
      "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1\r\n"
      "\n"
      "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1\n");
  const BenchRun run = RunBench("3 " + fens.Path());
  ASSERT_EQ(run.status, 0);
  EXPECT_EQ(run.output,
            "1 104 34 b4f4\n"
            "2 100 235 b4f4 h4g5\n"
            "3 110 618 b4f4 h4g5 f4d4\n"
            "1 510 41 d1d8\n"
            "2 15001 77 d1d8\n"
            "total 1005\n");
}

TEST(Bench, RefusesBadArguments) {
  const TemporaryFile refused("8/8/8/8 w - - 0 1\n");
  for (const std::string& arguments : {"3 " + refused.Path(), std::string("0"), std::string("33"), std::string("x"),
                                       std::string("3 /nonexistent/fens.txt")}) {
    const BenchRun run = RunBench(arguments);
    EXPECT_EQ(run.status, 2) << arguments;
    EXPECT_EQ(run.output.find("total"), std::string::npos) << arguments;
  }
}

}  // namespace
