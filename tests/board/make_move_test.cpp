// Copy-make: the game's history slid down the stack in long games. (The slow reference checks every field of every
// move's record along random games, and the key and score against their computation from scratch,
// tests/search/reference_test.cpp.)
#include "board/make_move.h"

#include <gtest/gtest.h>

#include "board/history.h"
#include "board/user_move.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

// Sliding the history down keeps the current record and the 255 before it, more than the fifty counter
// reaches back, and the count of plies played.
TEST(MakeMoveFacts, SlidingTheHistoryKeepsItsLastRecords) {
  test::SetUpInitialPosition();
  droppedPlies = 0;
  for (int i = 1; i <= GAME_HISTORY_LIMIT; ++i) {
    PositionStack[i] = PositionStack[0];
    PositionStack[i].key = static_cast<uint64_t>(i);
  }
  current = PositionStack + GAME_HISTORY_LIMIT;
  KeepRoomAboveHistory();
  EXPECT_EQ(GamePly(), GAME_HISTORY_LIMIT);
  EXPECT_EQ(StackIndex(current), 255);
  for (int i = 0; i <= 255; ++i) EXPECT_EQ(PositionStack[i].key, static_cast<uint64_t>(GAME_HISTORY_LIMIT - 255 + i));
}

// A typed move makes room first: 800 plies of knights out and back never climb past the sliding point.
TEST(MakeMoveFacts, TypedMovesSlideTheHistory) {
  test::SetUpInitialPosition();
  droppedPlies = 0;
  const char* const MOVES[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  for (int ply = 1; ply <= 800; ++ply) {
    ASSERT_EQ(ReadUserMove(MOVES[(ply - 1) % 4]), MOVE_OK);
    ASSERT_EQ(GamePly(), ply);
    ASSERT_LE(StackIndex(current), GAME_HISTORY_LIMIT);
  }
}

}  // namespace
}  // namespace vorlek
