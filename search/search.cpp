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
inline bool LeafStandsPat(const Position& p, const ChildValueBasis& basis, Move move, int beta, int& value) {
  const ChildClock clock = ChildClockOf(p, move);
  if (clock.fifty >= 100) return false;
  if (!ChildStaticValue(p, basis, move, value) || value < beta) return false;
  return !clock.scansRepetition || RepetitionCount(ChildKey(p, move), clock.fifty, current + 1) != 2;
}

// The stop rules are looked at once every STOP_CHECK_INTERVAL nodes.
constexpr int STOP_CHECK_INTERVAL = 1 << 12;
int stopCountdown = STOP_CHECK_INTERVAL;
StopRules stopRules;
bool abandoned = false;

inline bool Abandoned() {
  if (--stopCountdown > 0) return abandoned;
  stopCountdown = STOP_CHECK_INTERVAL;
  const int64_t clockStart = stopRules.clockStart ? stopRules.clockStart->load(std::memory_order_relaxed) : 0;
  if ((clockStart != 0 && stopRules.abandonAfter != NO_TIME_LIMIT &&
       WallClockMicroseconds() - clockStart > stopRules.abandonAfter) ||
      (stopRules.nodeLimit != 0 && nodes >= stopRules.nodeLimit) ||
      (stopRules.stop && stopRules.stop->load(std::memory_order_relaxed))) {
    abandoned = true;
  }
  return abandoned;
}

}  // namespace

// The root's rules; `rootRecord` is their record, and no node of the stack is it when there are none.
const RootMoves* rootMoves = nullptr;
const Position* rootRecord = nullptr;

bool RootMoves::Skips(Move move) const {
  if (std::find(excluded, excluded + excludedCount, move) != excluded + excludedCount) return true;
  return allowedCount > 0 && std::find(allowed, allowed + allowedCount, move) == allowed + allowedCount;
}

void SetRootMoves(const RootMoves* moves) {
  rootMoves = moves;
  rootRecord = moves ? moves->root : nullptr;
}

void SetStopRules(const StopRules& rules) {
  stopRules = rules;
  abandoned = false;
  stopCountdown = STOP_CHECK_INTERVAL;
}

bool IterationAbandoned() { return abandoned; }

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
  // Every capture of a position reached by moves removes a man, so its lines end long before the stack
  // does; only a record that no game reaches (men of no colour, say) could go on, and it stops here.
  if (current == PositionStack + POSITION_STACK_SIZE - 1) return best;

  ScoredMoveList list;
  list.count = 0;
  GenerateCaptures(p, list);
  if (list.count == 0) return best;
  Move move = PickBest(list);
  if (CapturedPiece(move) == KING) return ILLEGAL_SCORE;
  ChildValueBasis basis{};
  const bool predictable = TakeChildValueBasis(p, basis);
  for (;;) {
    int value, standPat;
    if (predictable && ChildStaticValue(p, basis, move, standPat) && standPat >= -best) {
      // The child stands pat at once: one node, and a value that cannot raise best.
      ++nodes;
      value = -standPat;
    } else {
      MakeMove(move);
      value = -Quiesce(-beta, -best);
      TakeBack();
      if (abandoned) return 0;
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
  // The root may be told to leave moves out (several best lines, moves the interface names).
  const bool restricted = current == rootRecord;
  // A remembered move is trusted only when the generators would produce it here.
  Move hashMove = ProbeHashMove(p.key);
  if (hashMove && (!IsGeneratedMove(p, hashMove) || (restricted && rootMoves->Skips(hashMove)))) hashMove = MOVE_NONE;

  // A cut-off remembers the move that caused it; an abandoned search remembers nothing.
  auto cutOff = [&] {
    if (abandoned) return 0;
    StoreHashMove(p.key, bestMove);
    return alpha;
  };

  // At depth 1 most children stand pat at once: their values are predicted from one basis.
  ChildValueBasis basis{};
  const bool predictLeaves = depth == 1 && TakeChildValueBasis(p, basis);

  // Searches one move; true when it cuts the node off (or the search is abandoned).
  auto searchMove = [&](Move move) {
    if (restricted && rootMoves->Skips(move)) return false;
    int score, standPat;
    if (predictLeaves && LeafStandsPat(p, basis, move, -alpha, standPat)) {
      nodes += 2;  // the leaf and its quiescence node
      score = -standPat;
    } else {
      MakeMove(move);
      score = -Search(depth - 1, -beta, -alpha);
      TakeBack();
      if (abandoned) return true;
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

  if (abandoned) return 0;
  if (noLegalMove) return InCheck(p) ? -(MATE_SCORE + depth) : 0;
  if (bestMove) StoreHashMove(p.key, bestMove);
  return alpha;
}

}  // namespace vorlek
