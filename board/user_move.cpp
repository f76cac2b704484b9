#include "board/user_move.h"

#include "board/all_moves.h"
#include "board/history.h"
#include "board/notation.h"
#include "board/position.h"

namespace vorlek {

int ReadUserMove(const char* text) {
  int from, to;
  if (!ReadMoveSquares(text, from, to)) return MOVE_NOT_FOUND;
  const int promotion = ReadPromotionLetter(text[4]);
  if (promotion < 0) return MOVE_BAD_PROMOTION;
  KeepRoomAboveHistory();
  const Move move =
      FindGeneratedMove(*current, ViewSquare(from, current->side), ViewSquare(to, current->side), promotion);
  if (!move) return MOVE_NOT_FOUND;
  return MakeMoveIfLegal(move) ? MOVE_OK : MOVE_LEAVES_CHECK;
}

}  // namespace vorlek
