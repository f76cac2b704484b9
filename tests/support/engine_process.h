// tests/support/engine_process.h — runs the real engine binary in a fresh working directory, fed
// through a pipe (xboard mode) or typed at a pseudo-terminal (console mode), and collects what it did.
#pragma once
#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vorlek::test {

// A fresh directory under the system's temporary directory, removed with everything in it.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  const std::string& Path() const { return path_; }
  void WriteFile(const std::string& name, const std::string& contents) const;
  std::optional<std::string> ReadFile(const std::string& name) const;  // nullopt when it does not exist

 private:
  std::string path_;
};

struct EngineRun {
  std::string output;              // every byte the engine wrote on standard output
  std::string errors;              // standard error (runs on a pipe only)
  std::optional<std::string> log;  // "partita.log" afterwards, nullopt when the engine made none
  int exitStatus = -1;             // -1 when ended by a signal, or killed for hanging
  std::string folder;              // the working folder it ran in (removed afterwards)
};

// What every run must show: an orderly end by itself with status 0, and no sanitizer report.
void ExpectCleanExit(const EngineRun& run);

inline const std::string SMALL_BOOK = "e2e4 e7e5\n";  // the tests' book unless they say otherwise
inline const std::string HANDSHAKE = "xboard\nprotover 2\n";

// Files written into a run's working directory before it starts: name and contents.
using Files = std::vector<std::pair<std::string, std::string>>;

// A program of the project started on pipes in a new working directory holding "Aperture.txt" with
// `book` (none when nullopt) and `files`, for sessions that talk back and forth.
class EngineSession {
 public:
  EngineSession(const std::string& binary, const std::vector<std::string>& arguments,
                const std::optional<std::string>& book = SMALL_BOOK, const Files& files = {});
  ~EngineSession();
  EngineSession(const EngineSession&) = delete;
  EngineSession& operator=(const EngineSession&) = delete;

  void Send(const std::string& text);
  // Reads until a whole line beginning with `prefix` has arrived (or the program ends, or hangs and is
  // killed); returns what was read since the last call.
  std::string ReadUntilLine(const std::string& prefix);
  // Closes the program's input and waits for its end; the output not yet returned is in the run.
  EngineRun Finish();
  // The program's resident memory now, in MiB (VmRSS of /proc/PID/status); -1 when it cannot be read.
  int ResidentMebibytes() const;

 private:
  TemporaryDirectory dir_;
  pid_t pid_ = -1;
  int toProgram_ = -1, fromProgram_ = -1;
  std::string pending_;  // read but not yet returned
  bool ended_ = false;
};

// Runs the engine with `input` as its whole standard input (a pipe, so xboard mode), in a new working
// directory holding "Aperture.txt" with `book`, or no book file at all when `book` is nullopt.
EngineRun RunWithInput(const std::string& input, const std::optional<std::string>& book = SMALL_BOOK,
                       const Files& files = {});

// Runs a shell command in a new working directory holding `files`: its standard output and exit status.
EngineRun RunCommand(const std::string& command, const Files& files = {});

// Runs the engine on a pseudo-terminal (so console mode) without echo and without the newline to
// carriage-return conversion. Each line of `keys`, newline included, is typed at the next "Comando: "
// prompt; a last part without a newline (such as the end-of-file character) at the prompt after them.
EngineRun RunOnTerminal(const std::string& keys, const std::optional<std::string>& book = SMALL_BOOK);

}  // namespace vorlek::test
