// board/all_moves.h — every pseudo-legal move of a position in one flat list, and the legality test
// used wherever a move comes from outside the search (the opponent, the game-end test, perft).
#pragma once
#include "board/move.h"
#include "board/position.h"

namespace vorlek {

struct FlatMoveList {
  Move moves[ALL_MOVES_LIST_SIZE];
  int32_t count;
};

// Captures and promotions in generation order, then castling and quiet checks, then each move set
// expanded with its targets in ascending order.
void GenerateAllMoves(const Position& p, FlatMoveList& list);

// Matches any promotion piece (FindGeneratedMove).
constexpr int ANY_PROMOTION = -1;

// The first move of p's joined list from `from` to `to` (squares in p's view) that promotes to `promotion`
// (EMPTY for a move without promotion, ANY_PROMOTION for the first whatever it promotes to), or MOVE_NONE.
Move FindGeneratedMove(const Position& p, int from, int to, int promotion);

// Makes `move` on the record above `current`; when it leaves the mover's king attacked the record is
// dropped again and false is returned, otherwise the move stays made and true is returned.
bool MakeMoveIfLegal(Move move);

// Whether `move` leaves the mover's king safe; `current` is left where it was.
bool IsLegalMove(Move move);

// Whether the side to move has at least one legal move.
bool HasLegalMove();

// Legal leaf nodes `depth` plies below the current position (the perft count); `current` is left where
// it was.
uint64_t Perft(int depth);

}  // namespace vorlek
