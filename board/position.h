// board/position.h — the position record, seen from the side to move, and the stack of positions.
#pragma once
#include <cstdint>

#include "board/square_table.h"
#include "board/types.h"

namespace vorlek {

constexpr int EP_NONE = 8;

struct Position {
  Bitboard own;        // the side to move's pieces
  Bitboard type0;      // squares whose piece code has bit 0 set
  Bitboard type1;      // ... bit 1
  Bitboard type2;      // ... bit 2
  uint8_t castling;    // bit 0/1: own queen/king side; bit 4/5: the opponent's
  uint8_t epFile;      // file of a pawn that has just made a double step, or EP_NONE
  uint8_t fifty;       // plies since the last capture or pawn move
  uint8_t repetition;  // earlier occurrences of this position
  uint16_t side;       // WHITE or BLACK to move
  int16_t score;       // material and square values, side to move's view
  uint64_t key;        // Zobrist key
};

constexpr Bitboard Occupancy(const Position& p) { return p.type0 | p.type1 | p.type2; }

// Piece code (0..7) on square sq.
constexpr int PieceAt(const Position& p, int sq) {
  return static_cast<int>(((p.type0 >> sq) & 1) | (((p.type1 >> sq) & 1) << 1) | (((p.type2 >> sq) & 1) << 2));
}

// Every position of the game and of the search lives here; records above `current` are scratch.
constexpr int POSITION_STACK_SIZE = 600;
inline Position PositionStack[POSITION_STACK_SIZE];
inline Position* current = PositionStack;

constexpr Bitboard INITIAL_OWN = 0xffffULL;

// The standard starting position, white to move, its key computed from the square table.
Position InitialPosition();

// Turns a record over to the other side's view; applying it twice gives the record back.
inline void FlipBoard(Position& p) {
  const Bitboard opponent = Occupancy(p) ^ p.own;
  p.own = MirrorBoard(opponent);
  p.type0 = MirrorBoard(p.type0);
  p.type1 = MirrorBoard(p.type1);
  p.type2 = MirrorBoard(p.type2);
  p.castling = static_cast<uint8_t>((p.castling >> 4) | (p.castling << 4));
  p.side ^= BLACK;
  p.key ^= SquareTable.sideKey;
  p.score = static_cast<int16_t>(-p.score);
}

// Index of a position record in the stack.
inline int StackIndex(const Position* p) { return static_cast<int>(p - PositionStack); }

// Key and score of a position computed from scratch (pieces, rights, en-passant file, side).
uint64_t ComputeKey(const Position& p);
int ComputeScore(const Position& p);

}  // namespace vorlek
