// board/attacks.h — attack tables: king, knight, rays, magic lookups for the sliders, the in-check test.
#pragma once
#include <array>
#include <cstdint>

#include "board/position.h"
#include "board/types.h"

namespace vorlek {

namespace detail {

constexpr bool OnBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

constexpr Bitboard StepAttacks(int sq, const int (&steps)[8][2]) {
  Bitboard b = 0;
  for (const auto& step : steps) {
    const int f = FileOf(sq) + step[0], r = RankOf(sq) + step[1];
    if (OnBoard(f, r)) b |= SquareBit(r * 8 + f);
  }
  return b;
}

constexpr int KING_STEPS[8][2] = {{-1, -1}, {0, -1}, {1, -1}, {-1, 0}, {1, 0}, {-1, 1}, {0, 1}, {1, 1}};
constexpr int KNIGHT_STEPS[8][2] = {{-2, -1}, {-1, -2}, {1, -2}, {2, -1}, {-2, 1}, {-1, 2}, {1, 2}, {2, 1}};

// File and rank step of each ray direction, in the order of Rays: -7, +7, -9, +9, -8, +8, -1, +1.
constexpr int RAY_STEPS[8][2] = {{1, -1}, {-1, 1}, {-1, -1}, {1, 1}, {0, -1}, {0, 1}, {-1, 0}, {1, 0}};

constexpr Bitboard RayFrom(int sq, int direction) {
  Bitboard b = 0;
  int f = FileOf(sq) + RAY_STEPS[direction][0], r = RankOf(sq) + RAY_STEPS[direction][1];
  while (OnBoard(f, r)) {
    b |= SquareBit(r * 8 + f);
    f += RAY_STEPS[direction][0];
    r += RAY_STEPS[direction][1];
  }
  return b;
}

}  // namespace detail

constexpr auto KingAttacks = [] {
  std::array<Bitboard, 64> t{};
  for (int sq = 0; sq < 64; ++sq) t[sq] = detail::StepAttacks(sq, detail::KING_STEPS);
  return t;
}();

constexpr auto KnightAttacks = [] {
  std::array<Bitboard, 64> t{};
  for (int sq = 0; sq < 64; ++sq) t[sq] = detail::StepAttacks(sq, detail::KNIGHT_STEPS);
  return t;
}();

// Rays[d][s]: the squares strictly beyond s in direction d up to the edge.
// Directions: 0: -7, 1: +7, 2: -9, 3: +9, 4: -8, 5: +8, 6: -1, 7: +1. Odd directions rise.
constexpr auto Rays = [] {
  std::array<std::array<Bitboard, 64>, 8> t{};
  for (int d = 0; d < 8; ++d)
    for (int sq = 0; sq < 64; ++sq) t[d][sq] = detail::RayFrom(sq, d);
  return t;
}();

constexpr bool RayRises(int direction) { return direction & 1; }
constexpr bool RayIsStraight(int direction) { return direction >= 4; }

// Attack set of a slider moving along the given four directions, stopping at the first blocker.
constexpr Bitboard SlidingAttacks(int sq, Bitboard blockers, const int (&directions)[4]) {
  Bitboard attacks = 0;
  for (int d : directions) {
    const Bitboard ray = Rays[d][sq];
    const Bitboard stop = ray & blockers;
    if (!stop) {
      attacks |= ray;
      continue;
    }
    const int first = RayRises(d) ? LowestSquare(stop) : HighestSquare(stop);
    attacks |= ray & ~Rays[d][first];
  }
  return attacks;
}

constexpr int ROOK_DIRECTIONS[4] = {4, 5, 6, 7};
constexpr int BISHOP_DIRECTIONS[4] = {0, 1, 2, 3};

// Relevant occupancy of a slider: its rays without the last square of each.
constexpr Bitboard SliderMask(int sq, const int (&directions)[4]) {
  Bitboard mask = 0;
  for (int d : directions) {
    const Bitboard ray = Rays[d][sq];
    if (!ray) continue;
    const int last = RayRises(d) ? HighestSquare(ray) : LowestSquare(ray);
    mask |= ray & ~SquareBit(last);
  }
  return mask;
}

struct MagicEntry {
  Bitboard mask;
  Bitboard magic;
  uint64_t shift;
  const Bitboard* attacks;  // this square's slice of the attack table
};

constexpr int ROOK_ATTACK_TABLE_SIZE = 102400;
constexpr int BISHOP_ATTACK_TABLE_SIZE = 5248;

extern Bitboard RookAttackTable[ROOK_ATTACK_TABLE_SIZE];
extern Bitboard BishopAttackTable[BISHOP_ATTACK_TABLE_SIZE];
extern const std::array<MagicEntry, 64> RookMagics;
extern const std::array<MagicEntry, 64> BishopMagics;

inline Bitboard MagicLookup(const MagicEntry& e, Bitboard occupancy) {
  return e.attacks[((occupancy & e.mask) * e.magic) >> e.shift];
}
inline Bitboard RookAttacks(int sq, Bitboard occupancy) { return MagicLookup(RookMagics[sq], occupancy); }
inline Bitboard BishopAttacks(int sq, Bitboard occupancy) { return MagicLookup(BishopMagics[sq], occupancy); }
inline Bitboard QueenAttacks(int sq, Bitboard occupancy) {
  return RookAttacks(sq, occupancy) | BishopAttacks(sq, occupancy);
}

// Fills the bishop, then the rook attack table.
void InitAttackTables();

// Squares from which an enemy pawn (moving down the board) attacks the squares of b.
constexpr Bitboard EnemyPawnAttackers(Bitboard b) { return ((b << 7) & ~FILE_H) | ((b << 9) & ~FILE_A); }

// Whether the side to move's king in p is attacked. The sets are read from the planes as the check test
// defines them (a square of code 7 counts as a king, a rook, a bishop and a queen). A record without a
// king is never in check.
inline bool InCheck(const Position& p) {
  const Bitboard kings = p.own & KingPlanes(p);
  if (!kings) return false;
  const int k = LowestSquare(kings);
  const Bitboard occupancy = Occupancy(p);
  const Bitboard enemy = occupancy ^ p.own;
  return (RookAttacks(k, occupancy) & enemy & StraightSliders(p)) ||
         (BishopAttacks(k, occupancy) & enemy & DiagonalSliders(p)) ||
         (EnemyPawnAttackers(SquareBit(k)) & enemy & Pawns(p)) || (KnightAttacks[k] & enemy & Knights(p)) ||
         (KingAttacks[k] & enemy & KingPlanes(p));
}

inline bool InCheck() { return InCheck(*current); }

}  // namespace vorlek
