// uci/uci_go.h — the "go" command: what the interface asks for, and the search limits it gives.
#pragma once
#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "search/deepening.h"

namespace vorlek::uci {

struct GoRequest {
  int64_t time[2] = {-1, -1};  // milliseconds left on the clocks of white and black; -1: not given
  int64_t increment[2] = {0, 0};
  int movesToGo = 0;  // 0: not given
  int depth = 0;
  uint64_t nodes = 0;
  int mate = 0;
  int64_t moveTime = -1;
  bool infinite = false;
  bool ponder = false;
  std::vector<std::string> searchMoves;  // the moves after "searchmoves", as given
};

// Reads the arguments of "go"; `ignored` collects the words it does not know.
GoRequest ParseGo(const std::string& arguments, std::string& ignored);

// Whether the search is a move of a game under a clock (wtime, btime), where the book may answer, rather
// than analysis: the interfaces' analysis panes send "go infinite" or a fixed time ("go movetime"), games a
// clock.
bool PlaysAGameMove(const GoRequest& request);

// Whether the interface waits for "stop" (or "ponderhit") before it wants the best move.
bool WaitsForStop(const GoRequest& request);

constexpr int DEFAULT_MOVE_OVERHEAD = 50;  // milliseconds

// Bounds on every search, for a fuzzer, which must see each input end at once: no deeper iteration, and no
// more nodes (0: none). The engine leaves them alone.
inline int searchDepthCap = MAX_SEARCH_DEPTH;
inline uint64_t searchNodeCap = 0;
constexpr int MAX_MOVE_OVERHEAD = 5000;

// The limits of the search for the side to move at game ply `ply`: the engine's allotment from the clocks
// (the moves to go reckoned as the engine does unless given), with the increment added, no iteration let
// run the clock out; or a fixed time; or depth, nodes and mate limits alone. `moveOverhead` milliseconds
// (at most half of the time given) are kept back from every clock and fixed time before anything is
// reckoned from it, for the way to the interface.
SearchLimits LimitsFor(const GoRequest& request, int side, int ply, int moveOverhead);

}  // namespace vorlek::uci
