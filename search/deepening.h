// search/deepening.h — the engine's move: the current position searched deeper and deeper within limits,
// each finished iteration reported to whoever asked.
#pragma once
#include <atomic>
#include <cstdint>

#include "board/move.h"
#include "board/position.h"
#include "board/types.h"
#include "search/search.h"

namespace vorlek {

struct SearchLimits {
  int64_t iterationLimit = NO_TIME_LIMIT;   // microseconds on the clock after which no iteration begins
  int64_t abandonAfter = NO_TIME_LIMIT;     // microseconds on the clock after which the running one is given up
  int maxDepth = MAX_SEARCH_DEPTH;          // no deeper iteration begins
  uint64_t maxNodes = 0;                    // nodes of all iterations together; 0: no limit
  const std::atomic<bool>* stop = nullptr;  // raised by another thread: the running iteration is given up
  // When the clock starts (wall clock microseconds), for a search begun before its time counts (pondering on
  // the opponent's time): while it holds 0, no time limit applies. Null: the clock starts with the search.
  const std::atomic<int64_t>* clockStart = nullptr;
  // The best `lines` root moves are searched in each iteration, each to an exact score: the root is searched
  // again with the lines already found left out. 1 is the engine's own search.
  int lines = 1;
  // When not empty, the root searches only these of its moves (those of them that are legal there).
  const Move* rootMoves = nullptr;
  int rootMoveCount = 0;
};

// One finished iteration, as the search reports it.
struct Iteration {
  int depth;
  int score;        // for the side to move at the root
  int64_t elapsed;  // microseconds since the search began
  uint64_t nodes;   // of this iteration alone
  const Move* pv;   // the principal variation from the root, walked through the table
  int pvLength;
  int rootSide;  // side to move at the root (the variation's moves alternate from it)
  int line = 1;  // which of the iteration's best lines, 1 for the best; with one line, `nodes` is the iteration's
};

// The side to move before the variation's move at `ply` (0 for the first).
constexpr int SideAtPly(const Iteration& it, int ply) { return it.rootSide ^ (ply % 2 == 0 ? WHITE : BLACK); }

// Implemented by each front end. Called between iterations (once for each line of an iteration, best first),
// never inside the search.
class IterationListener {
 public:
  virtual void Finished(const Iteration& iteration) = 0;

 protected:
  ~IterationListener() = default;
};

// Searches the current position: depth 1 in a new game, otherwise three below the depth the last search
// reached, then one deeper after each iteration while the limits allow and no mate score is found for the
// best line. An iteration given up by a limit reports none of its lines. Returns
// the move to play (the root's remembered move as the last finished iteration left it, or the root's first
// legal move when none finished or the root stored none), or MOVE_NONE when the side to move has none. The
// current position is unchanged. The table is made resident first.
Move IterativeDeepening(const SearchLimits& limits, IterationListener& listener);

// A new game for the search from `start`: the game on the position stack is `start` alone, the table of
// remembered moves is cleared and the deepening begins at depth 1 again.
void NewSearchGame(const Position& start);

}  // namespace vorlek
