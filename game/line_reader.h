// game/line_reader.h — reads one input line into a LINE_SIZE buffer, the way the command loop and
// the book loader both read their lines.
#pragma once
#include <cstdio>

namespace vorlek {

constexpr int LINE_SIZE = 200;  // 198 characters, the newline and the terminator

enum class LineRead { END_OF_INPUT, LINE, TOO_LONG };

// Reads one line without its newline into `line` (LINE_SIZE bytes). A line of more than
// LINE_SIZE - 2 characters is read to its end and reported as TOO_LONG, its beginning kept.
// Input that ends in the middle of a line gives that line. `newline` tells whether one ended it.
LineRead ReadLine(FILE* in, char* line, bool& newline);

}  // namespace vorlek
