#include "search/search.h"

#include <sys/time.h>

#include <algorithm>

#include "board/attacks.h"
#include "board/make_move.h"
#include "board/movegen.h"
#include "search/child_key.h"
#include "search/child_value.h"
#include "search/evaluation.h"
#include "search/hash_table.h"

namespace vorlek {

namespace {

// Takes the first entry with the greatest order value out of the list; the last entry fills its slot.
inline Move PickBest(ScoredMoveList& list) {
  int best = 0;
  for (int i = 1; i < list.count; ++i) {
    if (list.entries[i].order > list.entries[best].order) best = i;
  }
  const Move move = list.entries[best].move;
  list.entries[best] = list.entries[--list.count];
  return move;
}

// Whether the child of `move` at remaining depth 0 meets no draw test and stands pat at once against
// `beta`, its static value then in `value`: the same tests, on the same numbers, as making the move,
// counting the leaf and its quiescence node, and evaluating there. Anything unusual is left to that.
inline bool LeafStandsPat(const Position& p, Move move, int beta, int& value) {
  const int kind = MoveKind(move);
  const bool pieceMove = kind >= KNIGHT && kind <= KING;
  const int fifty = pieceMove || kind == KIND_CASTLE_KING_SIDE || kind == KIND_CASTLE_QUEEN_SIDE ? p.fifty + 1 : 0;
  if (fifty >= 100) return false;
  if (pieceMove) {
    // The repetition count MakeMove would give: the same key an even number of plies back.
    const uint64_t key = ChildKey(p, move);
    const int reach = std::min(fifty, StackIndex(current) + 1);
    for (int distance = 2; distance <= reach; distance += 2) {
      const Position& earlier = *(current + 1 - distance);
      if (earlier.key == key) {
        if (static_cast<uint8_t>(earlier.repetition + 1) == 2) return false;
        break;
      }
    }
  }
  return ChildStaticValue(p, move, value) && value >= beta;
}

// The clock is looked at once every CLOCK_CHECK_INTERVAL nodes, only when a deadline is set.
constexpr int CLOCK_CHECK_INTERVAL = 1 << 16;
int clockCountdown = CLOCK_CHECK_INTERVAL;

inline bool Abandoned() {
  if (--clockCountdown > 0) return searchAborted;
  clockCountdown = CLOCK_CHECK_INTERVAL;
  if (searchDeadline != 0 && WallClockMicroseconds() > searchDeadline) searchAborted = true;
  return searchAborted;
}

}  // namespace

int64_t WallClockMicroseconds() {
  timeval now;
  gettimeofday(&now, nullptr);
  return int64_t{now.tv_sec} * 1000000 + now.tv_usec;
}

int Quiesce(int alpha, int beta) {
  ++nodes;
  if (Abandoned()) return 0;
  const Position& p = *current;
  const int standPat = Evaluate(p);
  if (standPat >= beta) return standPat;
  int best = standPat > alpha ? standPat : alpha;

  ScoredMoveList list;
  list.count = 0;
  GenerateCaptures(p, list);
  if (list.count == 0) return best;
  Move move = PickBest(list);
  if (CapturedPiece(move) == KING) return ILLEGAL_SCORE;
  for (;;) {
    int value, standPat;
    if (ChildStaticValue(p, move, standPat) && standPat >= -best) {
      // The child stands pat at once: one node, and a value that cannot raise best.
      ++nodes;
      value = -standPat;
    } else {
      MakeMove(move);
      value = -Quiesce(-beta, -best);
      TakeBack();
      if (searchAborted) return 0;
    }
    if (value >= beta) return value;
    if (value > best) best = value;
    if (list.count == 0) return best;
    move = PickBest(list);
  }
}

int Search(int depth, int alpha, int beta) {
  ++nodes;
  if (Abandoned()) return 0;
  const Position& p = *current;
  if (p.repetition == 2) return 0;
  if (p.fifty > 100) return 0;
  if (p.fifty == 100 && !InCheck(p)) return 0;
  if (depth == 0) return Quiesce(alpha, beta);

  Move bestMove = MOVE_NONE;
  bool noLegalMove = true;
  // A remembered move is trusted only when the generators would produce it here.
  Move hashMove = ProbeHashMove(p.key);
  if (hashMove && !IsGeneratedMove(p, hashMove)) hashMove = MOVE_NONE;

  // A cut-off remembers the move that caused it; an abandoned search remembers nothing.
  auto cutOff = [&] {
    if (searchAborted) return 0;
    StoreHashMove(p.key, bestMove);
    return alpha;
  };

  // Searches one move; true when it cuts the node off (or the search is abandoned).
  auto searchMove = [&](Move move) {
    int score, standPat;
    if (depth == 1 && LeafStandsPat(p, move, -alpha, standPat)) {
      nodes += 2;  // the leaf and its quiescence node
      score = -standPat;
    } else {
      MakeMove(move);
      score = -Search(depth - 1, -beta, -alpha);
      TakeBack();
      if (searchAborted) return true;
    }
    if (score != -ILLEGAL_SCORE) noLegalMove = false;
    if (score > alpha) {
      alpha = score;
      bestMove = move;
    }
    return alpha >= beta;
  };

  // From depth 2 on the children probe the table. Their entries are asked for together, as soon as
  // their moves are known, so that the memory system fetches them side by side while the first ones
  // are searched.
  const bool prefetch = depth >= 2;

  if (hashMove) {
    if (prefetch) PrefetchHashEntry(ChildKey(p, hashMove));
    if (searchMove(hashMove)) return cutOff();
  }

  {
    ScoredMoveList captures;
    captures.count = 0;
    GenerateCaptures(p, captures);
    if (prefetch) {
      for (int i = 0; i < captures.count; ++i) PrefetchHashEntry(ChildKey(p, captures.entries[i].move));
    }
    bool first = true;
    while (captures.count > 0) {
      const Move move = PickBest(captures);
      if (first && CapturedPiece(move) == KING) return ILLEGAL_SCORE;
      first = false;
      if (move == hashMove) continue;
      if (searchMove(move)) return cutOff();
    }
  }

  MoveList checks;
  MoveSetList sets;
  checks.count = sets.count = 0;
  GenerateQuiets(p, sets, checks);
  if (prefetch) {
    for (int i = 0; i < checks.count; ++i) PrefetchHashEntry(ChildKey(p, checks.moves[i]));
    for (int i = 0; i < sets.count; ++i) {
      const Move head = sets.entries[i].head;
      ForEachSquare(sets.entries[i].targets, [&](int to) { PrefetchHashEntry(ChildKey(p, WithTarget(head, to))); });
    }
  }
  for (int i = checks.count - 1; i >= 0; --i) {
    const Move move = checks.moves[i];
    if (move == hashMove) continue;
    if (searchMove(move)) return cutOff();
  }
  for (int i = sets.count - 1; i >= 0; --i) {
    for (Bitboard targets = sets.entries[i].targets; targets; targets &= targets - 1) {
      const Move move = WithTarget(sets.entries[i].head, LowestSquare(targets));
      if (move == hashMove) continue;
      if (searchMove(move)) return cutOff();
    }
  }

  if (searchAborted) return 0;
  if (noLegalMove) return InCheck(p) ? -(MATE_SCORE + depth) : 0;
  if (bestMove) StoreHashMove(p.key, bestMove);
  return alpha;
}

}  // namespace vorlek
