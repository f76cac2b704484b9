// Fuzz target: the book loader on arbitrary lines. Each input is a book file: its lines, cut at 198
// characters as the engine's line reader keeps them, are loaded one after another into an empty
// table from the initial position, until the first line that fails (where the engine would end).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "board/init_tables.h"
#include "board/position.h"
#include "game/book.h"
#include "game/line_reader.h"

using namespace vorlek;

namespace {

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "invariant broken: %s\n", what);
  std::abort();
}

// Used entries and used slots form prefixes; no move twice in an entry; every used entry has a move;
// no key in two entries.
void CheckTable() {
  static uint64_t keys[BOOK_SIZE];
  int used = 0;
  for (const BookEntry& entry : Aperture) {
    if (entry.key == 0) continue;
    if (&entry != &Aperture[used]) Fail("a used entry after a free one");
    keys[used++] = entry.key;
    if (entry.moves[0] == MOVE_NONE) Fail("a used entry without moves");
    for (int i = 1; i < BOOK_SLOTS; ++i) {
      if (entry.moves[i] != MOVE_NONE && entry.moves[i - 1] == MOVE_NONE) Fail("a used slot after a free one");
      for (int j = 0; j < i; ++j) {
        if (entry.moves[i] != MOVE_NONE && entry.moves[i] == entry.moves[j]) Fail("a move twice in one entry");
      }
    }
  }
  std::sort(keys, keys + used);
  if (std::adjacent_find(keys, keys + used) != keys + used) Fail("a key in two entries");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  InitTables();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::memset(Aperture, 0, sizeof Aperture);
  current = PositionStack;
  *current = InitialPosition();
  const Position start = *current;

  const char* text = reinterpret_cast<const char*>(data);
  const char* end = text + size;
  while (text < end) {
    const char* newline = static_cast<const char*>(std::memchr(text, '\n', static_cast<size_t>(end - text)));
    const char* lineEnd = newline ? newline : end;
    char line[LINE_SIZE];
    const size_t length = std::min<size_t>(static_cast<size_t>(lineEnd - text), LINE_SIZE - 2);
    std::memcpy(line, text, length);
    line[length] = '\0';
    text = newline ? newline + 1 : end;

    const BookLineResult result = LoadBookLine(line);
    if (current != PositionStack || std::memcmp(current, &start, sizeof start) != 0) {
      Fail("the loader did not restore the current position");
    }
    if (result.status != BookStatus::OK) {
      // The token reported lies inside the line (it is printed from there).
      const size_t kept = std::strlen(line);
      if (result.tokenStart < 0 || result.tokenLength < 0 ||
          static_cast<size_t>(result.tokenStart) + static_cast<size_t>(result.tokenLength) > kept) {
        Fail("the failing token lies outside the line");
      }
      if (BookFailureMessage(result.status)[0] == '\0') Fail("a failure without a message");
      break;
    }
  }
  CheckTable();
  return 0;
}
