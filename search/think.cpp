#include "search/think.h"

#include <sys/time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "board/all_moves.h"
#include "board/history.h"
#include "board/make_move.h"
#include "board/movegen.h"
#include "game/book.h"
#include "game/game_state.h"
#include "search/hash_table.h"
#include "search/search.h"

namespace vorlek {

namespace {

constexpr int64_t EMERGENCY_STOP_MINIMUM = 10000000;  // microseconds

Move BookMove() {
  const BookEntry* entry = FindBookEntry(current->key);
  // An entry without moves (a free entry matching a zero key) is no book position.
  if (!entry || entry->moves[0] == MOVE_NONE) return MOVE_NONE;
  int slot;
  do {
    slot = std::rand() % BOOK_SLOTS;
  } while (entry->moves[slot] == MOVE_NONE);
  return entry->moves[slot];
}

int64_t ElapsedMicroseconds(const timeval& start) {
  timeval now;
  gettimeofday(&now, nullptr);
  int64_t seconds = now.tv_sec - start.tv_sec;
  int64_t micros = now.tv_usec - start.tv_usec;
  if (micros < 0) {
    --seconds;
    micros += 1000000;
  }
  return seconds * 1000000 + micros;
}

int64_t IterationDivisor(int64_t budget) {
  if (budget < 15000000) return 4;
  if (budget < 30000000) return 6;
  if (budget < 60000000) return 8;
  if (budget < 120000000) return 10;
  if (budget < 300000000) return 12;
  if (budget < 600000000) return 15;
  if (budget < 1200000000) return 18;
  return 25;
}

}  // namespace

void MoveToText(char* text, Move move, const Position& position) {
  const int squares[2] = {MoveFrom(move), MoveTo(move)};
  for (int i = 0; i < 2; ++i) {
    const int rank = squares[i] / 8;
    text[2 * i] = static_cast<char>('a' + squares[i] % 8);
    text[2 * i + 1] = static_cast<char>('1' + (position.side == WHITE ? rank : 7 - rank));
  }
  static const char PROMOTION_LETTERS[8] = {' ', ' ', 'n', 'b', 'r', 'q', ' ', ' '};
  text[4] = PROMOTION_LETTERS[PromotionPiece(move)];
  text[5] = '\0';
}

TimeAllotment ComputeTimeAllotment(int levelMoves, int engineTime, int opponentTime, int ply, int side) {
  TimeAllotment t{};
  const int64_t fullMoves = ply / 2;
  if (levelMoves > 0) {
    t.movesToGo = levelMoves - fullMoves % levelMoves;
  } else if (ply < 102) {
    // A negative count from a malformed "level" is taken as a whole-game control.
    t.movesToGo = 60 - fullMoves;
  } else {
    t.movesToGo = 10;
  }
  const int64_t E = int64_t{engineTime} * 10000, O = int64_t{opponentTime} * 10000;
  if (side == WHITE) {
    t.budget = engineTime > opponentTime ? E - O + O / t.movesToGo : E / t.movesToGo;
  } else {
    t.budget = E - E / t.movesToGo > O ? E - O : E / t.movesToGo;
  }
  t.iterationLimit = t.budget / IterationDivisor(t.budget);
  return t;
}

void FormatThinkingLine(char* line, size_t size, int depth, int score, int64_t elapsed, uint64_t nodeCount) {
  std::snprintf(line, size, "%3d%8d%5d%02d%12ld%s", depth, score, static_cast<int>(elapsed / 1000000),
                static_cast<int>(elapsed % 1000000 / 10000), static_cast<long>(nodeCount), " ");
}

int SearchIteration(int depth) {
  nodes = 0;
  return Search(depth, -(MATE_SCORE + depth), MATE_SCORE + depth);
}

void AppendPrincipalVariation(char* text, size_t size, int maxMoves) {
  Position* const root = current;
  size_t length = std::strlen(text);
  for (int made = 0; made < maxMoves; ++made) {
    const Move move = ProbeHashMove(current->key);
    if (!move) break;
    // A walk that would leave the stack, or a move that does not fit the position, ends the line.
    if (StackIndex(current) + 1 >= POSITION_STACK_SIZE || !IsGeneratedMove(*current, move)) break;
    char moveText[6];
    MoveToText(moveText, move, *current);
    const int n = std::snprintf(text + length, size - length, "%s%s", moveText, " ");
    if (n < 0 || static_cast<size_t>(n) >= size - length) break;
    length += static_cast<size_t>(n);
    MakeMove(move);
  }
  current = root;
}

Move RootMove() {
  const Move stored = ProbeHashMove(current->key);
  if (stored && IsGeneratedMove(*current, stored) && IsLegalMove(stored)) return stored;
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  for (int i = 0; i < list.count; ++i) {
    if (IsLegalMove(list.moves[i])) return list.moves[i];
  }
  return MOVE_NONE;
}

Move IterativeDeepening(int levelMoves, int engineTime, int opponentTime) {
  const TimeAllotment allotment = ComputeTimeAllotment(levelMoves, engineTime, opponentTime, GamePly(), current->side);
  timeval start;
  gettimeofday(&start, nullptr);
  searchDepth = searchDepth <= 3 ? 1 : searchDepth - 3;
  // Only an exploding set-up can run this long: ten times the allotment, and at least ten seconds. Nor is
  // an iteration let run the engine's clock out: it is abandoned once it has used four fifths of it.
  int64_t stopAfter = std::max<int64_t>(10 * allotment.budget, EMERGENCY_STOP_MINIMUM);
  const int64_t clock = int64_t{engineTime} * 10000;
  if (clock > 0) stopAfter = std::min(stopAfter, clock * 4 / 5);
  searchDeadline = WallClockMicroseconds() + stopAfter;
  searchAborted = false;
  for (;;) {
    const int score = SearchIteration(searchDepth);
    if (searchAborted) break;  // an abandoned iteration has no score and prints no line
    const int64_t elapsed = ElapsedMicroseconds(start);
    char line[512];
    FormatThinkingLine(line, sizeof line, searchDepth, score, elapsed, nodes);
    AppendPrincipalVariation(line, sizeof line, searchDepth);
    if (logFile) {
      std::fprintf(logFile, "%s\n", line);
      std::fflush(logFile);
    }
    std::fprintf(engineOut, "%s\n", line);
    std::fflush(engineOut);
    ++searchDepth;
    const bool mate = score < -14999 || score > 14999;
    if (elapsed >= allotment.iterationLimit || searchDepth > maxSearchDepth || mate) break;
  }
  searchDeadline = 0;
  searchAborted = false;
  std::fprintf(engineOut, "\n");
  std::fflush(engineOut);
  return RootMove();
}

bool Think(char* moveText) {
  KeepRoomAboveHistory();
  Move move = MOVE_NONE;
  if (useBook) {
    move = BookMove();
    if (!move) useBook = 0;
  }
  if (!move) move = IterativeDeepening(levelMoves, engineTime, opponentTime);
  if (!move) return false;
  MoveToText(moveText, move, *current);
  WriteLog("Vorlek: %s\n", moveText);
  MakeMove(move);
  return true;
}

}  // namespace vorlek
