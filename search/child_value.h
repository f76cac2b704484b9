// search/child_value.h — the static value of the position a move leads to, without making the move.
// Most children of the last plies stand pat at once; knowing their value beforehand lets the search
// count such a child without copying and turning over a position record for it. A copy kept for speed:
// it follows make-move's description of the move (board/move_effects.h) for the score and keeps count of
// what the evaluation reads besides (the men, the bishops, the two kings); tests check it against
// Evaluate after MakeMove.
#pragma once
#include <cstdint>

#include "board/make_move.h"
#include "board/move.h"
#include "board/move_effects.h"
#include "board/movegen.h"
#include "board/position.h"
#include "search/evaluation.h"

namespace vorlek {

// What the evaluation reads of a position, taken once for all of its moves.
struct ChildValueBasis {
  int16_t score;
  int men;
  int ownBishops, opponentBishops;  // as the evaluation counts them
  int ownKing, opponentKing;        // squares
};

// The basis of p's children; false for a record the prediction does not follow: one holding code 7, or
// without exactly one king a side.
inline bool TakeChildValueBasis(const Position& p, ChildValueBasis& basis) {
  const Bitboard occupancy = Occupancy(p), opponent = occupancy ^ p.own;
  const Bitboard ownKings = p.own & KingPlanes(p), opponentKings = opponent & KingPlanes(p);
  if ((p.type0 & p.type1 & p.type2) || PopCount(ownKings) != 1 || PopCount(opponentKings) != 1) return false;
  basis = {p.score,
           PopCount(occupancy),
           PopCount(p.own & BishopPlanes(p)),
           PopCount(opponent & BishopPlanes(p)),
           LowestSquare(ownKings),
           LowestSquare(opponentKings)};
  return true;
}

namespace detail {

// What the evaluation of the child reads, changed part by part.
struct EvaluationChanges {
  ScoreChanges score;
  int men;
  int ownBishops, opponentBishops;
  int ownKing;
  bool takesKing = false;

  void Move(int piece, int from, int to) {
    score.Move(piece, from, to);
    if (piece == KING) ownKing = to;
  }
  void Capture(int victim, int square) {
    score.Capture(victim, square);
    --men;
    if (victim == BISHOP) --opponentBishops;
    if (victim == KING) takesKing = true;
  }
  void EnPassant(int from, int to) {
    score.EnPassant(from, to);
    --men;
  }
  void Castle(bool kingSide, int from, int to) {
    score.Castle(kingSide, from, to);
    ownKing = to;
  }
  void Promote(int piece, int from, int to) {
    score.Promote(piece, from, to);
    if (piece == BISHOP) ++ownBishops;
  }
  void EnPassantFile(int) {}
  void LoseRights(uint8_t) {}
  void Clock(MoveClock) {}
};

}  // namespace detail

// Evaluate of the record MakeMove would write for `move` in p (a move the generators produce there, or a
// remembered move they would produce), seen by the side to move there, from p's basis. False, with nothing
// computed, for a move that takes a king, or castling or en passant whose men are not where it says.
[[gnu::always_inline]] inline bool ChildStaticValue(const Position& p, const ChildValueBasis& basis, Move move,
                                                    int& value) {
  if (!MenWhereTheMoveSays(p, move)) return false;
  detail::EvaluationChanges e{{}, basis.men, basis.ownBishops, basis.opponentBishops, basis.ownKing};
  if (!DescribeMove(move, e) || e.takesKing) return false;
  // The record keeps its score in 16 bits, and turning it over negates it there.
  const int16_t moverScore = static_cast<int16_t>(basis.score + e.score.delta);
  const int16_t childScore = static_cast<int16_t>(-moverScore);
  // In the child the opponent is to move and the board is turned over.
  value = childScore + (e.opponentBishops == 2 ? BISHOP_PAIR_BONUS : 0) - (e.ownBishops == 2 ? BISHOP_PAIR_BONUS : 0) +
          KingTerm(Mirror(basis.opponentKing), e.men) - KingTerm(64 + Mirror(e.ownKing), e.men);
  return true;
}

// The same for one move, its basis taken on the spot.
inline bool ChildStaticValue(const Position& p, Move move, int& value) {
  ChildValueBasis basis{};
  return TakeChildValueBasis(p, basis) && ChildStaticValue(p, basis, move, value);
}

}  // namespace vorlek
