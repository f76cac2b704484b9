// search/child_value.h — the static value of the position a move leads to, without making the move.
// Most children of the last plies stand pat at once; knowing their value beforehand lets the search
// count such a child without copying and turning over a position record for it.
#pragma once
#include <cstdint>

#include "board/move.h"
#include "board/position.h"
#include "board/square_table.h"
#include "search/evaluation.h"

namespace vorlek {

// Evaluate of the record MakeMove would write for `move`, seen by the side to move there. False, with
// nothing computed, for a position without exactly one king a side or a move that takes a king: those
// are left to the real thing.
inline bool ChildStaticValue(const Position& p, Move move, int& value) {
  const auto& slots = SquareTable.slots;
  const int kind = MoveKind(move), from = MoveFrom(move), to = MoveTo(move), extra = MoveExtra(move);
  const Bitboard occupancy = Occupancy(p), opponent = occupancy ^ p.own;
  const Bitboard kings = p.type1 & p.type2, bishops = p.type0 & p.type1;
  const Bitboard ownKings = p.own & kings, opponentKings = opponent & kings;
  if (PopCount(ownKings) != 1 || PopCount(opponentKings) != 1) return false;
  int ownKing = LowestSquare(ownKings);
  int ownBishops = PopCount(p.own & bishops), opponentBishops = PopCount(opponent & bishops);
  int men = PopCount(occupancy);
  int delta;
  int victim = EMPTY;
  switch (kind) {
    case PAWN:
    case KNIGHT:
    case BISHOP:
    case ROOK:
    case QUEEN:
    case KING:
      delta = slots[kind][to].value - slots[kind][from].value;
      if (kind == KING) ownKing = to;
      break;
    case KIND_CAPTURE + PAWN:
    case KIND_CAPTURE + KNIGHT:
    case KIND_CAPTURE + BISHOP:
    case KIND_CAPTURE + ROOK:
    case KIND_CAPTURE + QUEEN:
    case KIND_CAPTURE + KING: {
      const int piece = kind - KIND_CAPTURE;
      victim = extra & 0x0f;
      delta = slots[victim][Mirror(to)].value + slots[piece][to].value - slots[piece][from].value;
      if (piece == KING) ownKing = to;
      break;
    }
    case KIND_PROMOTION:
    case KIND_CAPTURE_PROMOTION: {
      const int promotion = (extra >> 4) & 7;
      victim = kind == KIND_CAPTURE_PROMOTION ? extra & 0x0f : EMPTY;
      delta = slots[promotion][to].value - slots[PAWN][from].value;
      if (victim != EMPTY) delta += slots[victim][Mirror(to)].value;
      if (promotion == BISHOP) ++ownBishops;
      break;
    }
    case KIND_EN_PASSANT:
      victim = PAWN;
      delta = slots[PAWN][Mirror(to - 8)].value + slots[PAWN][to].value - slots[PAWN][from].value;
      break;
    case KIND_CASTLE_KING_SIDE:
    case KIND_CASTLE_QUEEN_SIDE:
      // The rook's square values on its corner and beside the king are equal.
      delta = slots[KING][to].value - slots[KING][from].value;
      ownKing = to;
      break;
    default: return false;
  }
  if (victim == KING) return false;
  if (victim != EMPTY) --men;
  if (victim == BISHOP) --opponentBishops;
  // The record keeps its score in 16 bits, and turning it over negates it there.
  const int16_t moverScore = static_cast<int16_t>(p.score + delta);
  const int16_t childScore = static_cast<int16_t>(-moverScore);
  // In the child the opponent is to move and the board is turned over.
  value = childScore + (opponentBishops == 2 ? BISHOP_PAIR_BONUS : 0) - (ownBishops == 2 ? BISHOP_PAIR_BONUS : 0) +
          KingTerm(Mirror(LowestSquare(opponentKings)), men) - KingTerm(64 + Mirror(ownKing), men);
  return true;
}

}  // namespace vorlek
