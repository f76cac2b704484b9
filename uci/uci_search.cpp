#include "uci/uci_search.h"

#include <cstdlib>
#include <string>

#include "board/all_moves.h"
#include "board/attacks.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "board/position.h"
#include "search/evaluation.h"
#include "uci/uci_output.h"

namespace vorlek::uci {

namespace {

// A score as UCI writes it: centipawns, or mate in moves (negative when the engine is mated). A side mated
// at remaining depth d scores -(MATE_SCORE + d), so a mate score tells how many plies from the root the
// mated position stands.
int MatePlies(int score, int depth) {
  const int magnitude = std::abs(score);
  return magnitude < MATE_SCORE || magnitude > MATE_SCORE + depth ? -1 : depth - (magnitude - MATE_SCORE);
}

std::string ScoreText(int score, int depth) {
  const int plies = MatePlies(score, depth);
  if (plies < 0) return "cp " + std::to_string(score);
  return "mate " + std::to_string(score > 0 ? (plies + 1) / 2 : -(plies / 2));
}

// Whether the search scores the position on the stack as a draw at once (third occurrence, fifty moves).
bool DrawnAtOnce(const Position& p) { return p.repetition == 2 || p.fifty > 100 || (p.fifty == 100 && !InCheck(p)); }

}  // namespace

int ShownLength(const Iteration& it) {
  const int matePlies = MatePlies(it.score, it.depth);
  const int limit = matePlies < 0 ? it.pvLength : std::min(it.pvLength, matePlies);
  int shown = 0;
  while (shown < limit) {
    MakeMove(it.pv[shown++]);
    if (DrawnAtOnce(*current)) break;
  }
  current -= shown;
  return shown;
}

namespace {

void SendInfo(int depth, int line, const std::string& score, int64_t elapsed, uint64_t nodes, const Move* pv,
              int pvLength, int rootSide) {
  // The line's number only when there are several: one line is shown as UCI's plain info line.
  const std::string multiPv = line > 0 ? " multipv " + std::to_string(line) : "";
  std::string moves = pvLength > 0 ? " pv" : "";
  for (int i = 0; i < pvLength; ++i) {
    char text[MOVE_TEXT_SIZE];
    MoveToPlainText(text, pv[i], rootSide ^ (i % 2 == 0 ? WHITE : BLACK));
    moves += std::string(" ") + text;
  }
  const long long ms = elapsed / 1000;
  const unsigned long long nps = elapsed > 0 ? nodes * 1000000 / static_cast<uint64_t>(elapsed) : 0;
  Send("info depth %d%s score %s time %lld nodes %llu nps %llu%s", depth, multiPv.c_str(), score.c_str(), ms,
       static_cast<unsigned long long>(nodes), nps, moves.c_str());
}

// Each line of each iteration as an "info" line; the nodes and the time are those of the whole search so
// far. What the best line showed is kept for the move played and the move to ponder on.
class InfoOutput : public IterationListener {
 public:
  explicit InfoOutput(bool severalLines) : severalLines_(severalLines) {}

  void Finished(const Iteration& it) override {
    nodes_ += it.nodes;
    const int length = ShownLength(it);
    const std::string score = ScoreText(it.score, it.depth);
    SendInfo(it.depth, severalLines_ ? it.line : 0, score, it.elapsed, nodes_, it.pv, length, it.rootSide);
    if (it.line != 1) return;
    pvLength_ = length;
    for (int i = 0; i < length; ++i) pv_[i] = it.pv[i];
    depth_ = it.depth;
    score_ = score;
  }

  // The last line before "bestmove" shows the move played: when the last variation does not begin with
  // it (no iteration finished, or the root was drawn at once and stored no move), one more line does, with
  // the last depth and score, or depth 0 and the static value of the position the move leads to.
  void ShowMovePlayed(Move best, int64_t elapsed) {
    if (pvLength_ > 0 && pv_[0] == best) return;
    if (depth_ == 0) score_ = "cp " + std::to_string(MoveStaticValue(best));
    SendInfo(depth_, severalLines_ ? 1 : 0, score_, elapsed, nodes_, &best, 1, current->side);
  }

