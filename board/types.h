// board/types.h — squares, bitboards, piece codes and the change of view.
#pragma once
#include <bit>
#include <cstdint>

namespace vorlek {

// A set of squares; bit n is square n = rank * 8 + file, always in the side to move's view.
using Bitboard = uint64_t;

// Piece codes: three bits spread over the planes type0..type2. A white piece adds 8 where colour matters.
// Code 7 (all three planes) is no piece; no position reached by moves holds it.
constexpr int EMPTY = 0;
constexpr int PAWN = 1;
constexpr int KNIGHT = 2;
constexpr int BISHOP = 3;
constexpr int ROOK = 4;
constexpr int QUEEN = 5;
constexpr int KING = 6;
constexpr int WHITE_PIECE = 8;

// Colour to move, as stored in Position::side.
constexpr int WHITE = 0;
constexpr int BLACK = 8;

// clang-format off
enum SquareName : int {
  A1, B1, C1, D1, E1, F1, G1, H1,
  A2, B2, C2, D2, E2, F2, G2, H2,
  A3, B3, C3, D3, E3, F3, G3, H3,
  A4, B4, C4, D4, E4, F4, G4, H4,
  A5, B5, C5, D5, E5, F5, G5, H5,
  A6, B6, C6, D6, E6, F6, G6, H6,
  A7, B7, C7, D7, E7, F7, G7, H7,
  A8, B8, C8, D8, E8, F8, G8, H8,
};
// clang-format on

constexpr Bitboard RANK_1 = 0xffULL;
constexpr Bitboard RANK_2 = RANK_1 << 8;
constexpr Bitboard RANK_4 = RANK_1 << 24;
constexpr Bitboard RANK_7 = RANK_1 << 48;
constexpr Bitboard RANK_8 = RANK_1 << 56;
constexpr Bitboard FILE_A = 0x0101010101010101ULL;
constexpr Bitboard FILE_H = FILE_A << 7;

constexpr Bitboard SquareBit(int sq) { return Bitboard{1} << sq; }
constexpr int FileOf(int sq) { return sq & 7; }
constexpr int RankOf(int sq) { return sq >> 3; }

// The other colour's view of a square: same file, rank r becomes rank 7 - r.
constexpr int Mirror(int sq) { return sq ^ 56; }

// The other colour's view of a whole board: rank bytes reversed.
constexpr Bitboard MirrorBoard(Bitboard b) { return __builtin_bswap64(b); }

constexpr int LowestSquare(Bitboard b) { return std::countr_zero(b); }
constexpr int HighestSquare(Bitboard b) { return 63 - std::countl_zero(b); }
constexpr int PopCount(Bitboard b) { return std::popcount(b); }

// Calls f(square) for every square of b, lowest first.
template <typename F>
inline void ForEachSquare(Bitboard b, F&& f) {
  while (b) {
    f(LowestSquare(b));
    b &= b - 1;
  }
}

}  // namespace vorlek
