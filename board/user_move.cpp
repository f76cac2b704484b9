#include "board/user_move.h"

#include "board/all_moves.h"
#include "board/history.h"
#include "board/notation.h"
#include "board/position.h"

namespace vorlek {

namespace {

// The generated move of the current position the text names, or MOVE_NONE with the code of the refusal.
int FindGenerated(const char* text, Move& move) {
  move = MOVE_NONE;
  int from, to;
  if (!ReadMoveSquares(text, from, to)) return MOVE_NOT_FOUND;
  const int promotion = ReadPromotionLetter(text[4]);
  if (promotion < 0) return MOVE_BAD_PROMOTION;
  move = FindGeneratedMove(*current, ViewSquare(from, current->side), ViewSquare(to, current->side), promotion);
  return move ? MOVE_OK : MOVE_NOT_FOUND;
}

}  // namespace

int ReadUserMove(const char* text) {
  Move move;
  const int code = FindGenerated(text, move);
  if (code != MOVE_OK) return code;
  KeepRoomAboveHistory();
  return MakeMoveIfLegal(move) ? MOVE_OK : MOVE_LEAVES_CHECK;
}

int FindUserMove(const char* text, Move& move) {
  const int code = FindGenerated(text, move);
  if (code != MOVE_OK) return code;
  KeepRoomAboveHistory();
  if (IsLegalMove(move)) return MOVE_OK;
  move = MOVE_NONE;
  return MOVE_LEAVES_CHECK;
}

}  // namespace vorlek
