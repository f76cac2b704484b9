// search/time_control.h — how long the engine may think: the allotment from the clocks, and the limits that
// keep an iteration from running the clock out.
#pragma once
#include <cstdint>

namespace vorlek {

// The moves over which the remaining time is spread: to the next control when there are `levelMoves` per
// control, otherwise the game reckoned at 60 moves, and 10 once 51 moves have been played. `ply` counts
// the half-moves since the game's starting position.
int64_t MovesToGo(int levelMoves, int ply);

struct TimeAllotment {
  int64_t budget;          // microseconds for this move
  int64_t iterationLimit;  // microseconds after which no further iteration begins
};

// The allotment for the side to move (`side` WHITE or BLACK: the two colours use different rules), from
// both clocks in microseconds.
TimeAllotment ComputeTimeAllotment(int64_t movesToGo, int64_t engineClock, int64_t opponentClock, int side);

// Microseconds of a budget after which no further iteration begins: the larger the budget, the smaller the
// share of it (a quarter under 15 s, a twenty-fifth from 20 minutes on).
int64_t IterationLimit(int64_t budget);

// When a running iteration is abandoned, in microseconds from the start of the search: once four fifths of
// the engine's clock are used, so that the engine does not lose on time, and in any case at ten times the
// budget and no sooner than ten seconds, so that set-ups whose capture sequences explode cannot hang it.
// A clock of zero or less leaves only the second rule.
int64_t AbandonAfter(const TimeAllotment& allotment, int64_t engineClock);

}  // namespace vorlek
