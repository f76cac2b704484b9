#include "board/all_moves.h"

#include "board/attacks.h"
#include "board/make_move.h"
#include "board/movegen.h"

namespace vorlek {

void GenerateAllMoves(const Position& p, FlatMoveList& list) {
  ScoredMoveList captures;
  MoveList checks;
  MoveSetList sets;
  captures.count = checks.count = sets.count = 0;
  GenerateCaptures(p, captures);
  GenerateQuiets(p, sets, checks);
  list.count = 0;
  for (int i = 0; i < captures.count; ++i) list.moves[list.count++] = captures.entries[i].move;
  for (int i = 0; i < checks.count; ++i) list.moves[list.count++] = checks.moves[i];
  for (int i = 0; i < sets.count; ++i) {
    ForEachSquare(sets.entries[i].targets,
                  [&](int to) { list.moves[list.count++] = WithTarget(sets.entries[i].head, to); });
  }
}

Move FindGeneratedMove(const Position& p, int from, int to, int promotion) {
  FlatMoveList list;
  GenerateAllMoves(p, list);
  for (int i = 0; i < list.count; ++i) {
    const Move m = list.moves[i];
    if (MoveFrom(m) == from && MoveTo(m) == to && (promotion == ANY_PROMOTION || PromotionPiece(m) == promotion)) {
      return m;
    }
  }
  return MOVE_NONE;
}

namespace {

// After a move the record is seen from the opponent; turn it back to the mover to ask about its king.
bool MoverInCheck() {
  FlipBoard(*current);
  const bool attacked = InCheck();
  FlipBoard(*current);
  return attacked;
}

}  // namespace

bool MakeMoveIfLegal(Move move) {
  MakeMove(move);
  if (MoverInCheck()) {
    TakeBack();
    return false;
  }
  return true;
}

bool IsLegalMove(Move move) {
  MakeMove(move);
  const bool legal = !MoverInCheck();
  TakeBack();
  return legal;
}

bool HasLegalMove() {
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  for (int i = 0; i < list.count; ++i) {
    if (IsLegalMove(list.moves[i])) return true;
  }
  return false;
}

uint64_t Perft(int depth) {
  if (depth == 0) return 1;
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  uint64_t leaves = 0;
  for (int i = 0; i < list.count; ++i) {
    if (!MakeMoveIfLegal(list.moves[i])) continue;
    leaves += depth == 1 ? 1 : Perft(depth - 1);
    TakeBack();
  }
  return leaves;
}

}  // namespace vorlek
