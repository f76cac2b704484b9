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
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vorlek::test {

namespace {

// An engine silent for this long has hung and is killed. Generous, because the sanitizer build is slow;
// no test depends on how long a run takes.
constexpr int SILENCE_LIMIT_MS = 120000;

// Appends what one read of `fd` gives to run.output; nothing when the program has ended or hung (then it is
// killed).
void ReadSome(int fd, pid_t pid, EngineRun& run) {
  pollfd ready = {fd, POLLIN, 0};
  if (poll(&ready, 1, SILENCE_LIMIT_MS) == 0) {
    kill(pid, SIGKILL);
    return;
  }
  char buffer[4096];
  ssize_t n;
  while ((n = read(fd, buffer, sizeof buffer)) < 0 && errno == EINTR) {
  }
  if (n > 0) run.output.append(buffer, static_cast<size_t>(n));
}

// Reads until run.output holds `prompts` console prompts (true), or the program has ended or hung (false).
bool ReadUntil(int fd, pid_t pid, EngineRun& run, size_t prompts = SIZE_MAX) {
  for (;;) {
    size_t seen = 0;
    for (size_t at = run.output.find("Comando: "); at != std::string::npos; at = run.output.find("Comando: ", at + 1))
      ++seen;
    if (seen >= prompts) return true;
    const size_t before = run.output.size();
    ReadSome(fd, pid, run);
    if (run.output.size() == before) return false;
  }
}

void Collect(pid_t pid, const TemporaryDirectory& dir, EngineRun& run) {
  int status = 0;
  waitpid(pid, &status, 0);
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.log = dir.ReadFile("partita.log");
  run.errors = dir.ReadFile("standard-error").value_or("");
  run.folder = dir.Path();
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
  const std::filesystem::path file = path_ + "/" + name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << contents;
}

std::optional<std::string> TemporaryDirectory::ReadFile(const std::string& name) const {
  if (!std::filesystem::is_regular_file(path_ + "/" + name)) return std::nullopt;
  std::ifstream file(path_ + "/" + name, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void ExpectCleanExit(const EngineRun& run) {
  EXPECT_EQ(run.exitStatus, 0) << run.output << run.errors;
  EXPECT_EQ(run.errors.find("runtime error"), std::string::npos) << run.errors;
  EXPECT_EQ(run.errors.find("Sanitizer"), std::string::npos) << run.errors;
}

EngineSession::EngineSession(const std::string& binary, const std::vector<std::string>& arguments,
                             const std::optional<std::string>& book, const Files& files) {
  signal(SIGPIPE, SIG_IGN);  // a program that has ended early makes a write fail instead
  if (book) dir_.WriteFile("Aperture.txt", *book);
  for (const auto& [name, contents] : files) dir_.WriteFile(name, contents);
  int toEngine[2], fromEngine[2];
  if (pipe2(toEngine, O_CLOEXEC) != 0 || pipe2(fromEngine, O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
  // Spawned rather than forked: a copy of a sanitizer-sized test process would cost more than the run.
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, toEngine[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, fromEngine[1], STDOUT_FILENO);
  posix_spawn_file_actions_addchdir_np(&actions, dir_.Path().c_str());
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "standard-error", O_WRONLY | O_CREAT | O_TRUNC, 0600);
  std::vector<std::string> words = {binary.substr(binary.rfind('/') + 1)};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const int spawned = posix_spawn(&pid_, binary.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) throw std::runtime_error("posix_spawn failed");
  close(toEngine[0]);
  close(fromEngine[1]);
  toProgram_ = toEngine[1];
  fromProgram_ = fromEngine[0];
}

EngineSession::~EngineSession() {
  if (!ended_) Finish();
}

void EngineSession::Send(const std::string& text) {
  if (write(toProgram_, text.data(), text.size()) < 0 && errno != EPIPE) throw std::runtime_error("write failed");
}

std::string EngineSession::ReadUntilLine(const std::string& prefix) {
  EngineRun run;
  run.output = pending_;
  for (;;) {
    for (size_t line = 0; line < run.output.size();) {
      const size_t end = run.output.find('\n', line);
      if (end == std::string::npos) break;
      if (run.output.compare(line, prefix.size(), prefix) == 0) {
        pending_ = run.output.substr(end + 1);
        return run.output.substr(0, end + 1);
      }
      line = end + 1;
    }
    const size_t before = run.output.size();
    ReadSome(fromProgram_, pid_, run);
    if (run.output.size() == before) break;  // the program ended, or hung and was killed
  }
  pending_.clear();
  return run.output;
}

EngineRun EngineSession::Finish() {
  EngineRun run;
  run.output = pending_;
  pending_.clear();
  close(toProgram_);
  ReadUntil(fromProgram_, pid_, run);
  close(fromProgram_);
  Collect(pid_, dir_, run);
  ended_ = true;
  return run;
}

int EngineSession::ResidentMebibytes() const {
  std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmRSS:", 0) == 0) return std::stoi(line.substr(6)) / 1024;
  }
  return -1;
}

EngineRun RunWithInput(const std::string& input, const std::optional<std::string>& book, const Files& files) {
  // The input is written whole before any output is read, so it must fit the pipe's buffer.
  if (input.size() > 65536) throw std::runtime_error("input larger than a pipe's buffer");
  EngineSession engine(VORLEK_BINARY, {}, book, files);
  engine.Send(input);
  return engine.Finish();
}

EngineRun RunCommand(const std::string& command, const Files& files) {
  EngineSession shell("/bin/sh", {"-c", command}, std::nullopt, files);
  return shell.Finish();
}

EngineRun RunOnTerminal(const std::string& keys, const std::optional<std::string>& book) {
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
  EngineRun run;
  bool open = true;
  for (size_t start = 0, prompts = 1; open && start < keys.size(); ++prompts) {
    const size_t end = std::min(keys.find('\n', start), keys.size() - 1) + 1;
    open = ReadUntil(terminal, pid, run, prompts) &&
           write(terminal, keys.data() + start, end - start) == static_cast<ssize_t>(end - start);
    start = end;
  }
  if (open) ReadUntil(terminal, pid, run);
  close(terminal);
  Collect(pid, dir, run);
  return run;
}

}  // namespace vorlek::test
