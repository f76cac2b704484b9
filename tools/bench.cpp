// vorlek-bench — searches fixed positions to a fixed depth, iteration by iteration as the engine's
// deepening does but without a clock, and prints the nodes of every iteration and their total.
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
#include "board/position.h"
#include "game/game_state.h"
#include "search/hash_table.h"
#include "search/search.h"
#include "search/think.h"
#include "tools/bench_positions.h"

using namespace vorlek;

namespace {

constexpr int DEFAULT_BENCH_DEPTH = 7;
constexpr int MATE_BOUND = 15000;  // a score of this magnitude or more ends the deepening

int Usage() {
  std::fprintf(stderr, "usage: vorlek-bench [DEPTH [FENFILE]]\n");
  return 2;
}

// Collapses runs of blanks to one and drops blanks at either end.
std::string SingleBlanks(const char* text) {
  std::string out;
  for (const char* c = text; *c; ++c) {
    if (*c == ' ' && (out.empty() || out.back() == ' ')) continue;
    out += *c;
  }
  if (!out.empty() && out.back() == ' ') out.pop_back();
  return out;
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
    if (fen.size() >= LINE_SIZE || !SetBoard(scratch, fen.c_str())) {
      std::fprintf(stderr, "vorlek-bench: position refused: %s\n", fen.c_str());
      return 2;
    }
  }
  // The kernel gives the table its pages once per process; that is kept out of the search time.
  PrefaultHashTable();
  uint64_t total = 0;
  std::chrono::steady_clock::duration searchTime{};
  double cpuTime = 0;
  for (const std::string& fen : fens) {
    NewGame();
    SetBoard(*current, fen.c_str());
    for (int d = 1; d <= depth; ++d) {
      const auto start = std::chrono::steady_clock::now();
      const double cpuStart = CpuSeconds();
      const int score = SearchIteration(d);
      searchTime += std::chrono::steady_clock::now() - start;
      cpuTime += CpuSeconds() - cpuStart;
      total += nodes;
      char pv[512] = "";
      AppendPrincipalVariation(pv, sizeof pv, d);
      const std::string moves = SingleBlanks(pv);
      std::printf("%d %d %llu%s%s\n", d, score, static_cast<unsigned long long>(nodes), moves.empty() ? "" : " ",
                  moves.c_str());
      if (score <= -MATE_BOUND || score >= MATE_BOUND) break;
    }
  }
  std::printf("total %llu\n", static_cast<unsigned long long>(total));
  std::fflush(stdout);

  const double seconds = std::chrono::duration<double>(searchTime).count();
  // On a busy machine the processor time shows what the search itself cost.
  std::fprintf(stderr, "search time %.3f s, %.0f nodes/s (processor time %.3f s, %.0f nodes/s)\n", seconds,
               seconds > 0 ? total / seconds : 0.0, cpuTime, cpuTime > 0 ? total / cpuTime : 0.0);
  return 0;
}
