// vorlek-bench — searches fixed positions with the engine's own deepening, from depth 1 to a fixed depth
// (or a mate score) without a clock, and prints the nodes of every iteration and their total.
//   vorlek-bench [DEPTH [FENFILE]]
// The total of the built-in positions at the default depth is the engine's signature: a change that
// only makes the engine faster leaves it alone. Search time and nodes per second go to stderr.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "board/fen.h"
#include "board/init_tables.h"
#include "board/notation.h"
#include "board/position.h"
#include "search/deepening.h"
#include "search/hash_table.h"
#include "tools/bench_positions.h"

using namespace vorlek;

namespace {

constexpr int DEFAULT_BENCH_DEPTH = 7;
constexpr size_t MAX_FEN_LENGTH = 200;  // the reader keeps 199 characters of its text

int Usage() {
  std::fprintf(stderr, "usage: vorlek-bench [DEPTH [FENFILE]]\n");
  return 2;
}

bool ReadFenFile(const char* path, std::vector<std::string>& fens) {
  FILE* f = std::fopen(path, "r");
  if (!f) return false;
  std::string line;
  for (int c; (c = std::fgetc(f)) != EOF;) {
    if (c != '\n') {
      line += static_cast<char>(c);
      continue;
    }
    fens.push_back(line);
    line.clear();
  }
  fens.push_back(line);
  std::fclose(f);
  // Blank lines (and the carriage returns of a DOS file) carry no position.
  std::vector<std::string> kept;
  for (auto& fen : fens) {
    while (!fen.empty() && (fen.back() == '\r' || fen.back() == ' ')) fen.pop_back();
    if (!fen.empty()) kept.push_back(fen);
  }
  fens.swap(kept);
  return true;
}

// Each iteration as "depth score nodes moves", the variation's moves separated by single blanks.
class BenchOutput : public IterationListener {
 public:
  void Finished(const Iteration& it) override {
    std::printf("%d %d %llu", it.depth, it.score, static_cast<unsigned long long>(it.nodes));
    for (int i = 0; i < it.pvLength; ++i) {
      char text[MOVE_TEXT_SIZE];
      MoveToText(text, it.pv[i], it.rootSide ^ (i % 2 == 0 ? 0 : BLACK));
      if (text[4] == ' ') text[4] = '\0';
      std::printf(" %s", text);
    }
    std::printf("\n");
    total += it.nodes;
  }
  uint64_t total = 0;
};

double CpuSeconds() {
  timespec t;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 3) return Usage();
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
    for (const char* fen : BENCH_POSITIONS) fens.emplace_back(fen);
  }

  InitTables();
  // Every position is read before anything is searched, so that a bad line costs no time.
  for (const std::string& fen : fens) {
    Position scratch{};
    // The reader keeps 199 characters of its text; a longer line would be read cut short.
    if (fen.size() >= MAX_FEN_LENGTH || !SetBoard(scratch, fen.c_str())) {
      std::fprintf(stderr, "vorlek-bench: position refused: %s\n", fen.c_str());
      return 2;
    }
  }
  // The kernel gives the table its pages once per process; that is kept out of the search time.
  PrefaultHashTable();
  BenchOutput output;
  std::chrono::steady_clock::duration searchTime{};
  double cpuTime = 0;
  for (const std::string& fen : fens) {
    current = PositionStack;
    *current = InitialPosition();
    NewSearchGame();
    SetBoard(*current, fen.c_str());
    // The engine's own deepening from depth 1, without a clock: it stops after `depth` or a mate score.
    SearchLimits limits;
    limits.maxDepth = depth;
    const auto start = std::chrono::steady_clock::now();
    const double cpuStart = CpuSeconds();
    IterativeDeepening(limits, output);
    searchTime += std::chrono::steady_clock::now() - start;
    cpuTime += CpuSeconds() - cpuStart;
  }
  const uint64_t total = output.total;
  std::printf("total %llu\n", static_cast<unsigned long long>(total));
  std::fflush(stdout);

  const double seconds = std::chrono::duration<double>(searchTime).count();
  // On a busy machine the processor time shows what the search itself cost.
  std::fprintf(stderr, "search time %.3f s, %.0f nodes/s (processor time %.3f s, %.0f nodes/s)\n", seconds,
               seconds > 0 ? total / seconds : 0.0, cpuTime, cpuTime > 0 ? total / cpuTime : 0.0);
  return 0;
}
