#include "ChildProcess.h"

#include "Files.h"
#include "WaitUntil.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <sstream>
#include <system_error>

namespace test_support {

namespace {

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

double seconds(const timeval &time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// What the new process needs, made before the fork: between fork and exec nothing may allocate.
class Start {
 public:
  Start(const std::vector<std::string> &arguments, const TemporaryDirectory &files)
      : output_(files / "out"), error_(files / "err") {
    for (const std::string &argument : arguments) {
      words_.push_back(const_cast<char *>(argument.c_str()));
    }
    words_.push_back(nullptr);
  }

  // Turns this process into the program, or writes why not and ends.
  [[noreturn]] void become(int failures) const {
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
    constexpr int writing = O_WRONLY | O_CREAT | O_APPEND;
    if (redirect(STDIN_FILENO, "/dev/null", O_RDONLY) &&
        redirect(STDOUT_FILENO, output_.c_str(), writing) &&
        redirect(STDERR_FILENO, error_.c_str(), writing)) {
      execvp(words_[0], words_.data());
    }
    const int error = errno;
    const bool isTold = write(failures, &error, sizeof error) == sizeof error;
    _exit(isTold ? 127 : 126);
  }

 private:
  static bool redirect(int descriptor, const char *path, int flags) {
    const int file = open(path, flags, 0600);
    return file >= 0 && dup2(file, descriptor) == descriptor;
  }

  std::vector<char *> words_;
  std::string output_;
  std::string error_;
};

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string> &arguments) {
  // Tells why the program could not be started; closed by its start.
  std::array<int, 2> failures{};
  if (pipe(failures.data()) != 0 || fcntl(failures[1], F_SETFD, FD_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "pipe");
  }
  const Start start(arguments, files_);
  number_ = fork();
  if (number_ == 0) {
    start.become(failures[1]);
  }
  int error = number_ < 0 ? errno : 0;
  close(failures[1]);
  while (number_ > 0 && read(failures[0], &error, sizeof error) < 0 && errno == EINTR) {
  }
  close(failures[0]);
  if (error != 0) {
    if (number_ > 0) {
      waitpid(number_, nullptr, 0);
    }
    throw std::system_error(error, std::generic_category(), arguments.front());
  }
}

ChildProcess::~ChildProcess() {
  end();
  if (!errorsWereRead_) {
    std::cerr << standardError();
  }
}

std::string ChildProcess::standardOutput() const { return readFile(files_ / "out"); }

std::string ChildProcess::standardError() const {
  errorsWereRead_ = true;
  return readFile(files_ / "err");
}

bool ChildProcess::isRunning() {
  if (!status_) {
    int status = 0;
    rusage used{};
    if (wait4(number_, &status, WNOHANG, &used) == number_) {
      status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
      processorSeconds_ = seconds(used.ru_utime) + seconds(used.ru_stime);
    }
  }
  return !status_;
}

void ChildProcess::send(int signal) {
  // Once it was waited for, its number may be another's.
  if (isRunning()) {
    kill(number_, signal);
  }
}

void ChildProcess::stop() {
  send(SIGSTOP);
  siginfo_t state{};
  // Looks only: an end is left to isRunning.
  while (!status_ &&
         waitid(P_PID, static_cast<id_t>(number_), &state, WSTOPPED | WEXITED | WNOWAIT) != 0 &&
         errno == EINTR) {
  }
}

void ChildProcess::end() {
  if (isRunning()) {
    send(SIGKILL);
    waitForExit();
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

std::string ChildProcess::readLine(std::chrono::milliseconds limit) {
  std::string line;
  waitUntil(limit, [&] {
    const bool running = isRunning();
    const std::string output = standardOutput();
    const std::size_t end = output.find('\n', nextLine_);
    if (end == std::string::npos) {
      return !running;
    }
    line = output.substr(nextLine_, end - nextLine_);
    nextLine_ = end + 1;
    return true;
  });
  return line;
}

Result run(const std::vector<std::string> &arguments, std::chrono::milliseconds limit) {
  ChildProcess child(arguments);
  const auto status = child.waitForExit(limit);
  child.end();
  return {status.value_or(124), child.standardOutput(), child.standardError(),
          child.processorSeconds()};
}

}  // namespace test_support
