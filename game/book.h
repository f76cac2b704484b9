// game/book.h — the opening book table and the loader of one book line.
#pragma once
#include <cstdint>

#include "board/move.h"
#include "board/position.h"

namespace vorlek {

constexpr int BOOK_SIZE = 300;
constexpr int BOOK_SLOTS = 8;

struct BookEntry {
  uint64_t key;            // 0 marks a free entry
  Move moves[BOOK_SLOTS];  // used slots form a prefix; 0 marks an empty slot
};

inline BookEntry Aperture[BOOK_SIZE];

enum class BookStatus {
  OK,
  BAD_MOVE,    // a token is not a move of its position
  TABLE_FULL,  // a new position needs an entry and all are used
  ENTRY_FULL,  // a new move needs a slot and the entry's slots are used
};

struct BookLineResult {
  BookStatus status;
  int tokenStart;   // where the offending token starts in the line (on failure)
  int tokenLength;  // and how long it is
};

// Enters every move of one book line, played from the current position, into Aperture.
// The current position is the same afterwards, also when the line fails.
BookLineResult LoadBookLine(const char* text);

// The message the engine ends with for a failed line (with or without its newline).
const char* BookFailureMessage(BookStatus status);

// The entry for a position key, or null.
const BookEntry* FindBookEntry(uint64_t key);

// One of the moves of the position with this key, each used slot equally likely (the C library's rand(),
// never seeded, so a fresh run makes the same choices), or MOVE_NONE when the position is not in the book.
Move PickBookMove(uint64_t key);

// Book move or search, the rule of both front ends: while `useBook` is set, the book's move for p; the
// first position not in the book clears `useBook`, and the game stays out of the book until a new game,
// even where it comes back into it. MOVE_NONE: search.
Move NextBookMove(int& useBook, const Position& p);

}  // namespace vorlek
