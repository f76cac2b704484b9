#include "game/book.h"

#include <cstdlib>

#include "board/all_moves.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "board/position.h"

namespace vorlek {

namespace {

// The move of the current position that a token names, or MOVE_NONE. Only the first four characters
// count; the promotion piece is not compared, so a promotion takes the first generated, the queen.
Move FindTokenMove(const char* token, int length) {
  int from, to;
  if (length < 4 || !ReadMoveSquares(token, from, to)) return MOVE_NONE;
  return FindGeneratedMove(*current, ViewSquare(from, current->side), ViewSquare(to, current->side), ANY_PROMOTION);
}

BookEntry* EntryForKey(uint64_t key) {
  for (auto& entry : Aperture) {
    if (entry.key == key) return &entry;
  }
  for (auto& entry : Aperture) {
    if (entry.key == 0) {
      entry.key = key;
      return &entry;
    }
  }
  return nullptr;
}

BookStatus Enter(Move move) {
  BookEntry* entry = EntryForKey(current->key);
  if (!entry) return BookStatus::TABLE_FULL;
  for (Move& slot : entry->moves) {
    if (slot == move) return BookStatus::OK;
    if (slot == MOVE_NONE) {
      slot = move;
      return BookStatus::OK;
    }
  }
  return BookStatus::ENTRY_FULL;
}

}  // namespace

BookLineResult LoadBookLine(const char* text) {
  Position* const start = current;
  BookLineResult result{BookStatus::OK, 0, 0};
  int i = 0;
  for (;;) {
    while (text[i] == ' ') ++i;
    if (!text[i]) break;
    int length = 0;
    while (text[i + length] && text[i + length] != ' ') ++length;
    const Move move = FindTokenMove(text + i, length);
    result = {move ? Enter(move) : BookStatus::BAD_MOVE, i, length};
    if (result.status != BookStatus::OK) break;
    MakeMove(move);
    i += length;
  }
  current = start;
  return result;
}

const char* BookFailureMessage(BookStatus status) {
  switch (status) {
    case BookStatus::BAD_MOVE: return "Mossa di apertura non valida!\n";
    case BookStatus::TABLE_FULL: return "Errore nel vettore Aperture";
    case BookStatus::ENTRY_FULL: return "Errore nel vettore Aperture, ricerca mossa";
    case BookStatus::OK: break;
  }
  return "";
}

const BookEntry* FindBookEntry(uint64_t key) {
  for (const auto& entry : Aperture) {
    if (entry.key == key) return &entry;
  }
  return nullptr;
}

Move PickBookMove(uint64_t key) {
  const BookEntry* entry = FindBookEntry(key);
  // An entry without moves (a free entry matching a zero key) is no book position.
  if (!entry || entry->moves[0] == MOVE_NONE) return MOVE_NONE;
  int slot;
  do {
    slot = std::rand() % BOOK_SLOTS;
  } while (entry->moves[slot] == MOVE_NONE);
  return entry->moves[slot];
}

Move NextBookMove(int& useBook, const Position& p) {
  if (!useBook) return MOVE_NONE;
  const Move move = PickBookMove(p.key);
  if (!move) useBook = 0;
  return move;
}

}  // namespace vorlek
