#include "StartedCommand.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <thread>

namespace appleevents {

namespace {

constexpr int standardOutput = 1;

}  // namespace

std::expected<std::unique_ptr<StartedCommand>, std::string> StartedCommand::start(
    const std::vector<std::string> &command, Output output) {
  std::vector<char *> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string &argument : command) {
    arguments.push_back(const_cast<char *>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  if (output == Output::discarded) {
    posix_spawn_file_actions_addopen(&files, standardOutput, "/dev/null", O_WRONLY, 0);
  }
  pid_t process = 0;
  const int error =
      posix_spawnp(&process, arguments.front(), &files, &attributes, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  posix_spawnattr_destroy(&attributes);
  if (error != 0) {
    return std::unexpected("cannot start " + command.front() + ": " + std::strerror(error));
  }
  return std::unique_ptr<StartedCommand>(new StartedCommand(process));
}

StartedCommand::~StartedCommand() {
  using namespace std::chrono_literals;
  constexpr int rounds = 100;
  if (!status()) {
    kill(process_, SIGTERM);
  }
  for (int round = 0; round < rounds && !status(); ++round) {
    std::this_thread::sleep_for(20ms);
  }
  if (!status()) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
}

std::optional<int> StartedCommand::status() {
  constexpr int endedBySignal = 128;
  int status = 0;
  if (!status_ && waitpid(process_, &status, WNOHANG) == process_) {
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : endedBySignal + WTERMSIG(status);
  }
  return status_;
}

}  // namespace appleevents
