// board/square_table.h — Zobrist keys and square values for every piece on every square.
#pragma once
#include <cstdint>

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

// Index into castlingKeys of a right, seen from the side to move (sideBit 0 for white, 1 for black).
constexpr int OwnKingSideKey(int sideBit) { return 0 + sideBit; }
constexpr int OwnQueenSideKey(int sideBit) { return 2 + sideBit; }
constexpr int OppKingSideKey(int sideBit) { return 1 - sideBit; }
constexpr int OppQueenSideKey(int sideBit) { return 3 - sideBit; }

}  // namespace vorlek
