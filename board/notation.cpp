#include "board/notation.h"

namespace vorlek {

namespace {

bool IsFile(char c) { return c >= 'a' && c <= 'h'; }
bool IsRank(char c) { return c >= '1' && c <= '8'; }

}  // namespace

bool ReadMoveSquares(const char* text, int& from, int& to) {
  // Each test stops at the first character that fails, so a text shorter than four is never read past its end.
  if (!IsFile(text[0]) || !IsRank(text[1]) || !IsFile(text[2]) || !IsRank(text[3])) return false;
  from = (text[0] - 'a') + 8 * (text[1] - '1');
  to = (text[2] - 'a') + 8 * (text[3] - '1');
  return true;
}

int ReadPromotionLetter(char letter) {
  switch (letter) {
    case '\0': return EMPTY;
    case 'n': return KNIGHT;
    case 'b': return BISHOP;
    case 'r': return ROOK;
    case 'q': return QUEEN;
    default: return -1;
  }
}

void MoveToText(char* text, Move move, int side) {
  const int squares[2] = {ViewSquare(MoveFrom(move), side), ViewSquare(MoveTo(move), side)};
  for (int i = 0; i < 2; ++i) {
    text[2 * i] = static_cast<char>('a' + FileOf(squares[i]));
    text[2 * i + 1] = static_cast<char>('1' + RankOf(squares[i]));
  }
  static constexpr char PROMOTION_LETTERS[8] = {' ', ' ', 'n', 'b', 'r', 'q', ' ', ' '};
  text[4] = PROMOTION_LETTERS[PromotionPiece(move)];
  text[5] = '\0';
}

void MoveToPlainText(char* text, Move move, int side) {
  MoveToText(text, move, side);
  if (text[4] == ' ') text[4] = '\0';
}

}  // namespace vorlek
