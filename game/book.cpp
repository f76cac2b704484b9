#include "game/book.h"

#include "board/all_moves.h"
#include "board/make_move.h"
#include "board/position.h"

namespace vorlek {

namespace {

bool IsFile(char c) { return c >= 'a' && c <= 'h'; }
bool IsRank(char c) { return c >= '1' && c <= '8'; }

// The move of the current position that a token names, or MOVE_NONE. Only the first four
// characters count; the promotion piece is not compared, so a promotion takes the queen.
Move FindTokenMove(const char* token, int length) {
  if (length < 4 || !IsFile(token[0]) || !IsRank(token[1]) || !IsFile(token[2]) || !IsRank(token[3])) {
    return MOVE_NONE;
  }
  int from = (token[0] - 'a') + 8 * (token[1] - '1');
  int to = (token[2] - 'a') + 8 * (token[3] - '1');
  if (current->side == BLACK) {
    from = Mirror(from);
    to = Mirror(to);
  }
  FlatMoveList list;
  GenerateAllMoves(*current, list);
  for (int i = 0; i < list.count; ++i) {
    if (MoveFrom(list.moves[i]) == from && MoveTo(list.moves[i]) == to) return list.moves[i];
  }
  return MOVE_NONE;
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

}  // namespace vorlek
