// search/search.h — alpha-beta search and quiescence search over the position stack.
#pragma once
#include <atomic>
#include <cstdint>

#include "board/move.h"
#include "board/position.h"

namespace vorlek {

constexpr int MATE_SCORE = 15000;     // a side mated at remaining depth d scores -(MATE_SCORE + d)
constexpr int ILLEGAL_SCORE = 15100;  // the side to move can capture the enemy king
constexpr int MAX_SEARCH_DEPTH = 32;

// A score that says a side is mated (ILLEGAL_SCORE is beyond it too).
constexpr bool IsMateScore(int score) { return score <= -MATE_SCORE || score >= MATE_SCORE; }

inline uint64_t nodes = 0;  // nodes of the current iteration

constexpr int64_t NO_TIME_LIMIT = INT64_MAX;

// When a running iteration is given up. The search looks at these only every few thousand nodes, where it
// reads the clock, and then returns at once from every node without storing anything more.
struct StopRules {
  // Once the wall clock (WallClockMicroseconds) passes *clockStart + abandonAfter. The start is read each
  // time, so another thread may set it late; while it holds 0 the clock has not started.
  const std::atomic<int64_t>* clockStart = nullptr;
  int64_t abandonAfter = NO_TIME_LIMIT;
  uint64_t nodeLimit = 0;                   // nodes of this iteration; 0: none
  const std::atomic<bool>* stop = nullptr;  // raised by another thread
};

// Sets the rules for the iterations that follow and clears an earlier abandonment.
void SetStopRules(const StopRules& rules);

// Which moves the root may search: when `allowed` lists any, only those; never those in `excluded`. The
// search looks at them only in the node of the record `root`, the position the deepening searches.
constexpr int MAX_ROOT_MOVES = 256;  // more than any position has legal moves (218 at most)
struct RootMoves {
  const Position* root = nullptr;
  Move allowed[MAX_ROOT_MOVES];
  int allowedCount = 0;
  Move excluded[MAX_ROOT_MOVES];
  int excludedCount = 0;
  bool Skips(Move move) const;
};
void SetRootMoves(const RootMoves* moves);  // null: every move

// Whether the last iteration was given up; its score then means nothing.
bool IterationAbandoned();

int64_t WallClockMicroseconds();

// Score of the current position searched `depth` plies deep within (alpha, beta), side to move's view.
int Search(int depth, int alpha, int beta);

// Score of the current position once its captures and promotions have been played out.
int Quiesce(int alpha, int beta);

}  // namespace vorlek
