// board/types.h — squares, bitboards, piece codes and the change of view.
#pragma once
#include <bit>
#include <cstdint>

namespace vorlek {

// A set of squares; bit n is square n = rank * 8 + file, always in the side to move's view.
using Bitboard = uint64_t;

// Piece codes: three bits spread over the planes type0..type2. A white piece adds 8 where colour matters.
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

constexpr Bitboard RANK_1 = 0xffULL;
constexpr Bitboard RANK_2 = 0xff00ULL;
constexpr Bitboard RANK_4 = 0xff000000ULL;
constexpr Bitboard RANK_7 = 0x00ff000000000000ULL;
constexpr Bitboard RANK_8 = 0xff00000000000000ULL;
constexpr Bitboard FILE_A = 0x0101010101010101ULL;
constexpr Bitboard FILE_H = 0x8080808080808080ULL;

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
