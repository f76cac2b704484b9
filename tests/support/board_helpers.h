// tests/support/board_helpers.h — setting up positions and playing moves on the position stack in tests.
#pragma once
#include <cstdint>
#include <vector>

#include "board/move.h"
#include "board/position.h"

namespace vorlek::test {

// Square index of a real square name ("a1" is 0, "e4" is 28, "h8" is 63).
constexpr int Sq(const char* name) { return (name[0] - 'a') + 8 * (name[1] - '1'); }

// Slow attack sets, walked square by square on file and rank coordinates, for checking the tables.
// Lines end on the first occupied square, which they include.
Bitboard WalkRookLines(int sq, Bitboard occupancy);
Bitboard WalkBishopLines(int sq, Bitboard occupancy);
Bitboard WalkKnightJumps(int sq);
Bitboard WalkKingSteps(int sq);

// The squares named in a blank-separated list such as "a2 c1".
Bitboard Squares(const char* names);

// The initial position as the first record of the stack, with `current` on it.
void SetUpInitialPosition();

// `fen` read into the first record of the stack, as the "setboard" command does it; SetBoard's result.
int SetUpPosition(const char* fen);

// The generated move of the current position that the coordinate text names (absolute squares, an
// optional promotion letter), or MOVE_NONE. Legality is not tested.
Move FindMove(const char* text);

// Plays blank-separated coordinate moves; false at the first that is not a legal move (it is not played).
bool PlayMoves(const char* moves);

// Every legal move of the current position, in generation order.
std::vector<Move> LegalMoves();

// Legal leaf nodes `depth` plies below the current position.
uint64_t Perft(int depth);

// A small deterministic generator for random games and positions (the same sequence on every platform).
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}
  uint64_t Next() {
    // xorshift64*
    state_ ^= state_ >> 12;
    state_ ^= state_ << 25;
    state_ ^= state_ >> 27;
    return state_ * 0x2545f4914f6cdd1dULL;
  }
  int Below(int n) { return static_cast<int>(Next() % static_cast<uint64_t>(n)); }

 private:
  uint64_t state_;
};

}  // namespace vorlek::test
