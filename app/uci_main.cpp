// vorlek-uci: the Vorlek engine under the UCI protocol.
//   vorlek-uci          answers a UCI interface on standard input and output
//   vorlek-uci bench [DEPTH]   searches the bench positions (default depth 7) and ends with "N nodes M nps"
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "search/bench.h"
#include "search/hash_table.h"
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

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "bench") == 0) {
    int depth = vorlek::DEFAULT_BENCH_DEPTH;
    if (argc == 3) {
      char* end;
      const long d = std::strtol(argv[2], &end, 10);
      depth = *end || d < 1 || d > vorlek::MAX_SEARCH_DEPTH ? 0 : static_cast<int>(d);
    }
    if (argc <= 3 && depth > 0) return vorlek::uci::RunUciBench(stdout, depth);
  }
  if (argc > 1) {
    std::fprintf(stderr, "usage: vorlek-uci [bench [DEPTH]]\n");
    return 2;
  }
  // The table is faulted in while the interface sets the engine up.
  vorlek::StartHashTablePrefault();
  return vorlek::uci::RunUci(stdin, stdout, ExecutableFolder());
}
