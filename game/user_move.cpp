#include "game/user_move.h"

#include "board/all_moves.h"
#include "board/history.h"
#include "board/position.h"

namespace vorlek {

int ReadUserMove(const char* text) {
  int from = (text[0] - 'a') + 8 * (text[1] - '1');
  int to = (text[2] - 'a') + 8 * (text[3] - '1');
  int promotion;
  switch (text[4]) {
    case '\0': promotion = EMPTY; break;
    case 'n': promotion = KNIGHT; break;
    case 'b': promotion = BISHOP; break;
    case 'r': promotion = ROOK; break;
    case 'q': promotion = QUEEN; break;
    default: return MOVE_BAD_PROMOTION;
  }
  if (current->side == BLACK) {
    from = Mirror(from);
    to = Mirror(to);
  }

  KeepRoomAboveHistory();
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  for (int i = 0; i < list.count; ++i) {
    const Move m = list.moves[i];
    if (MoveFrom(m) == from && MoveTo(m) == to && PromotionPiece(m) == promotion) {
      return MakeMoveIfLegal(m) ? MOVE_OK : MOVE_LEAVES_CHECK;
    }
  }
  return MOVE_NOT_FOUND;
}

}  // namespace vorlek
