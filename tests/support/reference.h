// tests/support/reference.h — a slow, literal second implementation of the board rules and the evaluation,
// for checking the engine move for move and record for record. It uses
// only the engine's types and constant tables (Position, Move, SquareTable, the attack lookups, the king
// tables) and states each rule plainly, piece sets by their exact codes, so that it also answers for
// records that no game can reach: piece code 7, several kings or none, castling rights without king or
// rook, an en-passant file without a pawn, and records left by moves that do not fit their board.
#pragma once
#include <cstdint>
#include <vector>

#include "board/move.h"
#include "board/position.h"

namespace vorlek::reference {

// The reference's own position stack and its current record.
constexpr int STACK_SIZE = 1024;
extern Position stack[STACK_SIZE];
extern Position* current;

// Copies `count` records of a game (its history first) to the bottom of the stack; the last is current.
void Load(const Position* records, int count);

// The three lists of the generators, in their emission order.
std::vector<ScoredMove> GenerateCaptures(const Position& p);
struct Quiets {
  std::vector<MoveSet> sets;  // one entry per piece with quiet targets that do not give check
  std::vector<Move> list;     // castling, then the checking quiet moves
};
Quiets GenerateQuiets(const Position& p);

// Every pseudo-legal move as the move reader joins them: captures, the check list, the expanded sets.
std::vector<Move> GenerateAll(const Position& p);

// Copy-make on the reference stack.
void MakeMove(Move move);

bool InCheck(const Position& p);
int Evaluate(const Position& p);

}  // namespace vorlek::reference
