#include "board/history.h"

#include <cstring>

namespace vorlek {

void KeepRoomAboveHistory() {
  const int index = StackIndex(current);
  if (index < GAME_HISTORY_LIMIT) return;
  const int first = index - (GAME_HISTORY_KEPT - 1);
  std::memmove(PositionStack, PositionStack + first, sizeof(Position) * GAME_HISTORY_KEPT);
  droppedPlies += first;
  current = PositionStack + (GAME_HISTORY_KEPT - 1);
}

}  // namespace vorlek
