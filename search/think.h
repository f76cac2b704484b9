// search/think.h — choosing and playing the engine's move: book, iterative deepening, thinking output.
#pragma once
#include <cstddef>
#include <cstdint>

#include "board/move.h"
#include "board/position.h"

namespace vorlek {

// Chooses the engine's move (book or search), writes its text into moveText (at least 6 bytes),
// logs it and makes it. Returns false, making nothing, when the side to move has no legal move.
bool Think(char* moveText);

// Five characters and a terminator: from, to in white's coordinates, then the promotion letter or a blank.
void MoveToText(char* text, Move move, const Position& position);

// Searches the current position deeper and deeper within the time allotment; returns the move to play,
// or MOVE_NONE when there is no legal move. The current position is unchanged.
Move IterativeDeepening(int levelMoves, int engineTime, int opponentTime);

struct TimeAllotment {
  int64_t movesToGo;
  int64_t budget;          // microseconds for this move
  int64_t iterationLimit;  // microseconds after which no further iteration begins
};

// The allotment for the side to move at game ply `ply`.
TimeAllotment ComputeTimeAllotment(int levelMoves, int engineTime, int opponentTime, int ply, int side);

// The numbers of a thinking line: depth, score, elapsed time as seconds and hundredths (microseconds
// given), nodes, then one blank, ready for the principal variation.
void FormatThinkingLine(char* line, size_t size, int depth, int score, int64_t elapsed, uint64_t nodeCount);

// One iteration at `depth`: nodes reset, full window for every mate score.
int SearchIteration(int depth);

// Appends the principal variation walked from the table (at most maxMoves moves) to `text`, each
// move as "%s%s" with its text and a blank. The current position is unchanged.
void AppendPrincipalVariation(char* text, size_t size, int maxMoves);

// The root's remembered move when it belongs to the root and is legal there, otherwise the first legal
// move of the root, or MOVE_NONE.
Move RootMove();

}  // namespace vorlek
