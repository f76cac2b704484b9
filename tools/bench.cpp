// vorlek-bench — searches fixed positions with the engine's own deepening, from depth 1 to a fixed depth
// (or a mate score) without a clock, and prints the nodes of every iteration and their total.
//   vorlek-bench [DEPTH [FENFILE]]
// The total of the built-in positions at the default depth is the engine's signature: a change that
// only makes the engine faster leaves it alone. Search time and nodes per second go to stderr.
#include "search/bench.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "board/init_tables.h"
#include "board/notation.h"

using namespace vorlek;

namespace {

constexpr ProgramText PROGRAM = {
    "vorlek-bench",
    "usage: vorlek-bench [--lines K] [DEPTH [FENFILE]] | --help | --version\n"
    "  Searches fixed positions (the built-in ones, or one FEN a line of FENFILE) with the engine's own\n"
    "  deepening from depth 1 to DEPTH (default 7), prints every iteration as \"depth score nodes moves\"\n"
    "  and the total, the engine's signature. Search time and speed go to standard error.\n"
    "  --lines K: the K best lines in every iteration, as an analysis interface asks for them (MultiPV);\n"
    "  every line is printed, and the total is not the signature.\n"};

// The positions of a file, one FEN a line; blank lines (and the carriage returns of a DOS file) carry none.
bool ReadFenFile(const char* path, std::vector<std::string>& fens) {
  FILE* f = std::fopen(path, "r");
  if (!f) return false;
  std::string line;
  for (int c = 0; c != EOF;) {
    c = std::fgetc(f);
    if (c != '\n' && c != EOF) {
      line += static_cast<char>(c);
      continue;
    }
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    if (!line.empty()) fens.push_back(line);
    line.clear();
  }
  std::fclose(f);
  return true;
}

// Each iteration as "depth score nodes moves", the variation's moves separated by single blanks.
class BenchOutput : public IterationListener {
 public:
  void Finished(const Iteration& it) override {
    std::printf("%d %d %llu", it.depth, it.score, static_cast<unsigned long long>(it.nodes));
    for (int i = 0; i < it.pvLength; ++i) {
      char text[MOVE_TEXT_SIZE];
      MoveToPlainText(text, it.pv[i], SideAtPly(it, i));
      std::printf(" %s", text);
    }
    std::printf("\n");
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (const auto status = AnswerCommonOptions(argc, argv, PROGRAM, {"--lines"})) return *status;
  int lines = 1;
  if (argc > 2 && std::strcmp(argv[1], "--lines") == 0) {
    char* end;
    const long k = std::strtol(argv[2], &end, 10);
    if (*end || end == argv[2] || k < 1 || k > MAX_ROOT_MOVES) {
      std::fprintf(stderr, "vorlek-bench: lines must be a number from 1 to %d\n", MAX_ROOT_MOVES);
      return 2;
    }
    lines = static_cast<int>(k);
    argv += 2;
    argc -= 2;
  }
  if (argc > 3) return UsageError(PROGRAM);
  int depth = DEFAULT_BENCH_DEPTH;
  if (argc > 1) {
    char* end;
    const long d = std::strtol(argv[1], &end, 10);
    if (*end || end == argv[1] || d < 1 || d > MAX_SEARCH_DEPTH) {
      std::fprintf(stderr, "vorlek-bench: depth must be a number from 1 to %d\n", MAX_SEARCH_DEPTH);
      return 2;
    }
    depth = static_cast<int>(d);
  }
  std::vector<std::string> fens;
  if (argc > 2) {
    if (!ReadFenFile(argv[2], fens)) {
      std::fprintf(stderr, "vorlek-bench: cannot read %s\n", argv[2]);
      return 2;
    }
  } else {
    fens = BenchPositions();
  }

  InitTables();
  // Every position is read before anything is searched, so that a bad line costs no time.
  if (const std::string* refused = FirstRefusedPosition(fens)) {
    std::fprintf(stderr, "vorlek-bench: position refused: %s\n", refused->c_str());
    return 2;
  }
  BenchOutput output;
  const BenchResult result = RunBench(fens, depth, output, lines);
  std::printf("total %llu\n", static_cast<unsigned long long>(result.nodes));
  std::fflush(stdout);
  // On a busy machine the processor time shows what the search itself cost.
  std::fprintf(stderr, "search time %.3f s, %.0f nodes/s (processor time %.3f s, %.0f nodes/s)\n", result.seconds,
               result.seconds > 0 ? result.nodes / result.seconds : 0.0, result.cpuSeconds,
               result.cpuSeconds > 0 ? result.nodes / result.cpuSeconds : 0.0);
  return 0;
}
