#include "ChildProcess.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace platform_test {

ChildProcess::ChildProcess(const std::vector<std::string> &arguments) {
  int ends[2];
  if (pipe(ends) != 0) {
    std::abort();
  }
  std::vector<char *> pointers;
  for (const std::string &argument : arguments) {
    pointers.push_back(const_cast<char *>(argument.c_str()));
  }
  pointers.push_back(nullptr);
  number_ = fork();
  if (number_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    execvp(pointers[0], pointers.data());
    _exit(127);
  }
  close(ends[1]);
  output_ = ends[0];
}

ChildProcess::~ChildProcess() {
  end();
  close(output_);
}

std::string ChildProcess::readLine(std::chrono::milliseconds timeOut) {
  const auto deadline = std::chrono::steady_clock::now() + timeOut;
  std::string line;
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    pollfd entry{output_, POLLIN, 0};
    char character = '\0';
    if (left.count() <= 0 || poll(&entry, 1, static_cast<int>(left.count())) <= 0 ||
        read(output_, &character, 1) != 1) {
      return {};
    }
    if (character == '\n') {
      return line;
    }
    line += character;
  }
}

void ChildProcess::end() {
  if (number_ > 0) {
    kill(number_, SIGKILL);
    waitpid(number_, nullptr, 0);
    number_ = -1;
  }
}

}  // namespace platform_test
