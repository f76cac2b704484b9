// search/child_key.h — the key and the counters of the record a move leads to, without making the move:
// make-move's own description of the move (board/move_effects.h), applied to the key alone and to the
// counters alone. The search prefetches a child's table entry with the key, and its depth-1 shortcut
// takes the child's draw tests from the counters and the key. Tests check both against MakeMove.
#pragma once
#include <cstdint>

#include "board/make_move.h"
#include "board/move.h"
#include "board/move_effects.h"
#include "board/position.h"

namespace vorlek {

// The key MakeMove gives the record after `move` in p.
inline uint64_t ChildKey(const Position& p, Move move) {
  detail::KeyChanges changes{p.key ^ SquareTable.sideKey, p.side, p.castling, p.epFile};
  return DescribeMove(move, changes) ? changes.key : p.key;
}

// The fifty-move count MakeMove gives the record after a move, and whether it looks the repetition count
// up (otherwise the count is 0, or for no move at all, the parent's).
struct ChildClock {
  uint8_t fifty;
  bool scansRepetition;
};

namespace detail {

struct ClockChanges {
  MoveClock clock = MoveClock::COUNT;
  void Move(int, int, int) {}
  void Capture(int, int) {}
  void EnPassant(int, int) {}
  void Castle(bool, int, int) {}
  void Promote(int, int, int) {}
  void EnPassantFile(int) {}
  void LoseRights(uint8_t) {}
  void Clock(MoveClock c) { clock = c; }
};

}  // namespace detail

inline ChildClock ChildClockOf(const Position& p, Move move) {
  detail::ClockChanges changes;
  if (!DescribeMove(move, changes)) return {p.fifty, false};
  if (changes.clock == MoveClock::RESET) return {0, false};
  return {static_cast<uint8_t>(p.fifty + 1), changes.clock == MoveClock::COUNT_AND_SCAN};
}

}  // namespace vorlek
