#include "uci/uci_loop.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "board/history.h"
#include "board/init_tables.h"
#include "board/notation.h"
#include "board/position.h"
#include "game/book.h"
#include "search/bench.h"
#include "search/deepening.h"
#include "uci/uci_book.h"
#include "uci/uci_go.h"
#include "uci/uci_output.h"
#include "uci/uci_position.h"
#include "uci/uci_search.h"

namespace vorlek::uci {

namespace {

constexpr char ENGINE_NAME[] = "Vorlek";
constexpr char ENGINE_AUTHOR[] = "the Vorlek developers";

struct Options {
  bool ownBook = true;
  std::string bookFile = DEFAULT_BOOK_FILE;
};

class Session {
 public:
  explicit Session(std::string executableFolder) : executableFolder_(std::move(executableFolder)) {}

  // Acts on one line; false on "quit".
  bool Execute(const std::string& line);

  // The input has ended: a search that would end by itself still sends its move.
  void End() { search_.Finish(); }

 private:
  void Uci();
  void NewGame();
  void SetOption(const std::string& arguments);
  void Go(const std::string& arguments);
  void LoadBookIfChanged();

  std::string executableFolder_;
  Options options_;
  bool bookLoaded_ = false;  // the table holds the book the options name
  bool useBook_ = true;      // book moves are still looked for in this game
  SearchThread search_;
};

std::string Lowercase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

void Session::Uci() {
  Send("id name %s", ENGINE_NAME);
  Send("id author %s", ENGINE_AUTHOR);
  Send("option name OwnBook type check default true");
  Send("option name BookFile type string default %s", DEFAULT_BOOK_FILE);
  Send("uciok");
}

void Session::NewGame() {
  NewSearchGame();
  StartGame(InitialPosition());
  useBook_ = true;
}

// "setoption name NAME [value VALUE]"; names are compared without regard to case, the value kept as given.
void Session::SetOption(const std::string& arguments) {
  const size_t name = arguments.find("name ");
  if (name == std::string::npos) {
    Send("info string setoption without a name: %s", arguments.c_str());
    return;
  }
  const size_t value = arguments.find(" value ", name);
  std::string id = arguments.substr(name + 5, value == std::string::npos ? std::string::npos : value - name - 5);
  std::string text = value == std::string::npos ? "" : arguments.substr(value + 7);
  while (!id.empty() && id.back() == ' ') id.pop_back();
  while (!text.empty() && text.back() == ' ') text.pop_back();
  if (Lowercase(id) == "ownbook") {
    options_.ownBook = Lowercase(text) != "false";
    bookLoaded_ = false;
  } else if (Lowercase(id) == "bookfile") {
    options_.bookFile = text.empty() ? DEFAULT_BOOK_FILE : text;
    bookLoaded_ = false;
  } else {
    Send("info string no such option: %s", id.c_str());
  }
}

void Session::LoadBookIfChanged() {
  if (bookLoaded_) return;
  bookLoaded_ = true;
  if (!options_.ownBook) {
    ClearBook();
    return;
  }
  Send("info string %s", LoadBook(options_.bookFile, executableFolder_).c_str());
}

void Session::Go(const std::string& arguments) {
  LoadBookIfChanged();
  std::string ignored;
  const GoRequest request = ParseGo(arguments, ignored);
  if (!ignored.empty()) Send("info string go: ignored %s", ignored.c_str());
  KeepRoomAboveHistory();
  if (PlaysAGameMove(request) && options_.ownBook && useBook_) {
    const Move move = PickBookMove(current->key);
    if (move) {
      char text[MOVE_TEXT_SIZE];
      MoveToPlainText(text, move, current->side);
      Send("info string book move %s", text);
      Send("bestmove %s", text);
      return;
    }
    useBook_ = false;  // the game has left the book
  }
  search_.Start(LimitsFor(request, current->side, GamePly()), WaitsForStop(request), request.ponder);
}

bool Session::Execute(const std::string& line) {
  std::istringstream words(line);
  std::string command;
  words >> command;
  std::string arguments;
  std::getline(words >> std::ws, arguments);

  if (command == "uci") {
    Uci();
  } else if (command == "isready") {
    if (!search_.Running()) LoadBookIfChanged();
    Send("readyok");
  } else if (command == "ucinewgame") {
    search_.Stop();
    NewGame();
  } else if (command == "setoption") {
    search_.Stop();
    SetOption(arguments);
  } else if (command == "position") {
    search_.Stop();
    std::string problem;
    if (!SetPosition(arguments, problem)) Send("info string %s; the position stays as it was", problem.c_str());
  } else if (command == "go") {
    search_.Stop();
    Go(arguments);
  } else if (command == "stop") {
    search_.Stop();
  } else if (command == "ponderhit") {
    search_.PonderHit();
  } else if (command == "quit") {
    search_.Stop();
    return false;
  } else if (command == "debug" || command == "register" || command.empty()) {
  } else {
    Send("info string unknown command: %s", line.c_str());
  }
  return true;
}

// One line without its newline (and without a carriage return before it); false at the end of the input.
bool ReadLine(FILE* in, std::string& line) {
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
  NewSearchGame();
  StartGame(InitialPosition());
  Session session(executableFolder);
  std::string line;
  while (ReadLine(in, line) && session.Execute(line)) {
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
