// search/bench.h — the bench: fixed positions searched with the engine's own deepening from depth 1 to a
// fixed depth, without a clock. The total node count at the default depth is the engine's signature: a
// change that only makes the engine faster leaves it alone.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "search/deepening.h"

namespace vorlek {

constexpr int DEFAULT_BENCH_DEPTH = 7;

// The built-in positions: openings, middlegames with tactics, endgames, promotions and short mates.
// Changing, adding or removing one changes the signature.
std::vector<std::string> BenchPositions();

// A position the bench cannot search (the FEN reader refuses it, or it is longer than the reader keeps),
// or nullptr when all are fine.
const std::string* FirstRefusedPosition(const std::vector<std::string>& fens);

struct BenchResult {
  uint64_t nodes;     // of every iteration of every position
  double seconds;     // of the searches alone, by the wall clock
  double cpuSeconds;  // ... and by the processor time of the process
};

// Searches each position in a new game (an empty table), iterations to listener, each with `lines` best
// lines (1: the engine's own search, the signature's). The table is faulted in first, outside the time
// measured.
BenchResult RunBench(const std::vector<std::string>& fens, int depth, IterationListener& listener, int lines = 1);

}  // namespace vorlek
