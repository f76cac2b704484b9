#include "board/attacks.h"

#include "board/magic_numbers.h"

namespace vorlek {

Bitboard RookAttackTable[ROOK_ATTACK_TABLE_SIZE];
Bitboard BishopAttackTable[BISHOP_ATTACK_TABLE_SIZE];

namespace {

// Lays the squares' slices one after another in the flat table, square 0 first.
constexpr std::array<MagicEntry, 64> MakeMagics(const int (&directions)[4], const Bitboard (&magics)[64],
                                                Bitboard* table) {
  std::array<MagicEntry, 64> entries{};
  int offset = 0;
  for (int sq = 0; sq < 64; ++sq) {
    const Bitboard mask = SliderMask(sq, directions);
    const int bits = PopCount(mask);
    entries[sq] = {mask, magics[sq], static_cast<uint64_t>(64 - bits), table + offset};
    offset += 1 << bits;
  }
  return entries;
}

void FillAttackTable(const std::array<MagicEntry, 64>& magics, const int (&directions)[4]) {
  for (int sq = 0; sq < 64; ++sq) {
    const MagicEntry& e = magics[sq];
    const int bits = static_cast<int>(64 - e.shift);
    Bitboard* slice = const_cast<Bitboard*>(e.attacks);
    for (uint64_t i = 0; i < (uint64_t{1} << bits); ++i) {
      // The subset of the mask whose j-th lowest square is present when bit j of i is set.
      Bitboard subset = 0, rest = e.mask;
      for (int j = 0; j < bits; ++j) {
        const Bitboard lowest = rest & (~rest + 1);
        if (i & (uint64_t{1} << j)) subset |= lowest;
        rest ^= lowest;
      }
      slice[(subset * e.magic) >> e.shift] = SlidingAttacks(sq, subset, directions);
    }
  }
}

}  // namespace

constinit const std::array<MagicEntry, 64> RookMagics =
    MakeMagics(ROOK_DIRECTIONS, ROOK_MAGIC_NUMBERS, RookAttackTable);
constinit const std::array<MagicEntry, 64> BishopMagics =
    MakeMagics(BISHOP_DIRECTIONS, BISHOP_MAGIC_NUMBERS, BishopAttackTable);

void InitAttackTables() {
  FillAttackTable(BishopMagics, BISHOP_DIRECTIONS);
  FillAttackTable(RookMagics, ROOK_DIRECTIONS);
}

}  // namespace vorlek
