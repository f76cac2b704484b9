#include "search/deepening.h"

#include <algorithm>

#include "board/all_moves.h"
#include "board/history.h"
#include "board/make_move.h"
#include "board/movegen.h"
#include "search/hash_table.h"

namespace vorlek {

namespace {

// The depth of the iteration being searched; after a search, one more than its last finished depth.
int searchDepth = 4;

// The principal variation of the position on the stack, walked through the table: while the entry of
// the current position holds its key, its move, at most maxMoves of them. The current position is unchanged.
int WalkPrincipalVariation(Move* line, int maxMoves) {
  Position* const root = current;
  int length = 0;
  while (length < maxMoves) {
    const Move move = ProbeHashMove(current->key);
    if (!move) break;
    // A walk that would leave the stack, or a move that does not fit the position, ends the line.
    if (StackIndex(current) + 1 >= POSITION_STACK_SIZE || !IsGeneratedMove(*current, move)) break;
    line[length++] = move;
    MakeMove(move);
  }
  current = root;
  return length;
}

// The root's remembered move when it belongs to the root and is legal there; otherwise the first legal
// move of the root (a root drawn at once stores nothing), or MOVE_NONE.
Move RootMove() {
  const Move stored = ProbeHashMove(current->key);
  if (stored && IsGeneratedMove(*current, stored) && IsLegalMove(stored)) return stored;
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  for (int i = 0; i < list.count; ++i) {
    if (IsLegalMove(list.moves[i])) return list.moves[i];
  }
  return MOVE_NONE;
}

}  // namespace

void NewSearchGame(const Position& start) {
  StartGame(start);
  ClearHashTable();
  searchDepth = 4;
}

Move IterativeDeepening(const SearchLimits& limits, IterationListener& listener) {
  const int64_t start = WallClockMicroseconds();
  // A search through a table still being faulted in runs dozens of times slower: finishing the faulting
  // first is much quicker. The time it takes counts as the search's.
  MakeHashTableResident();
  const std::atomic<int64_t> startNow{start};
  const std::atomic<int64_t>& clockStart = limits.clockStart ? *limits.clockStart : startNow;
  searchDepth = std::min(searchDepth <= 3 ? 1 : searchDepth - 3, std::max(limits.maxDepth, 1));
  uint64_t nodesBefore = 0;  // of the finished iterations
  Move best = MOVE_NONE;     // the root's move as the last finished iteration left it
  for (;;) {
    StopRules rules;
    rules.clockStart = &clockStart;
    rules.abandonAfter = limits.abandonAfter;
    // A limit of all iterations' nodes gives this one what the finished ones left (at least one node).
    if (limits.maxNodes != 0) rules.nodeLimit = limits.maxNodes > nodesBefore ? limits.maxNodes - nodesBefore : 1;
    rules.stop = limits.stop;
    SetStopRules(rules);

    nodes = 0;
    const int score = Search(searchDepth, -(MATE_SCORE + searchDepth), MATE_SCORE + searchDepth);
    if (IterationAbandoned()) break;  // it has no score, reports nothing and changes no move
    best = RootMove();
    const int64_t now = WallClockMicroseconds();
    const int64_t elapsed = now - start;
    nodesBefore += nodes;

    Move line[MAX_SEARCH_DEPTH + 1];
    const int length = WalkPrincipalVariation(line, searchDepth);
    listener.Finished({searchDepth, score, elapsed, nodes, line, length, current->side});

    ++searchDepth;
    const bool mate = IsMateScore(score);
    const int64_t clockStarted = clockStart.load();
    const bool timeUp = clockStarted != 0 && now - clockStarted >= limits.iterationLimit;
    if (timeUp || searchDepth > limits.maxDepth || mate) break;
    if (limits.maxNodes != 0 && nodesBefore >= limits.maxNodes) break;
    if (limits.stop && limits.stop->load()) break;
  }
  SetStopRules({});
  // An abandoned iteration stores nothing at the root, but the positions it searched may have taken the
  // root's entry: the move is the one the last finished iteration left.
  return best ? best : RootMove();
}

}  // namespace vorlek
