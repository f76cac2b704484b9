#include "support/engine_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>

namespace vorlek::test {

namespace {

using Clock = std::chrono::steady_clock;

// A run still going by then has hung and is killed. Generous, because the sanitizer build is slow; no
// test depends on how long a run takes.
constexpr auto SAFETY_DEADLINE = std::chrono::seconds(120);

// Appends what the engine writes on `fd` to run.output until `enough` holds (true) or the engine has
// closed its side or been killed at the deadline (false).
bool ReadUntil(
    int fd, pid_t pid, Clock::time_point deadline, EngineRun& run,
    const std::function<bool()>& enough = [] { return false; }) {
  while (!enough()) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd ready = {fd, POLLIN, 0};
    const int polled = poll(&ready, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
    if (polled == 0) {
      kill(pid, SIGKILL);
      return false;
    }
    char buffer[4096];
    const ssize_t n = polled < 0 ? -1 : read(fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;  // the end of a pipe, or EIO once the engine has closed its terminal
    run.output.append(buffer, static_cast<size_t>(n));
  }
  return true;
}

void Finish(pid_t pid, const TemporaryDirectory& dir, EngineRun& run) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.log = dir.ReadFile("partita.log");
  run.errors = dir.ReadFile("standard-error").value_or("");
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vorlek-test-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void TemporaryDirectory::WriteFile(const std::string& name, const std::string& contents) const {
  std::ofstream(path_ + "/" + name, std::ios::binary) << contents;
}

std::optional<std::string> TemporaryDirectory::ReadFile(const std::string& name) const {
  std::ifstream file(path_ + "/" + name, std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream contents;
  contents << file.rdbuf();
  return contents.str();
}

void ExpectCleanExit(const EngineRun& run) {
  EXPECT_EQ(run.exitStatus, 0) << run.output << run.errors;
  EXPECT_EQ(run.errors.find("runtime error"), std::string::npos) << run.errors;
  EXPECT_EQ(run.errors.find("Sanitizer"), std::string::npos) << run.errors;
}

EngineRun RunWithInput(const std::string& input, const std::optional<std::string>& book) {
  // The input is written whole before any output is read, so it must fit the pipe's buffer.
  if (input.size() > 65536) throw std::runtime_error("input larger than a pipe's buffer");
  signal(SIGPIPE, SIG_IGN);  // an engine that has ended early makes the write fail instead
  TemporaryDirectory dir;
  if (book) dir.WriteFile("Aperture.txt", *book);
  int toEngine[2], fromEngine[2];
  if (pipe2(toEngine, O_CLOEXEC) != 0 || pipe2(fromEngine, O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
  // Spawned rather than forked: a copy of a sanitizer-sized test process would cost more than the run.
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, toEngine[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, fromEngine[1], STDOUT_FILENO);
  posix_spawn_file_actions_addchdir_np(&actions, dir.Path().c_str());
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "standard-error", O_WRONLY | O_CREAT | O_TRUNC, 0600);
  char name[] = "vorlek";
  char* const argv[] = {name, nullptr};
  pid_t pid;
  const int spawned = posix_spawn(&pid, VORLEK_BINARY, &actions, nullptr, argv, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) throw std::runtime_error("posix_spawn failed");
  close(toEngine[0]);
  close(fromEngine[1]);
  if (write(toEngine[1], input.data(), input.size()) < 0 && errno != EPIPE) throw std::runtime_error("write failed");
  close(toEngine[1]);

  EngineRun run;
  ReadUntil(fromEngine[0], pid, Clock::now() + SAFETY_DEADLINE, run);
  close(fromEngine[0]);
  Finish(pid, dir, run);
  return run;
}

EngineRun RunOnTerminal(const std::vector<std::string>& lines, const std::optional<std::string>& book, bool endInput) {
  TemporaryDirectory dir;
  if (book) dir.WriteFile("Aperture.txt", *book);
  int terminal = -1;
  const pid_t pid = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (pid < 0) throw std::runtime_error("forkpty failed");
  if (pid == 0) {
    // Only the engine's own bytes come back, exactly as it wrote them.
    termios mode;
    tcgetattr(STDIN_FILENO, &mode);
    mode.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    mode.c_oflag &= ~static_cast<tcflag_t>(ONLCR);
    tcsetattr(STDIN_FILENO, TCSANOW, &mode);
    if (chdir(dir.Path().c_str()) == 0) execl(VORLEK_BINARY, "vorlek", static_cast<char*>(nullptr));
    _exit(127);
  }

  std::vector<std::string> typed;
  for (const std::string& line : lines) typed.push_back(line + "\n");
  if (endInput) typed.push_back("\x04");  // the end-of-file character, read as the end of input at a line's start
  EngineRun run;
  const auto deadline = Clock::now() + SAFETY_DEADLINE;
  auto prompts = [&run] {
    size_t count = 0;
    for (size_t at = run.output.find("Comando: "); at != std::string::npos; at = run.output.find("Comando: ", at + 1))
      ++count;
    return count;
  };
  bool open = true;
  for (size_t i = 0; open && i < typed.size(); ++i) {
    open = ReadUntil(terminal, pid, deadline, run, [&] { return prompts() > i; }) &&
           write(terminal, typed[i].data(), typed[i].size()) == static_cast<ssize_t>(typed[i].size());
  }
  if (open) ReadUntil(terminal, pid, deadline, run);
  close(terminal);
  Finish(pid, dir, run);
  return run;
}

}  // namespace vorlek::test
