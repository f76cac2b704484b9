// board/make_move.h — copy-make: a move is played on a copy of the current record, one record up.
#pragma once
#include <algorithm>

#include "board/move.h"
#include "board/position.h"
#include "board/square_table.h"

namespace vorlek {

namespace detail {

inline void ClearEnPassant(Position& p) {
  if (p.epFile != EP_NONE) {
    p.key ^= SquareTable.epKeys[p.epFile];
    p.epFile = EP_NONE;
  }
}

// Clears one castling bit and takes its key out, when the right is held.
inline void ClearRight(Position& p, int bit, int sideBit) {
  if (!(p.castling & bit)) return;
  p.castling &= static_cast<uint8_t>(~bit);
  const int index = bit == 0x02   ? OwnKingSideKey(sideBit)
                    : bit == 0x01 ? OwnQueenSideKey(sideBit)
                    : bit == 0x20 ? OppKingSideKey(sideBit)
                                  : OppQueenSideKey(sideBit);
  p.key ^= SquareTable.castlingKeys[index];
}

// Capturing on the opponent's rook corners (h8, a8 in the mover's view) takes its right away.
inline void CornerCapture(Position& p, int to, int sideBit) {
  if (to == 63) {
    ClearRight(p, 0x20, sideBit);
  } else if (to == 56) {
    ClearRight(p, 0x10, sideBit);
  }
}

inline void RookLeaves(Position& p, int from, int sideBit) {
  if (from == 7) {
    ClearRight(p, 0x02, sideBit);
  } else if (from == 0) {
    ClearRight(p, 0x01, sideBit);
  }
}

inline void TogglePiece(Position& p, int code, Bitboard squares) {
  if (code & 1) p.type0 ^= squares;
  if (code & 2) p.type1 ^= squares;
  if (code & 4) p.type2 ^= squares;
}

inline void ClearSquare(Position& p, Bitboard square) {
  p.type0 &= ~square;
  p.type1 &= ~square;
  p.type2 &= ~square;
}

}  // namespace detail

// Plays `move` onto the record after `current` and makes it current, seen from the new side to move.
// The move is trusted: only generated, book and remembered moves are passed.
inline void MakeMove(Move move) {
  // The new record is built in a local copy and written once: changing the record in place right
  // after copying it makes the processor wait for its own stores.
  Position p = *current;

  const int kind = MoveKind(move);
  const int from = MoveFrom(move), to = MoveTo(move), extra = MoveExtra(move);
  const int side = p.side;
  const int sideBit = side >> 3;
  const Bitboard F = SquareBit(from), T = SquareBit(to);
  const auto& ownSlots = SquareTable.slots;
  const int ownTag = side ^ WHITE_PIECE;  // colour tag of the mover's pieces
  const int oppTag = side;                // colour tag of the opponent's pieces

  switch (kind) {
    case PAWN: {
      p.own ^= F | T;
      p.type0 ^= F | T;
      p.key ^= ownSlots[PAWN | ownTag][from].key ^ ownSlots[PAWN | ownTag][to].key;
      p.score = static_cast<int16_t>(p.score + ownSlots[PAWN][to].value - ownSlots[PAWN][from].value);
      detail::ClearEnPassant(p);
      if ((F & RANK_2) && (T & RANK_4)) {
        p.epFile = static_cast<uint8_t>(FileOf(to));
        p.key ^= SquareTable.epKeys[p.epFile];
      }
      p.fifty = 0;
      p.repetition = 0;
      break;
    }
    case KNIGHT:
    case BISHOP:
    case ROOK:
    case QUEEN:
    case KING: {
      p.own ^= F | T;
      detail::TogglePiece(p, kind, F | T);
      p.key ^= ownSlots[kind | ownTag][from].key ^ ownSlots[kind | ownTag][to].key;
      p.score = static_cast<int16_t>(p.score + ownSlots[kind][to].value - ownSlots[kind][from].value);
      detail::ClearEnPassant(p);
      if (kind == ROOK) detail::RookLeaves(p, from, sideBit);
      if (kind == KING) {
        detail::ClearRight(p, 0x02, sideBit);
        detail::ClearRight(p, 0x01, sideBit);
      }
      p.fifty++;
      break;
    }
    case KIND_CAPTURE + PAWN:
    case KIND_CAPTURE + KNIGHT:
    case KIND_CAPTURE + BISHOP:
    case KIND_CAPTURE + ROOK:
    case KIND_CAPTURE + QUEEN:
    case KIND_CAPTURE + KING: {
      const int piece = kind - KIND_CAPTURE;
      const int victim = extra & 0x0f;
      detail::ClearSquare(p, T);
      detail::TogglePiece(p, piece, F | T);
      p.own ^= F | T;
      p.key ^= ownSlots[piece | ownTag][from].key ^ ownSlots[piece | ownTag][to].key ^
               ownSlots[victim | oppTag][Mirror(to)].key;
      p.score = static_cast<int16_t>(p.score + ownSlots[victim][Mirror(to)].value + ownSlots[piece][to].value -
                                     ownSlots[piece][from].value);
      detail::ClearEnPassant(p);
      if (piece == ROOK) detail::RookLeaves(p, from, sideBit);
      if (piece == KING) {
        detail::ClearRight(p, 0x02, sideBit);
        detail::ClearRight(p, 0x01, sideBit);
      }
      detail::CornerCapture(p, to, sideBit);
      p.fifty = 0;
      p.repetition = 0;
      break;
    }
    case KIND_PROMOTION: {
      const int promotion = (extra >> 4) & 7;
      p.own ^= F | T;
      p.type0 ^= F;
      detail::TogglePiece(p, promotion, T);
      p.key ^= ownSlots[PAWN | ownTag][from].key ^ ownSlots[promotion | ownTag][to].key;
      p.score = static_cast<int16_t>(p.score + ownSlots[promotion][to].value - ownSlots[PAWN][from].value);
      detail::ClearEnPassant(p);
      p.fifty = 0;
      p.repetition = 0;
      break;
    }
    case KIND_CAPTURE_PROMOTION: {
      const int promotion = (extra >> 4) & 7;
      const int victim = extra & 0x0f;
      p.own ^= F | T;
      detail::ClearSquare(p, T);
      p.type0 ^= F;
      detail::TogglePiece(p, promotion, T);
      p.key ^= ownSlots[PAWN | ownTag][from].key ^ ownSlots[victim | oppTag][Mirror(to)].key ^
               ownSlots[promotion | ownTag][to].key;
      p.score = static_cast<int16_t>(p.score + ownSlots[victim][Mirror(to)].value + ownSlots[promotion][to].value -
                                     ownSlots[PAWN][from].value);
      detail::ClearEnPassant(p);
      detail::CornerCapture(p, to, sideBit);
      p.fifty = 0;
      p.repetition = 0;
      break;
    }
    case KIND_EN_PASSANT: {
      const Bitboard victim = SquareBit(to - 8);
      p.own ^= F | T;
      p.type0 ^= F | T | victim;
      p.key ^= ownSlots[PAWN | ownTag][from].key ^ ownSlots[PAWN | ownTag][to].key ^
               ownSlots[PAWN | oppTag][Mirror(to - 8)].key;
      detail::ClearEnPassant(p);
      p.score = static_cast<int16_t>(p.score + ownSlots[PAWN][Mirror(to - 8)].value + ownSlots[PAWN][to].value -
                                     ownSlots[PAWN][from].value);
      p.fifty = 0;
      p.repetition = 0;
      break;
    }
    case KIND_CASTLE_KING_SIDE:
    case KIND_CASTLE_QUEEN_SIDE: {
      // King e1 to g1 with the rook h1 to f1, or king e1 to c1 with the rook a1 to d1. The rook's
      // square values on a1, d1, f1 and h1 are equal, so only the king's move changes the score.
      const bool kingSide = kind == KIND_CASTLE_KING_SIDE;
      const int rookFrom = kingSide ? 7 : 0, rookTo = kingSide ? 5 : 3;
      const Bitboard rookSquares = SquareBit(rookFrom) | SquareBit(rookTo);
      p.own ^= F | T | rookSquares;
      p.type1 ^= F | T;
      p.type2 ^= F | T | rookSquares;
      p.key ^= ownSlots[KING | ownTag][from].key ^ ownSlots[KING | ownTag][to].key ^
               ownSlots[ROOK | ownTag][rookFrom].key ^ ownSlots[ROOK | ownTag][rookTo].key;
      p.score = static_cast<int16_t>(p.score + ownSlots[KING][to].value - ownSlots[KING][from].value);
      detail::ClearEnPassant(p);
      detail::ClearRight(p, 0x02, sideBit);
      detail::ClearRight(p, 0x01, sideBit);
      p.fifty++;
      p.repetition = 0;
      break;
    }
    default:
      // Not a move: the new record is an unchanged copy, same side to move.
      *++current = p;
      return;
  }

  FlipBoard(p);

  if (kind >= KNIGHT && kind <= KING) {
    // Same position earlier, same side to move, within the plies the fifty counter covers.
    p.repetition = 0;
    const int reach = std::min<int>(p.fifty, StackIndex(current) + 1);
    for (int distance = 2; distance <= reach; distance += 2) {
      const Position& earlier = *(current + 1 - distance);
      if (earlier.key == p.key) {
        p.repetition = static_cast<uint8_t>(earlier.repetition + 1);
        break;
      }
    }
  }
  *++current = p;
}

// Takes the last move back.
inline void TakeBack() { --current; }

}  // namespace vorlek
