#include "search/search.h"

#include "board/attacks.h"
#include "board/make_move.h"
#include "board/movegen.h"
#include "search/child_key.h"
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

}  // namespace

int Quiesce(int alpha, int beta) {
  ++nodes;
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
    MakeMove(move);
    const int value = -Quiesce(-beta, -best);
    TakeBack();
    if (value >= beta) return value;
    if (value > best) best = value;
    if (list.count == 0) return best;
    move = PickBest(list);
  }
}

int Search(int depth, int alpha, int beta) {
  ++nodes;
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

  // Searches one move; true when it cuts the node off.
  auto searchMove = [&](Move move) {
    MakeMove(move);
    const int score = -Search(depth - 1, -beta, -alpha);
    TakeBack();
    if (score != -ILLEGAL_SCORE) noLegalMove = false;
    if (score > alpha) {
      alpha = score;
      bestMove = move;
    }
    return alpha >= beta;
  };

  // From depth 2 on the children probe the table: each child's entry is asked for while the move
  // before it is searched, so that the probe finds it in the cache.
  const bool prefetch = depth >= 2;

  if (hashMove) {
    if (prefetch) PrefetchHashEntry(ChildKey(p, hashMove));
    if (searchMove(hashMove)) {
      StoreHashMove(p.key, bestMove);
      return alpha;
    }
  }

  {
    ScoredMoveList captures;
    captures.count = 0;
    GenerateCaptures(p, captures);
    if (captures.count > 0) {
      Move move = PickBest(captures);
      if (CapturedPiece(move) == KING) return ILLEGAL_SCORE;
      if (prefetch) PrefetchHashEntry(ChildKey(p, move));
      for (;;) {
        // The picks do not depend on the scores, so the next one can be taken early.
        const Move next = captures.count > 0 ? PickBest(captures) : MOVE_NONE;
        if (prefetch && next) PrefetchHashEntry(ChildKey(p, next));
        if (move != hashMove && searchMove(move)) {
          StoreHashMove(p.key, bestMove);
          return alpha;
        }
        if (!next) break;
        move = next;
      }
    }
  }

  MoveList checks;
  MoveSetList sets;
  checks.count = sets.count = 0;
  GenerateQuiets(p, sets, checks);
  // The checks and castling from the last entry to the first, then the target sets from the last
  // entry to the first, each set's targets from the lowest square up.
  int checkIndex = checks.count, setIndex = sets.count;
  Bitboard targets = 0;
  Move head = MOVE_NONE;
  auto nextQuiet = [&]() -> Move {
    if (checkIndex > 0) return checks.moves[--checkIndex];
    while (!targets) {
      if (setIndex == 0) return MOVE_NONE;
      --setIndex;
      head = sets.entries[setIndex].head;
      targets = sets.entries[setIndex].targets;
    }
    const Move move = WithTarget(head, LowestSquare(targets));
    targets &= targets - 1;
    return move;
  };
  Move move = nextQuiet();
  if (prefetch && move) PrefetchHashEntry(ChildKey(p, move));
  while (move) {
    const Move next = nextQuiet();
    if (prefetch && next) PrefetchHashEntry(ChildKey(p, next));
    if (move != hashMove && searchMove(move)) {
      StoreHashMove(p.key, bestMove);
      return alpha;
    }
    move = next;
  }

  if (noLegalMove) return InCheck(p) ? -(MATE_SCORE + depth) : 0;
  if (bestMove) StoreHashMove(p.key, bestMove);
  return alpha;
}

}  // namespace vorlek
