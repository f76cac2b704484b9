// board/move.h — the move encoding and the three move lists the generators fill.
#pragma once
#include <cstdint>

#include "board/types.h"

namespace vorlek {

// Four bytes, lowest first: kind, from, to, extra. 0 is never a move.
using Move = uint32_t;

// kind = class * 8 + moving piece code.
constexpr int KIND_CAPTURE = 8;  // plus the capturing piece: 9..14
constexpr int KIND_PROMOTION = 17;
constexpr int KIND_CASTLE_KING_SIDE = 22;
constexpr int KIND_CAPTURE_PROMOTION = 25;
constexpr int KIND_CASTLE_QUEEN_SIDE = 38;
constexpr int KIND_EN_PASSANT = 41;

constexpr Move MOVE_NONE = 0;

constexpr Move MakeMoveValue(int kind, int from, int to, int extra) {
  return static_cast<Move>(kind) | static_cast<Move>(from) << 8 | static_cast<Move>(to) << 16 |
         static_cast<Move>(extra) << 24;
}

// Both colours castle from e1 in their own view.
constexpr Move MOVE_CASTLE_KING_SIDE = MakeMoveValue(KIND_CASTLE_KING_SIDE, E1, G1, 0);
constexpr Move MOVE_CASTLE_QUEEN_SIDE = MakeMoveValue(KIND_CASTLE_QUEEN_SIDE, E1, C1, 0);
constexpr int MoveKind(Move m) { return static_cast<int>(m & 0xff); }
constexpr int MoveFrom(Move m) { return static_cast<int>((m >> 8) & 0xff); }
constexpr int MoveTo(Move m) { return static_cast<int>((m >> 16) & 0xff); }
constexpr int MoveExtra(Move m) { return static_cast<int>(m >> 24); }
constexpr int CapturedPiece(Move m) { return MoveExtra(m) & 0x0f; }          // bits 0-3 of extra
constexpr int PromotionPiece(Move m) { return (MoveExtra(m) >> 4) & 0x07; }  // bits 4-6

// Capacities. No position, however many pieces a set-up gives it, can fill these lists:
// - captures: a capturing piece has at most 8 victims and a victim at most 16 attackers (one per ray
//   direction, eight knights), so with at most 64 men there are at most 336 (piece, victim) pairs;
//   a pawn on rank 7 adds at most 10 entries for its promotions (8 pawns: 80), en passant 2;
// - quiet moves: a piece has at most 27 quiet moves and an empty square at most 16 movers
//   (8 directions, 8 knights), so with a own men there are at most min(27a, 16(64 - a)) <= 640;
// - move sets: one per piece of the side to move.
constexpr int CAPTURE_LIST_SIZE = 448;
constexpr int QUIET_LIST_SIZE = 648;
constexpr int MOVE_SET_LIST_SIZE = 64;
constexpr int ALL_MOVES_LIST_SIZE = CAPTURE_LIST_SIZE + QUIET_LIST_SIZE;

struct ScoredMove {
  Move move;
  int32_t order;  // higher is tried first
};

struct ScoredMoveList {
  ScoredMove entries[CAPTURE_LIST_SIZE];
  int32_t count;
};

struct MoveList {
  Move moves[QUIET_LIST_SIZE];
  int32_t count;
};

struct MoveSet {
  Move head;  // kind (the piece code) and from; to and extra are 0
  Bitboard targets;
};

struct MoveSetList {
  MoveSet entries[MOVE_SET_LIST_SIZE];
  int32_t count;
};

constexpr Move WithTarget(Move head, int to) { return head | static_cast<Move>(to) << 16; }

}  // namespace vorlek
