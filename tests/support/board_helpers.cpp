#include "support/board_helpers.h"

#include <cstring>

#include "board/all_moves.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/notation.h"

namespace vorlek::test {

namespace {

struct Step {
  int file, rank;
};

bool Inside(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

template <int N>
Bitboard Walk(int sq, Bitboard occupancy, const Step (&steps)[N]) {
  Bitboard seen = 0;
  for (const Step& step : steps) {
    for (int f = sq % 8 + step.file, r = sq / 8 + step.rank; Inside(f, r); f += step.file, r += step.rank) {
      const Bitboard bit = Bitboard{1} << (r * 8 + f);
      seen |= bit;
      if (occupancy & bit) break;
    }
  }
  return seen;
}

constexpr Step ROOK_STEPS[4] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
constexpr Step BISHOP_STEPS[4] = {{1, 1}, {-1, 1}, {1, -1}, {-1, -1}};

}  // namespace

Bitboard WalkRookLines(int sq, Bitboard occupancy) { return Walk(sq, occupancy, ROOK_STEPS); }
Bitboard WalkBishopLines(int sq, Bitboard occupancy) { return Walk(sq, occupancy, BISHOP_STEPS); }

void SetUpInitialPosition() {
  current = PositionStack;
  *current = InitialPosition();
}

int SetUpPosition(const char* fen) {
  SetUpInitialPosition();
  return SetBoard(*current, fen);
}

Move FindMove(const char* text) {
  int from, to;
  const int promotion = text[4] == ' ' ? EMPTY : ReadPromotionLetter(text[4]);
  if (!ReadMoveSquares(text, from, to) || promotion < 0) return MOVE_NONE;
  return FindGeneratedMove(*current, ViewSquare(from, current->side), ViewSquare(to, current->side), promotion);
}

bool PlayMoves(const char* moves) {
  const char* c = moves;
  while (*c) {
    while (*c == ' ') ++c;
    if (!*c) break;
    char text[6] = {};
    int n = 0;
    while (*c && *c != ' ' && n < 5) text[n++] = *c++;
    const Move m = FindMove(text);
    if (m == MOVE_NONE || !MakeMoveIfLegal(m)) return false;
  }
  return true;
}

std::vector<Move> LegalMoves() {
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  std::vector<Move> legal;
  for (int i = 0; i < list.count; ++i) {
    if (IsLegalMove(list.moves[i])) legal.push_back(list.moves[i]);
  }
  return legal;
}

void PlayMove(Move move) { MakeMove(move); }

}  // namespace vorlek::test
