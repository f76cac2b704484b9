// board/make_move.h — copy-make: a move is played on a copy of the current record, one record up.
#pragma once
#include <algorithm>

#include "board/move.h"
#include "board/move_effects.h"
#include "board/position.h"
#include "board/square_table.h"

namespace vorlek {

// The repetition count of a record with `key` and fifty-move count `fifty` standing at `record` on the
// stack: one more than that of the nearest record with the same key 2, 4, 6, ... plies below it, looking
// back no further than `fifty` plies (nor below the stack), or 0.
inline uint8_t RepetitionCount(uint64_t key, int fifty, const Position* record) {
  const int reach = std::min(fifty, StackIndex(record));
  for (int distance = 2; distance <= reach; distance += 2) {
    const Position& earlier = *(record - distance);
    if (earlier.key == key) return static_cast<uint8_t>(earlier.repetition + 1);
  }
  return 0;
}

namespace detail {

// The key changes of a move's parts (DescribeMove), for a mover with `side` to move.
struct KeyChanges {
  uint64_t key;            // the key, changed part by part
  const int side;          // WHITE or BLACK, before the move
  const uint8_t castling;  // rights held before the move
  const uint8_t epFile;    // before the move

  int OwnTag() const { return side ^ WHITE_PIECE; }  // colour tag of the mover's pieces in the square table
  void Move(int piece, int from, int to) {
    key ^= SquareTable.slots[piece | OwnTag()][from].key ^ SquareTable.slots[piece | OwnTag()][to].key;
  }
  void Capture(int victim, int square) { key ^= SquareTable.slots[victim | side][Mirror(square)].key; }
  void EnPassant(int from, int to) {
    Move(PAWN, from, to);
    key ^= SquareTable.slots[PAWN | side][Mirror(to - 8)].key;
  }
  void Castle(bool kingSide, int, int) {
    const CastlingSquares c = CastlingSquaresOf(kingSide);
    Move(KING, c.kingFrom, c.kingTo);
    Move(ROOK, c.rookFrom, c.rookTo);
  }
  void Promote(int piece, int from, int to) {
    key ^= SquareTable.slots[PAWN | OwnTag()][from].key ^ SquareTable.slots[piece | OwnTag()][to].key;
  }
  void EnPassantFile(int file) {
    if (epFile != EP_NONE) key ^= SquareTable.epKeys[epFile];
    if (file != EP_NONE) key ^= SquareTable.epKeys[file];
  }
  void LoseRights(uint8_t rights) { key ^= CastlingRightsKey(rights & castling, side >> 3); }
  void Clock(MoveClock) {}
};

// The changes of material and square values of a move's parts, in the mover's view.
struct ScoreChanges {
  int delta = 0;

  void Move(int piece, int from, int to) {
    delta += SquareTable.slots[piece][to].value - SquareTable.slots[piece][from].value;
  }
  void Capture(int victim, int square) { delta += SquareTable.slots[victim][Mirror(square)].value; }
  void EnPassant(int from, int to) {
    Move(PAWN, from, to);
    delta += SquareTable.slots[PAWN][Mirror(to - 8)].value;
  }
  // The rook's square values on a1, d1, f1 and h1 are equal: only the king's move counts.
  void Castle(bool kingSide, int, int) {
    const CastlingSquares c = CastlingSquaresOf(kingSide);
    Move(KING, c.kingFrom, c.kingTo);
  }
  void Promote(int piece, int from, int to) {
    delta += SquareTable.slots[piece][to].value - SquareTable.slots[PAWN][from].value;
  }
  void EnPassantFile(int) {}
  void LoseRights(uint8_t) {}
  void Clock(MoveClock) {}
};

// Applies a move's parts to a record: its bitboards, rights, counters, and with the two above its key
// and score.
struct BoardEffects {
  explicit BoardEffects(Position& record) : p(record), keys{record.key, record.side, record.castling, record.epFile} {}

  Position& p;
  KeyChanges keys;
  ScoreChanges score;
  MoveClock clock = MoveClock::COUNT;

  void TogglePlanes(int code, Bitboard squares) {
    if (code & 1) p.type0 ^= squares;
    if (code & 2) p.type1 ^= squares;
    if (code & 4) p.type2 ^= squares;
  }
  void Move(int piece, int from, int to) {
    const Bitboard squares = SquareBit(from) | SquareBit(to);
    p.own ^= squares;
    TogglePlanes(piece, squares);
    keys.Move(piece, from, to);
    score.Move(piece, from, to);
  }
  void Capture(int victim, int square) {
    const Bitboard bit = SquareBit(square);
    p.type0 &= ~bit;
    p.type1 &= ~bit;
    p.type2 &= ~bit;
    keys.Capture(victim, square);
    score.Capture(victim, square);
  }
  void EnPassant(int from, int to) {
    const Bitboard squares = SquareBit(from) | SquareBit(to);
    p.own ^= squares;
    p.type0 ^= squares | SquareBit(to - 8);
    keys.EnPassant(from, to);
    score.EnPassant(from, to);
  }
  void Castle(bool kingSide, int from, int to) {
    const CastlingSquares c = CastlingSquaresOf(kingSide);
    const Bitboard king = SquareBit(from) | SquareBit(to), rook = SquareBit(c.rookFrom) | SquareBit(c.rookTo);
    p.own ^= king | rook;
    p.type1 ^= king;
    p.type2 ^= king | rook;
    keys.Castle(kingSide, from, to);
    score.Castle(kingSide, from, to);
  }
  void Promote(int piece, int from, int to) {
    const Bitboard target = SquareBit(to);
    p.own ^= SquareBit(from) | target;
    p.type0 ^= SquareBit(from);
    if (piece & 1) p.type0 |= target;
    if (piece & 2) p.type1 |= target;
    if (piece & 4) p.type2 |= target;
    keys.Promote(piece, from, to);
    score.Promote(piece, from, to);
  }
  void EnPassantFile(int file) {
    keys.EnPassantFile(file);
    p.epFile = static_cast<uint8_t>(file);
  }
  void LoseRights(uint8_t rights) {
    keys.LoseRights(rights);
    p.castling &= static_cast<uint8_t>(~rights);
  }
  void Clock(MoveClock c) {
    clock = c;
    p.fifty = c == MoveClock::RESET ? 0 : static_cast<uint8_t>(p.fifty + 1);
    p.repetition = 0;
  }
  // The key and score, once every part has been applied.
  void Finish() {
    p.key = keys.key;
    p.score = static_cast<int16_t>(p.score + score.delta);
  }
};

}  // namespace detail

// Plays `move` onto the record after `current` and makes it current, seen from the new side to move.
// The move is trusted: only generated, book and remembered moves are passed. A value that is no kind of
// move pushes an unchanged copy, with the same side to move.
inline void MakeMove(Move move) {
  // The new record is built in a local copy and written once: changing the record in place right
  // after copying it makes the processor wait for its own stores.
  Position p = *current;
  detail::BoardEffects effects{p};
  if (DescribeMove(move, effects)) {
    effects.Finish();
    FlipBoard(p);
    // Same position earlier, same side to move, within the plies the fifty counter covers.
    if (effects.clock == MoveClock::COUNT_AND_SCAN) p.repetition = RepetitionCount(p.key, p.fifty, current + 1);
  }
  *++current = p;
}

// Takes the last move back.
inline void TakeBack() { --current; }

}  // namespace vorlek
