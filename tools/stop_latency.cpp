// vorlek-stop-latency — measures how quickly vorlek-uci answers while it searches: the time from "isready"
// to "readyok" and from "stop" to "bestmove", during "go infinite" on each bench position.
//   vorlek-stop-latency [ENGINE [ROUNDS]]
// ENGINE defaults to vorlek-uci beside this program. Each round sets up a bench position, lets the
// engine search it for 50 to 500 ms, asks "isready", then "stop". The first round starts 5 s after the
// engine, when its table has been faulted in. Prints each round and the minimum, median and maximum.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "search/bench.h"

using Clock = std::chrono::steady_clock;

namespace {

struct Engine {
  pid_t pid = -1;
  int in = -1, out = -1;
  std::string buffer;

  bool Start(const std::string& path) {
    int toEngine[2], fromEngine[2];
    if (pipe2(toEngine, O_CLOEXEC) != 0 || pipe2(fromEngine, O_CLOEXEC) != 0) return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, toEngine[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fromEngine[1], STDOUT_FILENO);
    char* const argv[] = {const_cast<char*>(path.c_str()), nullptr};
    const bool started = posix_spawn(&pid, path.c_str(), &actions, nullptr, argv, environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(toEngine[0]);
    close(fromEngine[1]);
    in = toEngine[1];
    out = fromEngine[0];
    return started;
  }
  void Send(const std::string& line) const {
    const std::string text = line + "\n";
    if (write(in, text.data(), text.size()) < 0) std::perror("vorlek-stop-latency: write");
  }
  // Waits for a line beginning with `prefix`; false after 10 s or when the engine has ended.
  bool WaitFor(const std::string& prefix) {
    for (;;) {
      for (size_t end; (end = buffer.find('\n')) != std::string::npos;) {
        const bool found = buffer.compare(0, prefix.size(), prefix) == 0;
        buffer.erase(0, end + 1);
        if (found) return true;
      }
      pollfd ready = {out, POLLIN, 0};
      if (poll(&ready, 1, 10000) <= 0) return false;
      char chunk[4096];
      const ssize_t n = read(out, chunk, sizeof chunk);
      if (n <= 0) return false;
      buffer.append(chunk, static_cast<size_t>(n));
    }
  }
};

double Milliseconds(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

void Summary(const char* what, std::vector<double> values) {
  std::sort(values.begin(), values.end());
  std::printf("%s: min %.2f ms, median %.2f ms, max %.2f ms (%zu rounds)\n", what, values.front(),
              values[values.size() / 2], values.back(), values.size());
}

}  // namespace

int main(int argc, char** argv) {
  std::string engine = argc > 1 ? argv[1] : "";
  if (engine.empty()) {
    const std::string self = argv[0];
    const size_t slash = self.rfind('/');
    engine = (slash == std::string::npos ? std::string(".") : self.substr(0, slash)) + "/../vorlek-uci";
  }
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 32;
  if (argc > 3 || rounds < 1) {
    std::fprintf(stderr, "usage: vorlek-stop-latency [ENGINE [ROUNDS]]\n");
    return 2;
  }
  signal(SIGPIPE, SIG_IGN);
  Engine e;
  if (!e.Start(engine)) {
    std::fprintf(stderr, "vorlek-stop-latency: cannot start %s\n", engine.c_str());
    return 2;
  }
  e.Send("uci");
  if (!e.WaitFor("uciok")) return 1;
  std::this_thread::sleep_for(std::chrono::seconds(5));
  const std::vector<std::string> fens = vorlek::BenchPositions();
  std::vector<double> ready, stop;
  std::srand(12345);
  for (int round = 0; round < rounds; ++round) {
    e.Send("position fen " + fens[static_cast<size_t>(round) % fens.size()]);
    e.Send("go infinite");
    std::this_thread::sleep_for(std::chrono::milliseconds(50 + std::rand() % 451));
    auto asked = Clock::now();
    e.Send("isready");
    if (!e.WaitFor("readyok")) return 1;
    ready.push_back(Milliseconds(Clock::now() - asked));
    asked = Clock::now();
    e.Send("stop");
    if (!e.WaitFor("bestmove")) return 1;
    stop.push_back(Milliseconds(Clock::now() - asked));
    std::printf("round %2d: readyok after %.2f ms, bestmove after %.2f ms\n", round + 1, ready.back(), stop.back());
  }
  e.Send("quit");
  int status;
  waitpid(e.pid, &status, 0);
  Summary("isready to readyok", ready);
  Summary("stop to bestmove", stop);
  return 0;
}
