// board/move_effects.h — what each kind of move does to a position, said once.
//
// DescribeMove walks the parts of a move in the order they are applied and hands each to an effects
// object: MakeMove's applies them to a record; the search's predictions of a child's key and static
// value (search/child_key.h, search/child_value.h) follow the same parts without making the move. A rule
// of make-move changes here, and all of them follow.
#pragma once
#include "board/castling.h"
#include "board/move.h"
#include "board/position.h"

namespace vorlek {

// What a move does to the fifty-move counter and the repetition count.
enum class MoveClock {
  RESET,           // a pawn move or a capture: both counters back to 0
  COUNT_AND_SCAN,  // another piece's move: the counter goes on, and the repetition count is looked up
  COUNT,           // castling: the counter goes on, the position is new
};

// The rights a moving piece takes away: the king both of its side's, a rook the one of the corner it
// leaves.
constexpr uint8_t RightsLostByMoving(int piece, int from) {
  if (piece == KING) return OWN_CASTLING;
  if (piece == ROOK) return CastlingRightOfSquare[from] & OWN_CASTLING;
  return 0;
}

// The squares of castling's king and rook, in the mover's view.
struct CastlingSquares {
  int kingFrom, kingTo, rookFrom, rookTo;
};
constexpr CastlingSquares CastlingSquaresOf(bool kingSide) {
  return kingSide ? CastlingSquares{E1, G1, H1, F1} : CastlingSquares{E1, C1, A1, D1};
}

// A capture on the opponent's rook corner takes that right away.
constexpr uint8_t RightsLostByCapturingOn(int to) { return CastlingRightOfSquare[to] & THEIR_CASTLING; }

// Hands the parts of `move` in p, in the mover's view, to `e`:
//   e.Move(piece, from, to)          an own piece moves: its planes and `own` toggled on both squares;
//   e.Capture(victim, square)        the opponent's man on `square` is removed: every plane cleared there;
//   e.EnPassant(from, to)            a pawn takes en passant: `own` toggled on both squares, `type0` on
//                                    both and on the square of the pawn it passes (to - 8);
//   e.Castle(kingSide, from, to)     the king's two-square move and the rook's jump over it: `own` toggled
//                                    on the four squares, `type1` on the king's, `type2` on all four; the
//                                    keys and values are those of the king on e1 and g1 (c1), the rook on
//                                    h1 and f1 (a1 and d1);
//   e.Promote(piece, from, to)       a pawn on `from` becomes `piece` on `to`: `own` toggled on both,
//                                    `type0` on `from`, the piece's planes set on `to`;
//   e.EnPassantFile(file)            the en-passant file after the move (EP_NONE, or a double step's file);
//   e.LoseRights(rights)             castling rights taken away, where held;
//   e.Clock(clock)                   the counters (MoveClock).
// Returns false, having handed nothing, for a value that is no kind of move: make-move then copies the
// record unchanged, not even turning it over.
template <typename Effects>
inline bool DescribeMove(Move move, Effects& e) {
  const int kind = MoveKind(move), from = MoveFrom(move), to = MoveTo(move);
  switch (kind) {
    case PAWN:
      e.Move(PAWN, from, to);
      e.EnPassantFile((SquareBit(from) & RANK_2) && (SquareBit(to) & RANK_4) ? FileOf(to) : EP_NONE);
      e.Clock(MoveClock::RESET);
      return true;
    case KNIGHT:
    case BISHOP:
    case ROOK:
    case QUEEN:
    case KING:
      e.Move(kind, from, to);
      e.EnPassantFile(EP_NONE);
      e.LoseRights(RightsLostByMoving(kind, from));
      e.Clock(MoveClock::COUNT_AND_SCAN);
      return true;
    case KIND_CAPTURE + PAWN:
    case KIND_CAPTURE + KNIGHT:
    case KIND_CAPTURE + BISHOP:
    case KIND_CAPTURE + ROOK:
    case KIND_CAPTURE + QUEEN:
    case KIND_CAPTURE + KING: {
      const int piece = kind - KIND_CAPTURE;
      e.Capture(CapturedPiece(move), to);
      e.Move(piece, from, to);
      e.EnPassantFile(EP_NONE);
      e.LoseRights(RightsLostByMoving(piece, from) | RightsLostByCapturingOn(to));
      e.Clock(MoveClock::RESET);
      return true;
    }
    case KIND_PROMOTION:
      e.Promote(PromotionPiece(move), from, to);
      e.EnPassantFile(EP_NONE);
      e.Clock(MoveClock::RESET);
      return true;
    case KIND_CAPTURE_PROMOTION:
      e.Capture(CapturedPiece(move), to);
      e.Promote(PromotionPiece(move), from, to);
      e.EnPassantFile(EP_NONE);
      e.LoseRights(RightsLostByCapturingOn(to));
      e.Clock(MoveClock::RESET);
      return true;
    case KIND_EN_PASSANT:
      e.EnPassant(from, to);
      e.EnPassantFile(EP_NONE);
      e.Clock(MoveClock::RESET);
      return true;
    case KIND_CASTLE_KING_SIDE:
    case KIND_CASTLE_QUEEN_SIDE:
      e.Castle(kind == KIND_CASTLE_KING_SIDE, from, to);
      e.EnPassantFile(EP_NONE);
      e.LoseRights(OWN_CASTLING);
      e.Clock(MoveClock::COUNT);
      return true;
    default: return false;
  }
}

}  // namespace vorlek
