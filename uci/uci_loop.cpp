#include "uci/uci_loop.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <vector>

#include "board/history.h"
#include "board/init_tables.h"
#include "board/notation.h"
#include "board/position.h"
#include "game/book.h"
#include "game/new_game.h"
#include "search/bench.h"
#include "search/deepening.h"
#include "search/hash_table.h"
#include "uci/uci_book.h"
#include "uci/uci_go.h"
#include "uci/uci_options.h"
#include "uci/uci_output.h"
#include "uci/uci_position.h"
#include "uci/uci_search.h"

namespace vorlek::uci {

namespace {

constexpr char ENGINE_NAME[] = "Vorlek";
constexpr char ENGINE_AUTHOR[] = "the Vorlek developers";

class Session {
 public:
  explicit Session(std::string executableFolder) : executableFolder_(std::move(executableFolder)) {}

  // Acts on one line; false on "quit".
  bool ExecuteUciCommand(const std::string& line);

  // The input has ended: a search that would end by itself still sends its move.
  void End() { search_.Finish(); }

 private:
  void Uci();
  void SetOption(const std::string& arguments);
  void Go(const std::string& arguments);
  void LoadBookIfChanged();

  std::string executableFolder_;
  Options options_;
  bool bookLoaded_ = false;  // the table holds the book the options name
  SearchThread search_;
};

void Session::Uci() {
  Send("id name %s", ENGINE_NAME);
  Send("id author %s", ENGINE_AUTHOR);
  for (const std::string& line : OptionLines()) Send("%s", line.c_str());
  Send("uciok");
}

void Session::SetOption(const std::string& arguments) {
  const SetOptionResult result = uci::SetOption(arguments, options_);
  if (!result.said.empty()) Send("info string %s", result.said.c_str());
  switch (result.set) {
    case OptionSet::HASH: SetHashTableSize(options_.hash); break;
    case OptionSet::CLEAR_HASH: ClearHashTable(); break;
    case OptionSet::OWN_BOOK:
    case OptionSet::BOOK_FILE: bookLoaded_ = false; break;
    case OptionSet::NOTHING:
    case OptionSet::PONDER:
    case OptionSet::MOVE_OVERHEAD:
    case OptionSet::MULTI_PV:
    case OptionSet::ANALYSE_MODE: break;
  }
}

void Session::LoadBookIfChanged() {
  if (bookLoaded_) return;
  bookLoaded_ = true;
  if (!options_.ownBook) {
    ClearBook();
    return;
  }
  Send("info string %s", SearchAndLoadBook(options_.bookFile, executableFolder_).c_str());
}

void Session::Go(const std::string& arguments) {
  LoadBookIfChanged();
  std::string ignored;
  const GoRequest request = ParseGo(arguments, ignored);
  if (!ignored.empty()) Send("info string go: ignored %s", ignored.c_str());
  KeepRoomAboveHistory();
  // The moves named after "searchmoves" that are legal here; none: every move.
  std::vector<Move> allowed;
  for (const std::string& text : request.searchMoves) {
    const Move move = LegalMoveNamed(text);
    if (move) {
      allowed.push_back(move);
    } else {
      Send("info string searchmoves: %s is not a legal move here", text.c_str());
    }
  }
  if (!request.searchMoves.empty() && allowed.empty()) {
    Send("info string searchmoves: no legal move named; every move is searched");
  }
  // The book answers game moves only: not in analysis, nor when the interface asks for several lines.
  if (PlaysAGameMove(request) && options_.ownBook && !options_.analyseMode && options_.multiPv == 1) {
    if (const Move move = NextBookMove(useBook, *current)) {
      char text[MOVE_TEXT_SIZE];
      MoveToPlainText(text, move, current->side);
      Send("info string book move %s", text);
      SendUnsearchedMove(move);
      Send("bestmove %s", text);
      return;
    }
  }
  SearchLimits limits = LimitsFor(request, current->side, GamePly(), options_.moveOverhead);
  limits.lines = options_.multiPv;
  limits.rootMoves = allowed.data();
  limits.rootMoveCount = static_cast<int>(allowed.size());
  search_.Start(limits, WaitsForStop(request), request.ponder);
}

bool Session::ExecuteUciCommand(const std::string& line) {
  std::istringstream words(line);
  std::string word;
  words >> word;
  std::string arguments;
  std::getline(words >> std::ws, arguments);

  const Command command = CommandOf(word);
  if (!RunsDuringSearch(command)) search_.Stop();
  switch (command) {
    case Command::UCI: Uci(); break;
    case Command::ISREADY:
      // Ready means that a search begun now runs at full speed: the table in use resident, the book loaded.
      if (!search_.Running()) {
        LoadBookIfChanged();
        MakeHashTableResident();
      }
      Send("readyok");
      break;
    case Command::UCINEWGAME: NewGame(); break;
    case Command::SETOPTION: SetOption(arguments); break;
    case Command::POSITION:
      if (std::string problem; !SetPosition(arguments, problem)) {
        Send("info string %s; the position stays as it was", problem.c_str());
      }
      break;
    case Command::GO: Go(arguments); break;
    case Command::STOP: search_.Stop(); break;
    case Command::PONDERHIT: search_.PonderHit(); break;
    case Command::QUIT: search_.Stop(); return false;
    case Command::DEBUG:
    case Command::REGISTER:
    case Command::NONE: break;
    case Command::UNKNOWN: Send("info string unknown command: %s", line.c_str()); break;
  }
  return true;
}

// One line of any length without its newline (and without a carriage return before it); false at the end
// of the input. A game's "position" line can be thousands of characters long.
bool ReadWholeLine(FILE* in, std::string& line) {
  line.clear();
  int c;
  while ((c = std::getc(in)) != EOF && c != '\n') line += static_cast<char>(c);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return c != EOF || !line.empty();
}

// The bench's iterations are not shown; only the total.
class Silent : public IterationListener {
 public:
  void Finished(const Iteration&) override {}
};

}  // namespace

int RunUci(FILE* in, FILE* out, const std::string& executableFolder) {
  SetOutput(out);
  InitTables();
  NewGame();
  Session session(executableFolder);
  std::string line;
  while (ReadWholeLine(in, line) && session.ExecuteUciCommand(line)) {
  }
  session.End();
  return 0;
}

int RunUciBench(FILE* out, int depth) {
  SetOutput(out);
  InitTables();
  Silent silent;
  const BenchResult result = RunBench(BenchPositions(), depth, silent);
  Send("%llu nodes %llu nps", static_cast<unsigned long long>(result.nodes),
       static_cast<unsigned long long>(result.seconds > 0 ? result.nodes / result.seconds : 0));
  return 0;
}

}  // namespace vorlek::uci