  // The reply the last variation expects to `best`, when it is legal there.
  Move PonderMove(Move best) const {
    if (pvLength_ < 2 || pv_[0] != best) return MOVE_NONE;
    MakeMove(best);
    const Move reply = IsLegalMove(pv_[1]) ? pv_[1] : MOVE_NONE;
    TakeBack();
    return reply;
  }

 private:
  uint64_t nodes_ = 0;
  Move pv_[MAX_SEARCH_DEPTH + 1] = {};
  int pvLength_ = 0;
  int depth_ = 0;
  std::string score_;
  bool severalLines_;
};

}  // namespace

int MoveStaticValue(Move move) {
  MakeMove(move);
  const int value = -Evaluate(*current);
  TakeBack();
  return value;
}

void SendUnsearchedMove(Move move) {
  SendInfo(0, 0, "cp " + std::to_string(MoveStaticValue(move)), 0, 0, &move, 1, current->side);
}

Command CommandOf(const std::string& word) {
  static const std::pair<const char*, Command> WORDS[] = {
      {"uci", Command::UCI},           {"debug", Command::DEBUG},
      {"isready", Command::ISREADY},   {"setoption", Command::SETOPTION},
      {"register", Command::REGISTER}, {"ucinewgame", Command::UCINEWGAME},
      {"position", Command::POSITION}, {"go", Command::GO},
      {"stop", Command::STOP},         {"ponderhit", Command::PONDERHIT},
      {"quit", Command::QUIT},         {"", Command::NONE},
  };
  for (const auto& [text, command] : WORDS) {
    if (word == text) return command;
  }
  return Command::UNKNOWN;
}

bool RunsDuringSearch(Command command) {
  switch (command) {
    case Command::ISREADY:
    case Command::STOP:
    case Command::PONDERHIT:
    case Command::QUIT:
    case Command::DEBUG:
    case Command::REGISTER:
    case Command::NONE:
    case Command::UNKNOWN: return true;
    default: return false;
  }
}

void SearchThread::Start(SearchLimits limits, bool holdBestMove, bool pondering) {
  Stop();
  stop_ = false;
  hold_ = holdBestMove;
  pondering_ = pondering;
  clockStart_ = pondering ? 0 : WallClockMicroseconds();
  limits.stop = &stop_;
  limits.clockStart = &clockStart_;
  // The moves named stay here while the search runs.
  limits.rootMoveCount = std::min(limits.rootMoveCount, MAX_ROOT_MOVES);
  std::copy(limits.rootMoves, limits.rootMoves + limits.rootMoveCount, rootMoves_);
  limits.rootMoves = rootMoves_;
  thread_ = std::thread(&SearchThread::Run, this, limits);
}

void SearchThread::Stop() {
  if (!thread_.joinable()) return;
  stop_ = true;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    hold_ = false;
  }
  released_.notify_all();
  thread_.join();
}

void SearchThread::Finish() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (hold_) stop_ = true;
    hold_ = false;
  }
  released_.notify_all();
  thread_.join();
}

void SearchThread::PonderHit() {
  if (!pondering_) return;
  pondering_ = false;
  clockStart_ = WallClockMicroseconds();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    hold_ = false;
  }
  released_.notify_all();
}

void SearchThread::Run(SearchLimits limits) {
  InfoOutput info(limits.lines > 1);
  const int64_t start = WallClockMicroseconds();
  const Move best = IterativeDeepening(limits, info);
  if (best) info.ShowMovePlayed(best, WallClockMicroseconds() - start);
  {
    std::unique_lock<std::mutex> lock(mutex_);
    released_.wait(lock, [this] { return !hold_; });
  }
  if (!best) {
    Send("bestmove 0000");
    return;
  }
  const int side = current->side;
  char text[MOVE_TEXT_SIZE], reply[MOVE_TEXT_SIZE];
  MoveToPlainText(text, best, side);
  const Move ponder = info.PonderMove(best);
  if (!ponder) {
    Send("bestmove %s", text);
    return;
  }
  MoveToPlainText(reply, ponder, side ^ BLACK);
  Send("bestmove %s ponder %s", text, reply);
}

}  // namespace vorlek::uci
