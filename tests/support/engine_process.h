// tests/support/engine_process.h — runs the real engine binary in a fresh working directory, fed
// through a pipe (xboard mode) or typed at a pseudo-terminal (console mode), and collects what it did.
#pragma once
#include <optional>
#include <string>
#include <vector>

namespace vorlek::test {

// A fresh directory under the system's temporary directory, removed with everything in it.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::string& Path() const { return path_; }
  void WriteFile(const std::string& name, const std::string& contents) const;
  // The file's bytes, or nullopt when it does not exist.
  std::optional<std::string> ReadFile(const std::string& name) const;

 private:
  std::string path_;
};

struct EngineRun {
  std::string output;              // every byte the engine wrote on standard output
  bool exited = false;             // ended by itself (not by a signal, not killed for hanging)
  int exitStatus = -1;             // valid when `exited`
  bool hung = false;               // killed after the safety deadline; a test failure in itself
  std::optional<std::string> log;  // "partita.log" afterwards, nullopt when the engine made none
  std::string errors;              // standard error (runs on a pipe only)
};

// What every run must show: an orderly end by itself with status 0, and no sanitizer report.
void ExpectCleanExit(const EngineRun& run);

// The book the tests use unless they say otherwise: its replies need no search.
inline const std::string SMALL_BOOK = "e2e4 e7e5\n";

// The handshake that lets the engine start in xboard mode.
inline const std::string HANDSHAKE = "xboard\nprotover 2\n";

// The feature line the engine prints after the handshake, newline included.
inline const std::string FEATURE_LINE =
    "feature setboard=1 playother=1 sigint=0 analyze=0 colors=0 time=1 myname=\"Vorlek\" done=1\n";

// Runs the engine with `input` as its whole standard input (a pipe, so xboard mode), in a new working
// directory holding "Aperture.txt" with `book`, or no book file at all when `book` is nullopt.
EngineRun RunWithInput(const std::string& input, const std::optional<std::string>& book = SMALL_BOOK);

// Runs the engine on a pseudo-terminal (so console mode) without echo and without the newline to
// carriage-return conversion. Before each of `lines` it waits for one more "Comando: " prompt than it
// has seen so far, then types the line and a newline. Afterwards it waits for the engine to end; when
// `endInput` is set it first types the end-of-file character at the start of a new line.
EngineRun RunOnTerminal(const std::vector<std::string>& lines, const std::optional<std::string>& book = SMALL_BOOK,
                        bool endInput = false);

}  // namespace vorlek::test
