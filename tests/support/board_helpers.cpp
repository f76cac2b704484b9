#include "support/board_helpers.h"

#include "board/all_moves.h"
#include "board/fen.h"
#include "board/history.h"
#include "board/make_move.h"
#include "board/notation.h"

namespace vorlek::test {

void SetUpInitialPosition() { StartGame(InitialPosition()); }

int SetUpPosition(const char* fen) {
  SetUpInitialPosition();
  return SetBoard(*current, fen);
}

bool PlayMoves(const char* moves) {
  for (const char* c = moves; *c;) {
    while (*c == ' ') ++c;
    if (!*c) break;
    char text[6] = {};
    for (int n = 0; *c && *c != ' ' && n < 5;) text[n++] = *c++;
    int from, to;
    const int promotion = ReadPromotionLetter(text[4]);
    if (!ReadMoveSquares(text, from, to) || promotion < 0) return false;
    const Move m =
        FindGeneratedMove(*current, ViewSquare(from, current->side), ViewSquare(to, current->side), promotion);
    if (m == MOVE_NONE || !MakeMoveIfLegal(m)) return false;
  }
  return true;
}

}  // namespace vorlek::test
