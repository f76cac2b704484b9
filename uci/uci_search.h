// uci/uci_search.h — the engine's search on a thread of its own, so that the interface is answered while
// it runs: its iterations as "info" lines, its move as "bestmove".
#pragma once
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "search/deepening.h"

namespace vorlek::uci {

enum class Command {
  UCI,
  DEBUG,
  ISREADY,
  SETOPTION,
  REGISTER,
  UCINEWGAME,
  POSITION,
  GO,
  STOP,
  PONDERHIT,
  QUIT,
  NONE,
  UNKNOWN
};

// The command a line's first word names; NONE for an empty line, UNKNOWN for any other word.
Command CommandOf(const std::string& word);

// The one door to the search thread, which owns the position stack, the table and the book while it runs:
// only these commands run during a search (isready, stop, ponderhit, quit, debug, register, and lines that
// are no command, which touch nothing). Every other command first ends the running search, which sends its
// "bestmove", and only then acts.
bool RunsDuringSearch(Command command);

// How much of an iteration's variation the interface is shown: up to the first position the search scores
// as a draw at once (third occurrence, fifty moves), and no further than the mate the score announces.
int ShownLength(const Iteration& iteration);

// The static value, for the side to move, of the position `move` leads to.
int MoveStaticValue(Move move);

// The "info" line of a move played without a search (a book move): depth 0, no node, no time, the static
// value of the position it leads to, and the move as the variation.
void SendUnsearchedMove(Move move);

class SearchThread {
 public:
  ~SearchThread() { Stop(); }

  // Searches the current position within `limits`; when `holdBestMove`, the move is not sent before
  // "stop" or "ponderhit", as the interface expects after "go infinite" and "go ponder". A search begun on
  // the opponent's time (`pondering`) starts its clock at PonderHit.
  void Start(SearchLimits limits, bool holdBestMove, bool pondering);

  // Ends the running search, if any, and waits until its "bestmove" has been sent.
  void Stop();

  // Waits for the running search to send its move; one that waits for "stop" is stopped.
  void Finish();

  // The opponent played the move pondered on: the clock starts now, and the move is sent when found.
  void PonderHit();

  bool Running() const { return thread_.joinable(); }

 private:
  void Run(SearchLimits limits);

  std::thread thread_;
  Move rootMoves_[MAX_ROOT_MOVES];
  std::atomic<bool> stop_{false};
  std::atomic<int64_t> clockStart_{0};
  std::atomic<bool> pondering_{false};
  std::mutex mutex_;
  std::condition_variable released_;
  bool hold_ = false;
};

}  // namespace vorlek::uci
