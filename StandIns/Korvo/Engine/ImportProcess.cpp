#include "ImportProcess.h"

#include "ImportExit.h"
#include "ImportPipe.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>

namespace korvo::engine {

namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;

  int number() const { return number_; }
  void close() {
    if (number_ >= 0) {
      ::close(number_);
      number_ = -1;
    }
  }

 private:
  int number_;
};

std::optional<pid_t> start(const std::filesystem::path &program, const std::filesystem::path &file,
                           const ImportBounds &bounds, int pipeEnd) {
  const std::string mebibytes = std::to_string(bounds.mebibytes);
  const std::string seconds = std::to_string(bounds.time.count());
  const std::string parent = std::to_string(getpid());
  const std::array<const char *, 6> arguments = {program.c_str(), file.c_str(),   mebibytes.c_str(),
                                                 seconds.c_str(), parent.c_str(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, pipeEnd, importPipe);
  // What this process ignores or holds back is its own matter.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t process = 0;
  const int failure = posix_spawn(&process, program.c_str(), &actions, &attributes,
                                  const_cast<char *const *>(arguments.data()), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return failure == 0 ? std::optional(process) : std::nullopt;
}

// False where what came is nothing that a reader writes.
bool readToEnd(int descriptor, ImportReading &reading) {
  std::array<char, 65'536> buffer{};
  for (;;) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count == 0 || (count < 0 && errno != EINTR)) {
      return count == 0;
    }
    if (count > 0 && !reading.take({buffer.data(), static_cast<std::size_t>(count)})) {
      return false;
    }
  }
}

int waitFor(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) {
      return -1;
    }
  }
  return status;
}

std::string endInWords(int status, const ImportBounds &bounds) {
  if (WIFEXITED(status) && WEXITSTATUS(status) == importTookTooMuchMemory) {
    return "it takes more than " + std::to_string(bounds.mebibytes) + " MiB of memory";
  }
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) {
    return "it takes longer than " + std::to_string(bounds.time.count()) + " s";
  }
  return WIFSIGNALED(status)
             ? "its reader was ended by signal " + std::to_string(WTERMSIG(status))
             : "its reader ended with status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

std::filesystem::path importProgram() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / "korvo-reader";
}

std::expected<ImportResult, std::string> importInOwnProcess(const std::filesystem::path &file,
                                                            const ImportProgress &progress,
                                                            const ImportBounds &bounds,
                                                            const std::filesystem::path &program) {
  const auto failure = [&](const std::string &reason) {
    return std::unexpected(file.string() + ": cannot be read: " + reason);
  };
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    return failure(std::strerror(errno));
  }
  Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const auto process = start(program, file, bounds, writing.number());
  if (!process) {
    return failure(program.string() + " cannot be started");
  }
  writing.close();
  ImportReading import(file, progress);
  const bool isOurs = readToEnd(reading.number(), import);
  if (!isOurs) {
    kill(*process, SIGKILL);
  }
  const int status = waitFor(*process);
  if (!isOurs || !import.isWhole() || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    return failure(endInWords(status, bounds));
  }
  return import.result();
}

}  // namespace korvo::engine
