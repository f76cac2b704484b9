// board/castling.h — the castling rights of a position, seen from the side to move.
#pragma once
#include <array>
#include <cstdint>

#include "board/types.h"

namespace vorlek {

// Bits of Position::castling: the low nibble holds the side to move's rights, the high nibble its opponent's.
enum CastlingRight : uint8_t {
  OWN_QUEEN_SIDE = 0x01,
  OWN_KING_SIDE = 0x02,
  THEIR_QUEEN_SIDE = 0x10,
  THEIR_KING_SIDE = 0x20,
};
constexpr uint8_t OWN_CASTLING = OWN_QUEEN_SIDE | OWN_KING_SIDE;
constexpr uint8_t THEIR_CASTLING = THEIR_QUEEN_SIDE | THEIR_KING_SIDE;
constexpr uint8_t ALL_CASTLING = OWN_CASTLING | THEIR_CASTLING;

// The rights as the other side sees them: the two nibbles exchanged.
constexpr uint8_t TurnCastlingOver(uint8_t rights) { return static_cast<uint8_t>((rights >> 4) | (rights << 4)); }

// The right each rook corner stands for, in the mover's view: a rook leaving its own corner, or a capture
// landing on the opponent's, takes that right away.
constexpr auto CastlingRightOfSquare = [] {
  std::array<uint8_t, 64> t{};
  t[A1] = OWN_QUEEN_SIDE;
  t[H1] = OWN_KING_SIDE;
  t[A8] = THEIR_QUEEN_SIDE;
  t[H8] = THEIR_KING_SIDE;
  return t;
}();

// Index into the square table's castlingKeys (white king side, black king side, white queen side, black
// queen side) of one right, for the side to move (sideBit 0 for white, 1 for black).
constexpr int CastlingKeyIndex(CastlingRight right, int sideBit) {
  switch (right) {
    case OWN_KING_SIDE: return 0 + sideBit;
    case OWN_QUEEN_SIDE: return 2 + sideBit;
    case THEIR_KING_SIDE: return 1 - sideBit;
    case THEIR_QUEEN_SIDE: return 3 - sideBit;
  }
  return 0;
}

}  // namespace vorlek
