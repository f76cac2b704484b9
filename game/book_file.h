// game/book_file.h — fills the opening book table from a book file, one variation per line.
#pragma once
#include <cstdio>

#include "game/book.h"
#include "game/line_reader.h"

namespace vorlek {

struct BookFileResult {
  BookStatus status;  // OK when every line was entered
  bool lineTooLong;   // the failing line had more than LINE_SIZE - 2 characters
  int lines;          // lines read, the failing one included
  int tokenStart;     // the offending token within `line` (on failure, not for a long line)
  int tokenLength;
  char line[LINE_SIZE];  // the last line read (the beginning of a long line)
};

// Clears Aperture and enters every line of `book` with LoadBookLine, from the current position,
// stopping at the first line that fails. A line longer than the line buffer counts as a bad move.
BookFileResult LoadBookFile(FILE* book);

}  // namespace vorlek
