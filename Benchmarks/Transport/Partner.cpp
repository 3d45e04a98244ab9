#include "Partner.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace benchmarks {

Partner::Partner(const std::function<void(const std::function<void()> &ready)> &serve) {
  int ends[2];
  if (pipe(ends) != 0) {
    std::perror("pipe");
    std::exit(1);
  }
  number_ = fork();
  if (number_ == 0) {
    close(ends[0]);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    serve([&] {
      const ssize_t written = write(ends[1], "r", 1);
      close(ends[1]);
      if (written != 1) {
        _exit(1);
      }
    });
    _exit(0);
  }
  close(ends[1]);
  char byte = 0;
  if (number_ < 0 || read(ends[0], &byte, 1) != 1) {
    std::fputs("The partner process did not get ready\n", stderr);
    std::exit(1);
  }
  close(ends[0]);
}

Partner::~Partner() {
  kill(number_, SIGKILL);
  waitpid(number_, nullptr, 0);
}

}  // namespace benchmarks
