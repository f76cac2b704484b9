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

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vorlek::test {

namespace {

// A run that has not ended by then has hung: it is killed and reported as such. Generous, because
// the sanitizer build is slow; no test depends on how long a run takes.
constexpr auto SAFETY_DEADLINE = std::chrono::seconds(120);

constexpr char PROMPT[] = "Comando: ";

using Clock = std::chrono::steady_clock;

int MillisecondsLeft(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return left > 0 ? static_cast<int>(left) : 0;
}

[[noreturn]] void ExecEngine(const std::string& directory) {
  if (chdir(directory.c_str()) != 0) _exit(126);
  execl(VORLEK_BINARY, "vorlek", static_cast<char*>(nullptr));
  _exit(127);
}

void PrepareDirectory(const TemporaryDirectory& dir, const std::optional<std::string>& book) {
  if (book) dir.WriteFile("Aperture.txt", *book);
}

void Reap(pid_t pid, EngineRun& run) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  run.exited = !run.hung && WIFEXITED(status);
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

size_t CountPrompts(const std::string& text) {
  size_t count = 0;
  for (size_t at = text.find(PROMPT); at != std::string::npos; at = text.find(PROMPT, at + 1)) ++count;
  return count;
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
  std::ofstream file(path_ + "/" + name, std::ios::binary | std::ios::trunc);
  file << contents;
}

std::optional<std::string> TemporaryDirectory::ReadFile(const std::string& name) const {
  std::ifstream file(path_ + "/" + name, std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream contents;
  contents << file.rdbuf();
  return contents.str();
}

EngineRun RunWithInput(const std::string& input, const std::optional<std::string>& book) {
  // A write to an engine that has already ended must fail with EPIPE, not end the test binary.
  signal(SIGPIPE, SIG_IGN);
  TemporaryDirectory dir;
  PrepareDirectory(dir, book);

  int toEngine[2], fromEngine[2];
  if (pipe2(toEngine, O_CLOEXEC) != 0 || pipe2(fromEngine, O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
  // Spawned rather than forked: a copy of a sanitizer-sized test process would cost more than the run.
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, toEngine[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, fromEngine[1], STDOUT_FILENO);
  posix_spawn_file_actions_addchdir_np(&actions, dir.Path().c_str());
  // Opened after the change of folder, so inside the run's own folder.
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "standard-error", O_WRONLY | O_CREAT | O_TRUNC, 0600);
  char name[] = "vorlek";
  char* const argv[] = {name, nullptr};
  pid_t pid;
  const int spawned = posix_spawn(&pid, VORLEK_BINARY, &actions, nullptr, argv, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) throw std::runtime_error("posix_spawn failed");
  close(toEngine[0]);
  close(fromEngine[1]);
  int writeEnd = toEngine[1];
  const int readEnd = fromEngine[0];
  fcntl(writeEnd, F_SETFL, O_NONBLOCK);

  EngineRun run;
  size_t written = 0;
  if (input.empty()) {
    close(writeEnd);
    writeEnd = -1;
  }
  const auto deadline = Clock::now() + SAFETY_DEADLINE;
  for (;;) {
    pollfd fds[2] = {{readEnd, POLLIN, 0}, {writeEnd, POLLOUT, 0}};
    const int ready = poll(fds, writeEnd >= 0 ? 2 : 1, MillisecondsLeft(deadline));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) {
      kill(pid, SIGKILL);
      run.hung = true;
      break;
    }
    if (writeEnd >= 0 && fds[1].revents) {
      const ssize_t n = write(writeEnd, input.data() + written, input.size() - written);
      if (n > 0) written += static_cast<size_t>(n);
      if ((n < 0 && errno != EAGAIN) || written == input.size()) {
        close(writeEnd);  // all given, or the engine no longer reads: it sees the end of its input
        writeEnd = -1;
      }
    }
    if (fds[0].revents) {
      char buffer[4096];
      const ssize_t n = read(readEnd, buffer, sizeof buffer);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) break;
      run.output.append(buffer, static_cast<size_t>(n));
    }
  }
  if (writeEnd >= 0) close(writeEnd);
  close(readEnd);
  Reap(pid, run);
  run.log = dir.ReadFile("partita.log");
  run.errors = dir.ReadFile("standard-error").value_or("");
  return run;
}

void ExpectCleanExit(const EngineRun& run) {
  EXPECT_FALSE(run.hung);
  EXPECT_TRUE(run.exited);
  EXPECT_EQ(run.exitStatus, 0) << run.output << run.errors;
  EXPECT_EQ(run.errors.find("runtime error"), std::string::npos) << run.errors;
  EXPECT_EQ(run.errors.find("Sanitizer"), std::string::npos) << run.errors;
}

EngineRun RunOnTerminal(const std::vector<std::string>& lines, const std::optional<std::string>& book, bool endInput) {
  TemporaryDirectory dir;
  PrepareDirectory(dir, book);

  int master = -1;
  const pid_t pid = forkpty(&master, nullptr, nullptr, nullptr);
  if (pid < 0) throw std::runtime_error("forkpty failed");
  if (pid == 0) {
    // Only the engine's own bytes come back, exactly as it wrote them.
    termios mode;
    tcgetattr(STDIN_FILENO, &mode);
    mode.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    mode.c_oflag &= ~static_cast<tcflag_t>(ONLCR);
    tcsetattr(STDIN_FILENO, TCSANOW, &mode);
    ExecEngine(dir.Path());
  }

  EngineRun run;
  const auto deadline = Clock::now() + SAFETY_DEADLINE;
  bool open = true;
  // Reads what is there, waiting at most until the deadline; false once the engine's side is closed.
  auto readMore = [&]() {
    pollfd fd = {master, POLLIN, 0};
    const int ready = poll(&fd, 1, MillisecondsLeft(deadline));
    if (ready < 0 && errno == EINTR) return true;
    if (ready <= 0) {
      kill(pid, SIGKILL);
      run.hung = true;
      return false;
    }
    char buffer[4096];
    const ssize_t n = read(master, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) return true;
    if (n <= 0) return false;  // EIO: the engine has closed the terminal
    run.output.append(buffer, static_cast<size_t>(n));
    return true;
  };
  auto waitForPrompts = [&](size_t count) {
    while (open && CountPrompts(run.output) < count) open = readMore();
  };
  auto type = [&](const std::string& text) {
    for (size_t done = 0; done < text.size();) {
      const ssize_t n = write(master, text.data() + done, text.size() - done);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) return;
      done += static_cast<size_t>(n);
    }
  };

  for (size_t i = 0; i < lines.size() && open; ++i) {
    waitForPrompts(i + 1);
    if (open) type(lines[i] + "\n");
  }
  if (endInput && open) {
    waitForPrompts(lines.size() + 1);
    if (open) type("\x04");  // the end-of-file character, read as the end of input at a line's start
  }
  while (open) open = readMore();
  close(master);
  Reap(pid, run);
  run.log = dir.ReadFile("partita.log");
  return run;
}

}  // namespace vorlek::test
