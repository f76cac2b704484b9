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

// The root's legal moves that the limits let it search (all of them when the limits name none that is legal).
void TakeRootMoves(const SearchLimits& limits, RootMoves& root) {
  root.root = current;
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  for (int i = 0; i < list.count; ++i) {
    const Move m = list.moves[i];
    const bool named = std::find(limits.rootMoves, limits.rootMoves + limits.rootMoveCount, m) !=
                       limits.rootMoves + limits.rootMoveCount;
    if ((named || limits.rootMoveCount == 0) && IsLegalMove(m)) root.allowed[root.allowedCount++] = m;
  }
  if (limits.rootMoveCount == 0 || root.allowedCount == 0) {
    root.allowedCount = 0;  // every move
  }
}

// The root's remembered move when it belongs to the root, is legal there and may be searched; otherwise the
// first legal move the root may search (a root drawn at once stores nothing), or MOVE_NONE.
Move RootMove(const RootMoves& root) {
  const Move stored = ProbeHashMove(current->key);
  if (stored && IsGeneratedMove(*current, stored) && IsLegalMove(stored) && !root.Skips(stored)) return stored;
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  for (int i = 0; i < list.count; ++i) {
    if (!root.Skips(list.moves[i]) && IsLegalMove(list.moves[i])) return list.moves[i];
  }
  return MOVE_NONE;
}

// The number of legal root moves the root may search.
int SearchableRootMoves(const RootMoves& root) {
  if (root.allowedCount > 0) return root.allowedCount;
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  int count = 0;
  for (int i = 0; i < list.count; ++i) count += IsLegalMove(list.moves[i]);
  return count;
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

  static RootMoves root;  // static: two arrays of moves, too large for a thread's stack to spare lightly
  root = RootMoves{};
  TakeRootMoves(limits, root);
  const int lines = std::min(std::max(limits.lines, 1), std::max(SearchableRootMoves(root), 1));
  SetRootMoves(&root);

  // The first move of each line of the iteration before: a line after the first begins with the move that
  // held its place there, the best order the root can have for it.
  static Move previous[MAX_ROOT_MOVES];
  int previousCount = 0;
  for (;;) {
    // Each line searches the root again without the moves of the lines before it: its score is exact. The
    // first line is the whole search of the iteration, and gives the move to play.
    int linesFound = 0, firstScore = 0;
    Move firstMove = MOVE_NONE;
    int64_t lastEnded = 0;
    bool abandoned = false;
    root.excludedCount = 0;
    while (linesFound < lines) {
      StopRules rules;
      rules.clockStart = &clockStart;
      rules.abandonAfter = limits.abandonAfter;
      // A limit of all iterations' nodes gives this one what the finished ones left (at least one node).
      if (limits.maxNodes != 0) rules.nodeLimit = limits.maxNodes > nodesBefore ? limits.maxNodes - nodesBefore : 1;
      rules.stop = limits.stop;
      SetStopRules(rules);
      if (linesFound > 0 && linesFound < previousCount && !root.Skips(previous[linesFound])) {
        StoreHashMove(current->key, previous[linesFound]);
      }

      nodes = 0;
      const int score = Search(searchDepth, -(MATE_SCORE + searchDepth), MATE_SCORE + searchDepth);
      if (IterationAbandoned()) {
        abandoned = true;  // the line has no score, reports nothing and changes no move
        break;
      }
      nodesBefore += nodes;
      lastEnded = WallClockMicroseconds();
      Move line[MAX_SEARCH_DEPTH + 1];
      const int length = WalkPrincipalVariation(line, searchDepth);
      if (linesFound == 0) {
        best = RootMove(root);
        firstScore = score;
        firstMove = length > 0 ? line[0] : MOVE_NONE;
      }
      listener.Finished({searchDepth, score, lastEnded - start, nodes, line, length, current->side, linesFound + 1});
      // A root drawn at once stores no move: its lines cannot be told apart, and it has one.
      const Move move = ProbeHashMove(current->key);
      if (linesFound < MAX_ROOT_MOVES) previous[linesFound] = move;
      ++linesFound;
      if (!move || length == 0 || line[0] != move) break;
      root.excluded[root.excludedCount++] = move;
    }
    previousCount = linesFound;
    // The root's entry holds the last line's move: the first line's goes back, for the move played and for
    // the next iteration's order.
    if (linesFound > 1 && firstMove) StoreHashMove(current->key, firstMove);
    if (abandoned) break;

    ++searchDepth;
    const int64_t now = lastEnded;  // when the iteration's last search ended
    const bool mate = IsMateScore(firstScore);
    const int64_t clockStarted = clockStart.load();
    const bool timeUp = clockStarted != 0 && now - clockStarted >= limits.iterationLimit;
    if (timeUp || searchDepth > limits.maxDepth || mate) break;
    if (limits.maxNodes != 0 && nodesBefore >= limits.maxNodes) break;
    if (limits.stop && limits.stop->load()) break;
  }
  SetStopRules({});
  root.excludedCount = 0;
  // An abandoned iteration stores nothing at the root, but the positions it searched may have taken the
  // root's entry: the move is the one the last finished iteration left.
  if (!best) best = RootMove(root);
  SetRootMoves(nullptr);
  return best;
}

}  // namespace vorlek
