#include "Partner.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace benchmarks {
namespace {

std::vector<pid_t> partners;

void giveUp(const char *what) {
  std::perror(what);
  std::exit(1);
}

void runOn(const cpu_set_t &processors) {
  // Number 0 is this process.
  if (sched_setaffinity(0, sizeof processors, &processors) != 0) {
    giveUp("sched_setaffinity");
  }
  for (const pid_t partner : partners) {
    if (sched_setaffinity(partner, sizeof processors, &processors) != 0) {
      giveUp("sched_setaffinity");
    }
  }
}

}  // namespace

Partner::Partner(const std::function<void(const std::function<void()> &ready)> &serve) {
  int ends[2];
  if (pipe(ends) != 0) {
    giveUp("pipe");
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
  partners.push_back(number_);
}

Partner::~Partner() {
  std::erase(partners, number_);
  kill(number_, SIGKILL);
  waitpid(number_, nullptr, 0);
}

OneProcessor::OneProcessor() {
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(sched_getcpu(), &one);
  if (sched_getaffinity(0, sizeof before_, &before_) != 0) {
    giveUp("sched_getaffinity");
  }
  runOn(one);
}

OneProcessor::~OneProcessor() { runOn(before_); }

}  // namespace benchmarks
