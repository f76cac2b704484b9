#include "board/position.h"

namespace vorlek {

uint64_t ComputeKey(const Position& p) {
  // Work in white's view: turn a black-to-move record over first.
  Position w = p;
  if (w.side == BLACK) FlipBoard(w);
  const Bitboard occupancy = Occupancy(w);
  uint64_t key = 0;
  ForEachSquare(occupancy, [&](int sq) {
    const int code = PieceAt(w, sq);
    if (w.own & SquareBit(sq)) {
      key ^= SquareTable.slots[code | WHITE_PIECE][sq].key;
    } else {
      key ^= SquareTable.slots[code][Mirror(sq)].key;
    }
  });
  // In white's view, castlingKeys: [0] white king side, [1] black king side, [2] white queen side, [3] black.
  if (w.castling & OWN_KING_SIDE) key ^= SquareTable.castlingKeys[0];
  if (w.castling & OWN_QUEEN_SIDE) key ^= SquareTable.castlingKeys[2];
  if (w.castling & THEIR_KING_SIDE) key ^= SquareTable.castlingKeys[1];
  if (w.castling & THEIR_QUEEN_SIDE) key ^= SquareTable.castlingKeys[3];
  if (w.epFile != EP_NONE) key ^= SquareTable.epKeys[w.epFile & 7];
  if (p.side == BLACK) key ^= SquareTable.sideKey;
  return key;
}

int ComputeScore(const Position& p) {
  // Values do not depend on colour and are looked up in the owner's view, which for the side to
  // move is the stored square and for the opponent the mirrored one.
  int score = 0;
  const Bitboard occupancy = Occupancy(p);
  ForEachSquare(occupancy, [&](int sq) {
    const int code = PieceAt(p, sq);
    if (p.own & SquareBit(sq)) {
      score += SquareTable.slots[code][sq].value;
    } else {
      score -= SquareTable.slots[code][Mirror(sq)].value;
    }
  });
  return score;
}

Position InitialPosition() {
  Position p{};
  p.own = INITIAL_OWN;
  p.type0 = 0x2cff00000000ff2cULL;
  p.type1 = 0x7600000000000076ULL;
  p.type2 = 0x9900000000000099ULL;
  p.castling = ALL_CASTLING;
  p.epFile = EP_NONE;
  p.fifty = 0;
  p.repetition = 0;
  p.side = WHITE;
  p.score = 0;
  p.key = ComputeKey(p);
  return p;
}

}  // namespace vorlek
