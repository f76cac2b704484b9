// search/evaluation.h — the static value of a position for the side to move.
#pragma once
#include <array>
#include <cstdint>

#include "board/position.h"

namespace vorlek {

constexpr int BISHOP_PAIR_BONUS = 50;

namespace detail {

// The side to move's king, rank 8 at the top as printed; the opponent's half mirrors the ranks.
constexpr int16_t KING_OPENING_PRINTED[64] = {
    -5, -5, -5, -5,  -5, -5,  -5, -5,  //
    -5, -5, -5, -5,  -5, -5,  -5, -5,  //
    -5, -5, -5, -5,  -5, -5,  -5, -5,  //
    -5, -5, -5, -5,  -5, -5,  -5, -5,  //
    -5, -5, -5, -5,  -5, -5,  -5, -5,  //
    -5, -5, -5, -5,  -5, -5,  -5, -5,  //
    -5, -5, -5, -5,  -5, -5,  -5, -5,  //
    -5, -5, 20, -10, 0,  -10, 30, -5,
};
constexpr int16_t KING_ENDGAME_PRINTED[64] = {
    0, 0, 0,  0,  0,  0,  0,  0,  //
    0, 5, 5,  5,  5,  5,  5,  0,  //
    0, 5, 10, 10, 10, 10, 5,  0,  //
    0, 5, 10, 15, 15, 10, 5,  0,  //
    0, 5, 10, 15, 15, 10, 5,  0,  //
    0, 5, 10, 10, 10, 10, 5,  0,  //
    0, 5, 5,  5,  5,  5,  5,  0,  //
    0, 0, -5, 0,  0,  0,  -5, 0,
};

// Index s: the side to move's king on s; 64 + s: the opponent's king on s (entry s ^ 56).
constexpr std::array<int16_t, 128> KingTable(const int16_t (&printed)[64]) {
  std::array<int16_t, 128> t{};
  for (int sq = 0; sq < 64; ++sq) {
    t[sq] = printed[Mirror(sq)];  // the printed table has rank 8 first
  }
  for (int sq = 0; sq < 64; ++sq) t[64 + sq] = t[Mirror(sq)];
  return t;
}

}  // namespace detail

constexpr auto KingOpeningTable = detail::KingTable(detail::KING_OPENING_PRINTED);
constexpr auto KingEndgameTable = detail::KingTable(detail::KING_ENDGAME_PRINTED);

// King placement between the opening and the endgame table by the men on the board; the arithmetic
// shift rounds toward minus infinity.
constexpr int KingTerm(int index, int menCount) {
  return ((32 - menCount) * KingEndgameTable[index] + menCount * KingOpeningTable[index]) >> 5;
}

// Incremental material and square values, both kings' placement and the bishop pair. The kings and the
// bishops are read from the planes as the evaluation defines them (a square of code 7 counts as both).
// A king missing from a set-up position adds no placement term.
inline int Evaluate(const Position& p) {
  const Bitboard occupancy = Occupancy(p), opponent = occupancy ^ p.own;
  const int menCount = PopCount(occupancy);
  const Bitboard ownKings = p.own & KingPlanes(p), opponentKings = opponent & KingPlanes(p);
  int result = p.score;
  if (PopCount(p.own & BishopPlanes(p)) == 2) result += BISHOP_PAIR_BONUS;
  if (PopCount(opponent & BishopPlanes(p)) == 2) result -= BISHOP_PAIR_BONUS;
  if (ownKings) result += KingTerm(LowestSquare(ownKings), menCount);
  if (opponentKings) result -= KingTerm(64 + LowestSquare(opponentKings), menCount);
  return result;
}

}  // namespace vorlek
