// search/child_key.h — the key of the position a move leads to, without making the move.
// The search uses it to ask for the child's table entry early, while a sibling is still being
// searched; a wrong key would only cost that prefetch, never change a node.
#pragma once
#include <cstdint>

#include "board/move.h"
#include "board/position.h"
#include "board/square_table.h"

namespace vorlek {

// The key MakeMove gives the record after `move` in p.
inline uint64_t ChildKey(const Position& p, Move move) {
  const auto& slots = SquareTable.slots;
  const int kind = MoveKind(move), from = MoveFrom(move), to = MoveTo(move), extra = MoveExtra(move);
  const int ownTag = p.side ^ WHITE_PIECE, oppTag = p.side, sideBit = p.side >> 3;
  const int victim = extra & 0x0f, promotion = (extra >> 4) & 7;
  uint64_t key = p.key ^ SquareTable.sideKey;
  if (p.epFile != EP_NONE) key ^= SquareTable.epKeys[p.epFile];
  int lostRights = 0;  // castling bits that the move takes away, when held
  auto moves = [&](int piece) {
    key ^= slots[piece | ownTag][from].key ^ slots[piece | ownTag][to].key;
    if (piece == KING) lostRights |= 0x03;
    if (piece == ROOK) lostRights |= from == 7 ? 0x02 : from == 0 ? 0x01 : 0;
  };
  auto captures = [&](int square) {
    key ^= slots[victim | oppTag][Mirror(square)].key;
    lostRights |= square == 63 ? 0x20 : square == 56 ? 0x10 : 0;
  };
  switch (kind) {
    case PAWN:
      moves(PAWN);
      if (to == from + 16) key ^= SquareTable.epKeys[FileOf(to)];
      break;
    case KNIGHT:
    case BISHOP:
    case ROOK:
    case QUEEN:
    case KING: moves(kind); break;
    case KIND_CAPTURE + PAWN:
    case KIND_CAPTURE + KNIGHT:
    case KIND_CAPTURE + BISHOP:
    case KIND_CAPTURE + ROOK:
    case KIND_CAPTURE + QUEEN:
    case KIND_CAPTURE + KING:
      moves(kind - KIND_CAPTURE);
      captures(to);
      break;
    case KIND_CAPTURE_PROMOTION: captures(to); [[fallthrough]];
    case KIND_PROMOTION: key ^= slots[PAWN | ownTag][from].key ^ slots[promotion | ownTag][to].key; break;
    case KIND_EN_PASSANT:
      moves(PAWN);
      key ^= slots[PAWN | oppTag][Mirror(to - 8)].key;
      break;
    case KIND_CASTLE_KING_SIDE:
    case KIND_CASTLE_QUEEN_SIDE: {
      const int rookFrom = kind == KIND_CASTLE_KING_SIDE ? 7 : 0, rookTo = kind == KIND_CASTLE_KING_SIDE ? 5 : 3;
      moves(KING);
      key ^= slots[ROOK | ownTag][rookFrom].key ^ slots[ROOK | ownTag][rookTo].key;
      break;
    }
    default: return p.key;  // not a move: MakeMove leaves an unchanged copy
  }
  lostRights &= p.castling;
  if (lostRights & 0x01) key ^= SquareTable.castlingKeys[OwnQueenSideKey(sideBit)];
  if (lostRights & 0x02) key ^= SquareTable.castlingKeys[OwnKingSideKey(sideBit)];
  if (lostRights & 0x10) key ^= SquareTable.castlingKeys[OppQueenSideKey(sideBit)];
  if (lostRights & 0x20) key ^= SquareTable.castlingKeys[OppKingSideKey(sideBit)];
  return key;
}

}  // namespace vorlek
