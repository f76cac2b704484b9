// find_magics — searches magic multipliers for the rook and bishop attack tables and prints them
// as the C++ tables of board/magic_numbers.h. The three multipliers the engine has always used
// (rook a1 and b1, bishop a1) are kept; every other square gets the first sparse random number
// that maps the square's occupancies without a harmful collision.
#include <cstdio>
#include <random>
#include <vector>

#include "board/attacks.h"

using namespace vorlek;

namespace {

bool Works(Bitboard magic, const std::vector<Bitboard>& occupancies, const std::vector<Bitboard>& attacks, int bits) {
  std::vector<Bitboard> table(size_t{1} << bits, 0);
  std::vector<bool> used(size_t{1} << bits, false);
  for (size_t i = 0; i < occupancies.size(); ++i) {
    const size_t index = (occupancies[i] * magic) >> (64 - bits);
    if (!used[index]) {
      used[index] = true;
      table[index] = attacks[i];
    } else if (table[index] != attacks[i]) {
      return false;
    }
  }
  return true;
}

Bitboard Find(int sq, const int (&directions)[4], std::mt19937_64& rng, Bitboard known) {
  const Bitboard mask = SliderMask(sq, directions);
  const int bits = PopCount(mask);
  std::vector<Bitboard> occupancies, attacks;
  Bitboard subset = 0;
  do {
    occupancies.push_back(subset);
    attacks.push_back(SlidingAttacks(sq, subset, directions));
    subset = (subset - mask) & mask;
  } while (subset);
  if (known && Works(known, occupancies, attacks, bits)) return known;
  for (;;) {
    const Bitboard candidate = rng() & rng() & rng();
    if (PopCount((mask * candidate) & 0xff00000000000000ULL) < 6) continue;
    if (Works(candidate, occupancies, attacks, bits)) return candidate;
  }
}

void Print(const char* name, const int (&directions)[4], std::mt19937_64& rng, Bitboard knownA1, Bitboard knownB1) {
  std::printf("constexpr Bitboard %s[64] = {\n", name);
  for (int sq = 0; sq < 64; ++sq) {
    const Bitboard known = sq == 0 ? knownA1 : sq == 1 ? knownB1 : 0;
    std::printf("%s0x%016llxULL,%s", sq % 4 == 0 ? "    " : " ",
                static_cast<unsigned long long>(Find(sq, directions, rng, known)), sq % 4 == 3 ? "\n" : "");
  }
  std::printf("};\n");
}

}  // namespace

int main() {
  std::mt19937_64 rng(20261123);
  Print("ROOK_MAGIC_NUMBERS", ROOK_DIRECTIONS, rng, 0xa8002c000108020ULL, 0x6c00049b0002001ULL);
  Print("BISHOP_MAGIC_NUMBERS", BISHOP_DIRECTIONS, rng, 0x89a1121896040240ULL, 0);
  return 0;
}
