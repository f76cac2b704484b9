// vorlek-book — loads an opening book with the engine's own loader and, where the engine would stop
// with its terse message, says which line and token stopped it and why.
//   vorlek-book check [FILE]
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "app/command_line.h"
#include "board/all_moves.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "board/position.h"
#include "game/book.h"
#include "game/book_file.h"
#include "game/game_state.h"
#include "game/line_reader.h"

using namespace vorlek;

namespace {

constexpr char DEFAULT_BOOK[] = "Aperture.txt";

constexpr ProgramText PROGRAM = {
    "vorlek-book",
    "usage: vorlek-book check [FILE] | --help | --version\n"
    "  Loads the opening book FILE (default \"Aperture.txt\") exactly as the engine does at start and\n"
    "  explains the line the engine would stop at: a token that is not a move of its position, a 301st\n"
    "  position, a 9th move in one position, or a line longer than 198 characters.\n"
    "  Exit status: 0 the engine loads the book, 1 it would stop, 2 usage error or unreadable file.\n"};

const char* const PIECE_NAMES[] = {"", "pawn", "knight", "bishop", "rook", "queen", "king", ""};

bool IsWellFormed(const char* token, int length) {
  int from, to;
  return length >= 4 && ReadMoveSquares(token, from, to);
}

const char* SideName(int side) { return side == WHITE ? "white" : "black"; }

// The move a well-formed token names in the current position, taken from the position's book entry:
// the loader has entered every token it made there.
Move EnteredMove(const char* token) {
  const BookEntry* entry = FindBookEntry(current->key);
  int from, to;
  if (!entry || !ReadMoveSquares(token, from, to)) return MOVE_NONE;
  from = ViewSquare(from, current->side);
  to = ViewSquare(to, current->side);
  for (Move move : entry->moves) {
    if (move && MoveFrom(move) == from && MoveTo(move) == to) return move;
  }
  return MOVE_NONE;
}

// Calls f(start, length) for every token of a line, up to `end` characters.
template <typename F>
void ForEachToken(const char* line, int end, F&& f) {
  for (int i = 0; i < end;) {
    while (i < end && line[i] == ' ') ++i;
    int length = 0;
    while (i + length < end && line[i + length] && line[i + length] != ' ') ++length;
    if (length == 0) break;
    f(i, length);
    i += length;
  }
}

// Plays the tokens of a line that the loader entered, up to character `end`; returns their number.
int ReplayEntered(const char* line, int end) {
  int plies = 0;
  ForEachToken(line, end, [&](int start, int) {
    const Move move = EnteredMove(line + start);
    if (move) MakeMove(move);
    ++plies;
  });
  return plies;
}

// Prints text in double quotes, control characters as \x escapes.
void PrintQuoted(const char* text, int length) {
  std::putchar('"');
  for (int i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c >= 32 && c < 127) {
      std::putchar(c);
    } else {
      std::printf("\\x%02x", c);
    }
  }
  std::putchar('"');
}

void ExplainBadMove(const char* token, int length) {
  if (!IsWellFormed(token, length)) {
    std::printf("not a move: a token starts with a from-square and a to-square (files a-h, ranks 1-8), such as e2e4");
    if (std::memchr(token, '\r', length)) std::printf("; the line holds a carriage return (DOS line ends?)");
    if (std::memchr(token, '\t', length)) std::printf("; only blanks separate tokens, not tabs");
    std::printf("\n");
    return;
  }
  const int side = current->side;
  int from, to;
  ReadMoveSquares(token, from, to);
  from = ViewSquare(from, side);
  const int piece = PieceAt(*current, from);
  std::printf("illegal move: %s is to move, and ", SideName(side));
  if (piece == EMPTY) {
    std::printf("%.2s is empty\n", token);
  } else if (!(current->own & SquareBit(from))) {
    std::printf("%.2s holds a %s %s (a line's moves alternate, white first)\n", token, SideName(side ^ BLACK),
                PIECE_NAMES[piece]);
  } else {
    std::printf("the %s %s on %.2s has no move to %.2s\n", SideName(side), PIECE_NAMES[piece], token, token + 2);
  }
}

void ExplainFullEntry() {
  const BookEntry* entry = FindBookEntry(current->key);
  std::printf("a new move, but this position already holds the %d moves it has room for:", BOOK_SLOTS);
  for (Move move : entry->moves) {
    char text[MOVE_TEXT_SIZE];
    MoveToText(text, move, current->side);
    if (text[4] == ' ') text[4] = '\0';
    std::printf(" %s", text);
  }
  std::printf("\n");
}

