// board/position.h — the position record, seen from the side to move, its piece sets, and the stack of
// positions.
#pragma once
#include <cstdint>

#include "board/castling.h"
#include "board/square_table.h"
#include "board/types.h"

namespace vorlek {

constexpr int EP_NONE = 8;

struct Position {
  Bitboard own;        // the side to move's pieces
  Bitboard type0;      // squares whose piece code has bit 0 set
  Bitboard type1;      // ... bit 1
  Bitboard type2;      // ... bit 2
  uint8_t castling;    // CastlingRight bits: own rights in the low nibble, the opponent's in the high one
  uint8_t epFile;      // file of a pawn that has just made a double step, or EP_NONE
  uint8_t fifty;       // plies since the last capture or pawn move
  uint8_t repetition;  // earlier occurrences of this position
  uint16_t side;       // WHITE or BLACK to move
  int16_t score;       // material and square values, side to move's view
  uint64_t key;        // Zobrist key
};

constexpr Bitboard Occupancy(const Position& p) { return p.type0 | p.type1 | p.type2; }
constexpr Bitboard Opponent(const Position& p) { return Occupancy(p) ^ p.own; }

// The men of each piece code, of both colours (intersect with p.own or Opponent(p)).
constexpr Bitboard Pawns(const Position& p) { return p.type0 & ~p.type1 & ~p.type2; }
constexpr Bitboard Knights(const Position& p) { return p.type1 & ~p.type0 & ~p.type2; }
constexpr Bitboard Bishops(const Position& p) { return p.type0 & p.type1 & ~p.type2; }
constexpr Bitboard Rooks(const Position& p) { return p.type2 & ~p.type0 & ~p.type1; }
constexpr Bitboard Queens(const Position& p) { return p.type0 & p.type2 & ~p.type1; }
constexpr Bitboard Kings(const Position& p) { return p.type1 & p.type2 & ~p.type0; }

// Sets read from fewer planes, as the check test, the evaluation and (for the kings) the move generators
// define them. Each also holds the squares of code 7, which no position reached by moves has.
constexpr Bitboard KingPlanes(const Position& p) { return p.type1 & p.type2; }                    // kings
constexpr Bitboard BishopPlanes(const Position& p) { return p.type0 & p.type1; }                  // bishops
constexpr Bitboard StraightSliders(const Position& p) { return p.type2 & (p.type0 | ~p.type1); }  // rooks, queens
constexpr Bitboard DiagonalSliders(const Position& p) { return p.type0 & (p.type1 | p.type2); }   // bishops, queens

// Piece code (0..7) on square sq.
constexpr int PieceAt(const Position& p, int sq) {
  return static_cast<int>(((p.type0 >> sq) & 1) | (((p.type1 >> sq) & 1) << 1) | (((p.type2 >> sq) & 1) << 2));
}

// Every position of the game and of the search lives here; records above `current` are scratch.
constexpr int POSITION_STACK_SIZE = 600;
inline Position PositionStack[POSITION_STACK_SIZE];
inline Position* current = PositionStack;

constexpr Bitboard INITIAL_OWN = RANK_1 | RANK_2;

// The standard starting position, white to move, its key computed from the square table.
Position InitialPosition();

// Turns a record over to the other side's view; applying it twice gives the record back.
inline void FlipBoard(Position& p) {
  p.own = MirrorBoard(Opponent(p));
  p.type0 = MirrorBoard(p.type0);
  p.type1 = MirrorBoard(p.type1);
  p.type2 = MirrorBoard(p.type2);
  p.castling = TurnCastlingOver(p.castling);
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
