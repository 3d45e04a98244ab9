#include "ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <system_error>
#include <thread>

namespace endtoend {

namespace {

constexpr std::chrono::milliseconds pause{10};

// Asks until the answer is yes or the time is over; the last answer.
template <typename Condition>
bool waitUntil(std::chrono::milliseconds limit, Condition condition) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) {
      return condition();
    }
    std::this_thread::sleep_for(pause);
  }
  return true;
}

bool hasLine(const std::string &text, const std::string &beginning, std::size_t offset) {
  std::istringstream lines(text.substr(std::min(offset, text.size())));
  for (std::string line; std::getline(lines, line);) {
    // A line counts once it is whole.
    if (line.starts_with(beginning) && !lines.eof()) {
      return true;
    }
  }
  return false;
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
  std::string path = (std::filesystem::temp_directory_path() / "end-to-end.XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), path);
  }
  path_ = path;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string readFile(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return std::move(bytes).str();
}

void writeFile(const std::filesystem::path &path, const std::string &bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
}

ChildProcess::ChildProcess(const std::vector<std::string> &arguments) {
  std::vector<char *> pointers;
  for (const auto &argument : arguments) {
    pointers.push_back(const_cast<char *>(argument.c_str()));
  }
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  const std::string out = files_.path() / "out";
  const std::string err = files_.path() / "err";
  constexpr int writing = O_WRONLY | O_CREAT | O_APPEND;
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), writing, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), writing, 0600);
  const int error = posix_spawnp(&pid_, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw std::system_error(error, std::generic_category(), arguments.front());
  }
}

ChildProcess::~ChildProcess() {
  if (isRunning()) {
    send(SIGKILL);
    waitForExit();
  }
}

bool ChildProcess::isRunning() {
  if (!status_) {
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) == pid_) {
      status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
  }
  return !status_;
}

void ChildProcess::send(int signal) {
  // Once it was waited for, its pid may be another's.
  if (isRunning()) {
    kill(pid_, signal);
  }
}

std::optional<int> ChildProcess::waitForExit(std::chrono::milliseconds limit) {
  waitUntil(limit, [this] { return !isRunning(); });
  return status_;
}

bool ChildProcess::waitForLine(const std::string &beginning, std::size_t offset,
                               std::chrono::milliseconds limit) {
  bool found = false;
  waitUntil(limit, [&] {
    const bool running = isRunning();
    found = hasLine(standardOutput(), beginning, offset);
    return found || !running;
  });
  return found;
}

Result run(const std::vector<std::string> &arguments) {
  ChildProcess child(arguments);
  const auto status = child.waitForExit();
  if (!status) {
    child.send(SIGKILL);
    child.waitForExit();
  }
  return {status.value_or(124), child.standardOutput(), child.standardError()};
}

}  // namespace endtoend