// Says why `result`'s line stops the engine; `result.line` holds that line as read.
void ExplainFailure(const char* path, const BookFileResult& result) {
  std::printf("%s:%d: ", path, result.lines);
  if (result.lineTooLong) {
    std::printf("line longer than %d characters: the engine cannot read it whole and counts it as a bad move\n",
                LINE_SIZE - 2);
    std::printf("  line begins: ");
    PrintQuoted(result.line, 60);
    std::printf("...\n");
  } else {
    const char* token = result.line + result.tokenStart;
    std::printf("token ");
    PrintQuoted(token, result.tokenLength);
    Position* const start = current;
    const int plies = ReplayEntered(result.line, result.tokenStart);
    std::printf(" (token %d of the line, column %d): ", plies + 1, result.tokenStart + 1);
    switch (result.status) {
      case BookStatus::BAD_MOVE: ExplainBadMove(token, result.tokenLength); break;
      case BookStatus::TABLE_FULL:
        std::printf("a new position, but all %d entries of the table are taken by other positions\n", BOOK_SIZE);
        break;
      case BookStatus::ENTRY_FULL: ExplainFullEntry(); break;
      case BookStatus::OK: break;
    }
    current = start;
    std::printf("  line: ");
    PrintQuoted(result.line, static_cast<int>(std::strlen(result.line)));
    std::printf("\n");
  }
  const char* message = BookFailureMessage(result.status);
  const int messageLength = static_cast<int>(std::strcspn(message, "\n"));
  std::printf("The engine would end with: \"%.*s\"\n", messageLength, message);
}

// The engine trusts its book and enters a move that leaves the mover's king attacked; say where.
// Every line of the file has loaded, so each of its tokens stands in the entry of its position.
int WarnKingLeftInCheck(const char* path, FILE* book) {
  std::rewind(book);
  char line[LINE_SIZE];
  bool newline;
  int warnings = 0;
  for (int number = 1; ReadLine(book, line, newline) != LineRead::END_OF_INPUT; ++number) {
    Position* const start = current;
    ForEachToken(line, LINE_SIZE, [&](int tokenStart, int length) {
      const Move move = EnteredMove(line + tokenStart);
      if (!move) return;
      if (!IsLegalMove(move)) {
        std::printf("%s:%d: warning: token ", path, number);
        PrintQuoted(line + tokenStart, length);
        std::printf(" leaves the %s king attacked; the engine enters it all the same\n", SideName(current->side));
        ++warnings;
      }
      MakeMove(move);
    });
    current = start;
  }
  return warnings;
}

void PrintStatistics(const char* path, int lines) {
  int positions = 0;
  int fullest = 0;
  for (const BookEntry& entry : Aperture) {
    if (!entry.key) continue;
    ++positions;
    int used = 0;
    while (used < BOOK_SLOTS && entry.moves[used]) ++used;
    if (used > fullest) fullest = used;
  }
  std::printf("%s: the engine loads this book\n", path);
  std::printf("  lines read:     %d\n", lines);
  std::printf("  positions used: %d of %d\n", positions, BOOK_SIZE);
  std::printf("  positions free: %d\n", BOOK_SIZE - positions);
  std::printf("  fullest entry:  %d of %d moves\n", fullest, BOOK_SLOTS);
}

int Check(const char* path) {
  FILE* book = std::fopen(path, "r");
  if (!book) {
    std::printf("vorlek-book: cannot open %s: %s\n", path, std::strerror(errno));
    return 2;
  }
  InitTables();
  current = PositionStack;
  *current = InitialPosition();
  const BookFileResult result = LoadBookFile(book);
  if (std::ferror(book)) {
    std::printf("vorlek-book: cannot read %s: %s\n", path, std::strerror(errno));
    std::fclose(book);
    return 2;
  }
  if (result.status != BookStatus::OK) {
    std::fclose(book);
    ExplainFailure(path, result);
    return 1;
  }
  WarnKingLeftInCheck(path, book);
  std::fclose(book);
  PrintStatistics(path, result.lines);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (const auto status = AnswerCommonOptions(argc, argv, PROGRAM, {"-h"})) return *status;
  if (argc == 2 && std::strcmp(argv[1], "-h") == 0) {
    std::fputs(PROGRAM.usage, stdout);
    return 0;
  }
  if (argc < 2 || argc > 3 || std::strcmp(argv[1], "check") != 0) return UsageError(PROGRAM);
  return Check(argc == 3 ? argv[2] : DEFAULT_BOOK);
}
