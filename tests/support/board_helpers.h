// tests/support/board_helpers.h — setting up positions and playing moves on the position stack in tests.
#pragma once
#include <cstdint>

#include "board/move.h"
#include "board/position.h"

namespace vorlek::test {

// The initial position as the first record of the stack, with `current` on it.
void SetUpInitialPosition();

// `fen` read into the first record of the stack, as the "setboard" command does it; SetBoard's result.
int SetUpPosition(const char* fen);

// Plays blank-separated coordinate moves; false at the first that is not a legal move (it is not played).
bool PlayMoves(const char* moves);

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

// The public perft test positions: the initial position, "Kiwipete", the rook endgame, the promotion
// position and its mirror, the underpromotion position and a quiet middlegame.
inline constexpr const char* PERFT_POSITIONS[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1",
    "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
};

}  // namespace vorlek::test
