// Does every job once under callgrind's eyes. Not of use by itself: guard.py starts it under
// valgrind, reads the counts and compares them with those that are recorded.

#include "Job.h"

#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>

namespace benchmarks {

void require(bool condition, const char *what) {
  if (!condition) {
    std::fprintf(stderr, "A job did not do its work: %s\n", what);
    std::exit(1);
  }
}

}  // namespace benchmarks

namespace {

void count(const benchmarks::Job &job) {
  const std::function<void()> work = job.prepare();
  // The first time is another: symbols are bound, methods looked up, tables made.
  work();
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  work();
  CALLGRIND_DUMP_STATS_AT(job.name.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
}

}  // namespace

int main() {
  if (RUNNING_ON_VALGRIND == 0) {
    std::fputs("Instructions are counted under valgrind: start Benchmarks/Instructions/guard.py\n",
               stderr);
    return 2;
  }
  for (const auto &jobs : {benchmarks::formatsJobs, benchmarks::documentJobs,
                           benchmarks::libraryJobs, benchmarks::eventJobs, benchmarks::agentJobs}) {
    for (const benchmarks::Job &job : jobs()) {
      count(job);
    }
  }
  return 0;
}
