// game/thinking_output.h — the xboard thinking line printed and logged after each search iteration.
#pragma once
#include <cstddef>
#include <cstdint>

#include "search/deepening.h"

namespace vorlek {

// The numbers of a thinking line: depth, score, elapsed time as seconds and hundredths (microseconds
// given), nodes, then one blank, ready for the principal variation.
void FormatThinkingLine(char* line, size_t size, int depth, int score, int64_t elapsed, uint64_t nodeCount);

// Prints each iteration's thinking line, principal variation included, on the protocol output and in the
// game log.
class ThinkingOutput : public IterationListener {
 public:
  void Finished(const Iteration& iteration) override;
};

}  // namespace vorlek
