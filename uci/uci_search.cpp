#include "uci/uci_search.h"

#include <cstdlib>
#include <string>

#include "board/all_moves.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "board/position.h"
#include "uci/uci_output.h"

namespace vorlek::uci {

namespace {

// A score as UCI writes it: centipawns, or mate in moves (negative when the engine is mated). A side mated
// at remaining depth d scores -(MATE_SCORE + d), so a mate score tells how many plies from the root the
// mated position stands.
std::string ScoreText(int score, int depth) {
  const int magnitude = std::abs(score);
  if (magnitude < MATE_SCORE || magnitude > MATE_SCORE + depth) return "cp " + std::to_string(score);
  const int plies = depth - (magnitude - MATE_SCORE);
  return "mate " + std::to_string(score > 0 ? (plies + 1) / 2 : -(plies / 2));
}

// Each iteration as an "info" line; the nodes and the time are those of the whole search so far.
class InfoOutput : public IterationListener {
 public:
  void Finished(const Iteration& it) override {
    nodes_ += it.nodes;
    std::string line = it.pvLength > 0 ? " pv" : "";
    for (int i = 0; i < it.pvLength; ++i) {
      char text[MOVE_TEXT_SIZE];
      MoveToPlainText(text, it.pv[i], SideAtPly(it, i));
      line += std::string(" ") + text;
    }
    const long long ms = it.elapsed / 1000;
    const unsigned long long nps = it.elapsed > 0 ? nodes_ * 1000000 / static_cast<uint64_t>(it.elapsed) : 0;
    Send("info depth %d score %s time %lld nodes %llu nps %llu%s", it.depth, ScoreText(it.score, it.depth).c_str(), ms,
         static_cast<unsigned long long>(nodes_), nps, line.c_str());
    pvLength_ = it.pvLength;
    for (int i = 0; i < it.pvLength; ++i) pv_[i] = it.pv[i];
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
};

}  // namespace

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
  InfoOutput info;
  const Move best = IterativeDeepening(limits, info);
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
