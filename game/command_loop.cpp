#include "game/command_loop.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>

#include "board/fen.h"
#include "board/init_tables.h"
#include "board/notation.h"
#include "board/position.h"
#include "board/user_move.h"
#include "game/book.h"
#include "game/book_file.h"
#include "game/console_board.h"
#include "game/engine_move.h"
#include "game/game_end.h"
#include "game/game_state.h"
#include "game/line_reader.h"
#include "game/new_game.h"

namespace vorlek {

namespace {

constexpr char FEATURE_LINE[] =
    "feature setboard=1 playother=1 sigint=0 analyze=0 colors=0 time=1 myname=\"Vorlek\" done=1";

// Reads the numbers of a line the way the C library's scanf does for a format made of literal
// characters, blanks (any run of white space, also none) and %d; numbers beyond the range of an int
// saturate. Returns how many numbers were read before the first mismatch.
int ScanNumbers(const char* line, const char* format, int* numbers) {
  int read = 0;
  const char* s = line;
  for (const char* f = format; *f; ++f) {
    if (*f == ' ') {
      while (*s == ' ' || (*s >= '\t' && *s <= '\r')) ++s;
    } else if (f[0] == '%' && f[1] == 'd') {
      ++f;
      while (*s == ' ' || (*s >= '\t' && *s <= '\r')) ++s;
      bool negative = false;
      if (*s == '+' || *s == '-') negative = *s++ == '-';
      if (*s < '0' || *s > '9') return read;
      long long value = 0;
      for (; *s >= '0' && *s <= '9'; ++s) {
        if (value <= INT_MAX) value = value * 10 + (*s - '0');
      }
      value = negative ? -value : value;
      numbers[read++] = static_cast<int>(value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : value);
    } else {
      if (*s != *f) return read;
      ++s;
    }
  }
  return read;
}

// Plain byte order, as strcmp compares: strictly between the two bounds.
bool InRange(const char* line, const char* lower, const char* upper) {
  return std::strcmp(line, lower) > 0 && std::strcmp(line, upper) < 0;
}

bool IsAcceptedFeature(const char* line) {
  static const char* const ACCEPTED[] = {
      "accepted setboard", "accepted playother", "accepted sigint", "accepted analyze",
      "accepted colors",   "accepted time",      "accepted myname", "accepted done",
  };
  for (const char* accepted : ACCEPTED) {
    if (std::strcmp(line, accepted) == 0) return true;
  }
  return false;
}

// Returns false when the run must end (the input ended before the handshake was complete, or it failed).
bool Handshake(FILE* in, FILE* out) {
  char line[LINE_SIZE];
  bool newline;
  LineRead r = ReadLine(in, line, newline);
  if (r == LineRead::END_OF_INPUT) return false;
  const bool firstRight = r == LineRead::LINE && newline && std::strcmp(line, "xboard") == 0;
  r = ReadLine(in, line, newline);
  if (r == LineRead::END_OF_INPUT) return false;
  // The second line is compared with its newline, as it was read.
  char withNewline[LINE_SIZE + 1];
  std::snprintf(withNewline, sizeof withNewline, "%s%s", line, newline ? "\n" : "");
  const bool secondRight =
      r == LineRead::LINE && std::strcmp(withNewline, "protover 2") >= 0 && std::strcmp(withNewline, "protover z") <= 0;
  std::fprintf(out, "%s\n", FEATURE_LINE);
  std::fflush(out);
  if (!firstRight || !secondRight) {
    std::fprintf(out, "Errore nell'inizializzatione di XBoard");
    std::fflush(out);
    return false;
  }
  return true;
}

// Standard error, which no interface reads as protocol, says what the designed messages leave out: which
// folder the engine works in (interfaces often start engines in a folder of their own choosing), and what
// exactly is wrong with a book or a log.
struct WorkingFolder {
  char path[4096];
  WorkingFolder() {
    if (!getcwd(path, sizeof path)) std::snprintf(path, sizeof path, "%s", "(sconosciuta)");
  }
};

void ExplainMissingBook() {
  std::fprintf(stderr,
               "vorlek: Aperture.txt non trovato nella cartella di lavoro %s: avviare il motore nella cartella che "
               "contiene Aperture.txt (la compilazione ne mette una copia accanto all'eseguibile) o copiarvelo\n",
               WorkingFolder().path);
  std::fflush(stderr);
}

const char* BookFailureReason(const BookFileResult& result) {
  if (result.lineTooLong) return "la riga supera i 198 caratteri";
  switch (result.status) {
    case BookStatus::BAD_MOVE: return "non è una mossa della posizione a cui arriva la riga";
    case BookStatus::TABLE_FULL: return "porta a una posizione nuova, ma il libro ne tiene al più 300";
    case BookStatus::ENTRY_FULL: return "è la nona mossa diversa della stessa posizione, ma il libro ne tiene al più 8";
    case BookStatus::OK: break;
  }
  return "";
}

void ExplainBadBook(const BookFileResult& result) {
  const WorkingFolder folder;
  std::fprintf(stderr, "vorlek: %s/Aperture.txt, riga %d", folder.path, result.lines);
  if (!result.lineTooLong) {
    std::fprintf(stderr, ", mossa \"");
    for (int i = 0; i < result.tokenLength; ++i) {
      const unsigned char c = static_cast<unsigned char>(result.line[result.tokenStart + i]);
      if (c >= 32 && c < 127) {
        std::fputc(c, stderr);
      } else {
        std::fprintf(stderr, "\\x%02x", c);
      }
    }
    std::fprintf(stderr, "\"");
  }
  std::fprintf(stderr, ": %s; i dettagli con: vorlek-book check %s/Aperture.txt\n", BookFailureReason(result),
               folder.path);
  std::fflush(stderr);
}

// Returns false when the book is missing or a line of it is bad; the message has been printed.
bool LoadBook(FILE* out) {
  FILE* book = std::fopen("Aperture.txt", "r");
  if (!book) {
    std::fprintf(out, "File delle aperture non trovato!\n");
    std::fflush(out);
    ExplainMissingBook();
    return false;
  }
  const BookFileResult result = LoadBookFile(book);
  std::fclose(book);
  if (result.status != BookStatus::OK) {
    std::fprintf(out, "%s", BookFailureMessage(result.status));
    std::fflush(out);
    ExplainBadBook(result);
    return false;
  }
  return true;
}

// The game goes on without a log when it cannot be written; standard error says so once.
FILE* OpenLog() {
  FILE* log = std::fopen("partita.log", "w");
  if (!log) {
    std::fprintf(stderr,
                 "vorlek: non posso scrivere partita.log nella cartella di lavoro %s (%s): la partita non viene "
                 "registrata\n",
                 WorkingFolder().path, std::strerror(errno));
    std::fflush(stderr);
  }
  return log;
}

void OpponentMove(FILE* out, const char* line) {
  switch (ReadUserMove(line)) {
    case MOVE_OK:
      WriteLog("Avversario: %s\n", line);
      gameResult = CheckGameEnd();
      if (gameResult != RESULT_NONE) PrintResult(gameResult);
      break;
    case MOVE_NOT_FOUND:
      std::fprintf(out, "Illegal move(Pezzo non di turno o casa vuota o casa di destinazione non valida): %s\n", line);
      break;
    case MOVE_BAD_PROMOTION: std::fprintf(out, "Illegal move(Valore promozione errato): %s\n", line); break;
    case MOVE_LEAVES_CHECK: std::fprintf(out, "Illegal move(Lasciato re sotto scacco): %s\n", line); break;
  }
  std::fflush(out);
}

// Acts on one command line; returns true on "quit".
bool Execute(FILE* out, char* line, LineRead read) {
  int numbers[4];
  if (read == LineRead::TOO_LONG) {
    std::fprintf(out, "Error(comando non previsto): %s\n", line);
    std::fflush(out);
  } else if (std::strcmp(line, "new") == 0) {
    NewGame();
    ResetClocks();
    engineSide = BLACK;
    gameResult = RESULT_NONE;
  } else if (std::strcmp(line, "undo") == 0) {
  } else if (InRange(line, "setboard  ", "setboard z")) {
    NewGame();
    ResetClocks();
    SetBoard(*current, line + 9);
  } else if (std::strcmp(line, "draw") == 0) {
  } else if (std::strcmp(line, "force") == 0) {
    engineSide = SIDE_NONE;
  } else if (std::strcmp(line, "go") == 0) {
    engineSide = current->side;
  } else if (std::strcmp(line, "quit") == 0) {
    return true;
  } else if (InRange(line, "time  ", "time a")) {
    if (ScanNumbers(line, "time %d", numbers) == 1) engineTime = numbers[0];
  } else if (InRange(line, "otim  ", "otim a")) {
    if (ScanNumbers(line, "otim %d", numbers) == 1) opponentTime = numbers[0];
  } else if (std::strcmp(line, "remove") == 0) {
  } else if (std::strcmp(line, "post") == 0) {
  } else if (std::strcmp(line, "nopost") == 0) {
  } else if (InRange(line, "level  ", "level a")) {
    // "level MOVES BASE INC" or "level MOVES MIN:SEC INC": only the moves per control are kept, and
    // both forms begin with them, so the first number read is the one stored.
    if (ScanNumbers(line, "level %d %d %d", numbers) >= 1) levelMoves = numbers[0];
  } else if (int from, to; ReadMoveSquares(line, from, to)) {
    OpponentMove(out, line);
  } else if (IsAcceptedFeature(line)) {
  } else {
    std::fprintf(out, "Error(comando non previsto): %s\n", line);
    std::fflush(out);
  }
  return false;
}

// After every line: the engine moves when it is its turn and the game goes on.
void CommonTail(FILE* out, char* line) {
  if (gameResult == RESULT_NONE && current->side == engineSide) {
    // With no legal move the engine makes none; the result of the position is announced instead.
    if (Think(line)) {
      std::fprintf(out, "move %s\n", line);
      std::fflush(out);
    }
    gameResult = CheckGameEnd();
    if (gameResult != RESULT_NONE) PrintResult(gameResult);
  }
}

}  // namespace

int RunEngine(FILE* in, FILE* out, bool consoleMode) {
  engineOut = out;
  if (consoleMode) {
    std::fprintf(out, "Comando: ");
  } else if (!Handshake(in, out)) {
    return 0;
  }
  InitTables();
  NewGame();
  ResetClocks();
  if (!LoadBook(out)) return 0;
  logFile = OpenLog();
  engineSide = SIDE_NONE;
  gameResult = RESULT_NONE;

  char commandLine[LINE_SIZE];
  for (;;) {
    bool newline;
    const LineRead read = ReadLine(in, commandLine, newline);
    if (read == LineRead::END_OF_INPUT) break;
    const bool quit = Execute(out, commandLine, read);
    CommonTail(out, commandLine);
    if (consoleMode) ShowBoard();
    if (quit) break;
  }
  std::fflush(out);
  if (logFile) std::fclose(logFile);
  logFile = nullptr;
  return 0;
}

}  // namespace vorlek
