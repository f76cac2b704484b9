// board/square_table.h — Zobrist keys and square values for every piece on every square.
#pragma once
#include <cstdint>

#include "board/castling.h"

namespace vorlek {

struct SquareSlot {
  uint64_t key;
  int32_t value;  // material plus square bonus; the same for both colours in their own view
};

// Slots are colour-tagged piece codes (code | 8 for white); squares are in the owner's view.
struct SquareTableData {
  SquareSlot slots[16][64];
  uint64_t castlingKeys[4];  // white king side, black king side, white queen side, black queen side
  uint64_t epKeys[8];
  uint64_t sideKey;  // present while black is to move
};

inline SquareTableData SquareTable;

constexpr int16_t pieceValue[8] = {0, 100, 300, 300, 500, 950, 15000, 15000};

// One step of the key generator (a lagged Fibonacci sequence with fixed seeds).
uint64_t NextRandom();

// Draws the 1037 keys in their fixed order, then fills the values. Called once, at start.
void InitSquareTable();

// The keys of several castling rights together, by the side to move (0 white, 1 black) and the four
// right bits packed into one nibble; filled by InitSquareTable from castlingKeys.
inline uint64_t castlingRightsKeys[2][16];

// The key of the rights held in `rights` (CastlingRight bits) for the side to move.
inline uint64_t CastlingRightsKey(uint8_t rights, int sideBit) {
  return castlingRightsKeys[sideBit][(rights & OWN_CASTLING) | ((rights & THEIR_CASTLING) >> 2)];
}

}  // namespace vorlek
