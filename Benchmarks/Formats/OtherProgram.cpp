#include "OtherProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace benchmarks {

namespace {

double seconds(const timeval &time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

std::expected<Work, std::string> run(const std::vector<std::string> &arguments,
                                     const std::filesystem::path &output) {
  std::vector<char *> words;
  for (const std::string &argument : arguments) {
    words.push_back(const_cast<char *>(argument.c_str()));
  }
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int problem = posix_spawnp(&child, words.front(), &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (problem != 0) {
    return std::unexpected(arguments.front() + ": " + std::strerror(problem));
  }
  int status = 0;
  rusage usage{};
  while (wait4(child, &status, 0, &usage) == -1) {
    if (errno != EINTR) {
      return std::unexpected(arguments.front() + ": " + std::strerror(errno));
    }
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    return std::unexpected(arguments.front() + " failed");
  }
  std::error_code ignored;
  return Work{seconds(usage.ru_utime) + seconds(usage.ru_stime),
              std::filesystem::file_size(output, ignored)};
}

}  // namespace benchmarks
