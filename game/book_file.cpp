#include "game/book_file.h"

#include <cstring>

#include "game/line_reader.h"

namespace vorlek {

BookFileResult LoadBookFile(FILE* book) {
  std::memset(Aperture, 0, sizeof Aperture);
  BookFileResult result{};
  result.status = BookStatus::OK;
  bool newline;
  for (LineRead r; (r = ReadLine(book, result.line, newline)) != LineRead::END_OF_INPUT;) {
    ++result.lines;
    if (r == LineRead::TOO_LONG) {
      result.status = BookStatus::BAD_MOVE;
      result.lineTooLong = true;
      break;
    }
    const BookLineResult line = LoadBookLine(result.line);
    if (line.status != BookStatus::OK) {
      result.status = line.status;
      result.tokenStart = line.tokenStart;
      result.tokenLength = line.tokenLength;
      break;
    }
  }
  return result;
}

}  // namespace vorlek
