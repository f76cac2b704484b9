#include "game/line_reader.h"

namespace vorlek {

LineRead ReadLine(FILE* in, char* line, bool& newline) {
  int length = 0;
  bool tooLong = false;
  int c;
  newline = false;
  while ((c = std::getc(in)) != EOF) {
    if (c == '\n') {
      newline = true;
      break;
    }
    if (length < LINE_SIZE - 2) {
      line[length++] = static_cast<char>(c);
    } else {
      tooLong = true;
    }
  }
  line[length] = '\0';
  if (c == EOF && length == 0 && !tooLong) return LineRead::END_OF_INPUT;
  return tooLong ? LineRead::TOO_LONG : LineRead::LINE;
}

}  // namespace vorlek
