#include "RunProgram.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>

namespace mellel_test {

namespace {

constexpr std::chrono::seconds patience{60};

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
      std::abort();
    }
    readEnd = ends[0];
    writeEnd = ends[1];
  }
  int readEnd = -1;
  int writeEnd = -1;
};

[[noreturn]] void become(const std::vector<std::string> &arguments, const Pipe &output,
                         const Pipe &error) {
  std::vector<std::string> copies = arguments;
  std::vector<char *> pointers;
  for (std::string &argument : copies) {
    pointers.push_back(argument.data());
  }
  pointers.push_back(nullptr);
  dup2(output.writeEnd, STDOUT_FILENO);
  dup2(error.writeEnd, STDERR_FILENO);
  for (const int descriptor : {output.readEnd, output.writeEnd, error.readEnd, error.writeEnd}) {
    close(descriptor);
  }
  execv(pointers.front(), pointers.data());
  _exit(127);
}

// False when the other side has closed it.
bool readSome(int descriptor, std::string &text) {
  std::array<char, 4096> buffer{};
  const ssize_t size = read(descriptor, buffer.data(), buffer.size());
  if (size > 0) {
    text.append(buffer.data(), static_cast<std::size_t>(size));
  }
  return size > 0;
}

// Until both are closed or the time is over.
bool readAll(const Pipe &output, const Pipe &error, Ended &ended) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  std::array<pollfd, 2> entries = {{{output.readEnd, POLLIN, 0}, {error.readEnd, POLLIN, 0}}};
  while (entries[0].fd >= 0 || entries[1].fd >= 0) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0 || poll(entries.data(), 2, static_cast<int>(left.count())) <= 0) {
      return false;
    }
    if (entries[0].revents != 0 && !readSome(entries[0].fd, ended.output)) {
      entries[0].fd = -1;
    }
    if (entries[1].revents != 0 && !readSome(entries[1].fd, ended.error)) {
      entries[1].fd = -1;
    }
  }
  return true;
}

}  // namespace

Ended runProgram(const std::vector<std::string> &arguments) {
  const Pipe output;
  const Pipe error;
  const pid_t process = fork();
  if (process == 0) {
    become(arguments, output, error);
  }
  close(output.writeEnd);
  close(error.writeEnd);
  Ended ended;
  if (!readAll(output, error, ended)) {
    kill(process, SIGKILL);
  }
  int status = 0;
  waitpid(process, &status, 0);
  close(output.readEnd);
  close(error.readEnd);
  if (WIFEXITED(status)) {
    ended.status = WEXITSTATUS(status);
  }
  return ended;
}

}  // namespace mellel_test
