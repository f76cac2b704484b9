// search/search.h — alpha-beta search and quiescence search over the position stack.
#pragma once
#include <cstdint>

#include "board/move.h"

namespace vorlek {

constexpr int MATE_SCORE = 15000;     // a side mated at remaining depth d scores -(MATE_SCORE + d)
constexpr int ILLEGAL_SCORE = 15100;  // the side to move can capture the enemy king
constexpr int MAX_SEARCH_DEPTH = 32;

inline uint64_t nodes = 0;                     // nodes of the current iteration
inline int useBook = 1;                        // book moves are still looked for
inline int searchDepth = 4;                    // depth of the iteration being searched; carried from move to move
inline int maxSearchDepth = MAX_SEARCH_DEPTH;  // no iteration goes deeper; tools may lower it

// Emergency stop for set-ups whose capture sequences explode (dozens of queens): once the wall clock
// passes searchDeadline (microseconds, as WallClockMicroseconds gives them; 0: none), the running
// iteration is abandoned: every node returns at once and nothing more is stored. The deadline lies far
// beyond any allotment, so games from real positions never meet it.
inline int64_t searchDeadline = 0;
inline bool searchAborted = false;
int64_t WallClockMicroseconds();

// Score of the current position searched `depth` plies deep within (alpha, beta), side to move's view.
int Search(int depth, int alpha, int beta);

// Score of the current position once its captures and promotions have been played out.
int Quiesce(int alpha, int beta);

}  // namespace vorlek
