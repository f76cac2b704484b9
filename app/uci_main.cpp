// vorlek-uci: the Vorlek engine under the UCI protocol.
//   vorlek-uci          answers a UCI interface on standard input and output
//   vorlek-uci bench [DEPTH]   searches the bench positions (default depth 7) and ends with "N nodes M nps"
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "app/command_line.h"
#include "search/bench.h"
#include "uci/uci_loop.h"

namespace {

// The folder of this executable, where the build and the install put the book; "." when unknown.
std::string ExecutableFolder() {
  char path[4096];
  const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
  if (n <= 0) return ".";
  const std::string file(path, static_cast<size_t>(n));
  return file.substr(0, file.rfind('/'));
}

constexpr vorlek::ProgramText PROGRAM = {
    "vorlek-uci",
    "usage: vorlek-uci [bench [DEPTH] | --help | --version]\n"
    "  Without arguments: the Vorlek chess engine under the UCI protocol, on standard input and output,\n"
    "  for UCI interfaces, tournament runners and testing frameworks (type \"uci\" to begin).\n"
    "  bench [DEPTH]: searches the built-in bench positions to DEPTH (default 7) and ends with the line\n"
    "  \"N nodes M nps\".\n"};

}  // namespace

int main(int argc, char** argv) {
  if (const auto status = vorlek::AnswerCommonOptions(argc, argv, PROGRAM)) return *status;
  if (argc > 1 && std::strcmp(argv[1], "bench") == 0) {
    int depth = vorlek::DEFAULT_BENCH_DEPTH;
    if (argc == 3) {
      char* end;
      const long d = std::strtol(argv[2], &end, 10);
      depth = *end || d < 1 || d > vorlek::MAX_SEARCH_DEPTH ? 0 : static_cast<int>(d);
    }
    if (argc <= 3 && depth > 0) return vorlek::uci::RunUciBench(stdout, depth);
  }
  if (argc > 1) return vorlek::UsageError(PROGRAM);
  // The table is faulted in at "isready", once the interface has set its size (option Hash).
  return vorlek::uci::RunUci(stdin, stdout, ExecutableFolder());
}
