// The time that work takes of the processor: on a crowded machine the clock on the wall tells how
// crowded it is.
#pragma once

#include <sys/resource.h>

#include <chrono>
#include <initializer_list>

namespace test_support {

// Of this process, and of its children that have ended and were waited for.
inline std::chrono::duration<double> processorTime() {
  std::chrono::microseconds sum{};
  for (const auto whose : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage{};
    getrusage(whose, &usage);
    for (const timeval &part : {usage.ru_utime, usage.ru_stime}) {
      sum += std::chrono::seconds(part.tv_sec) + std::chrono::microseconds(part.tv_usec);
    }
  }
  return sum;
}

}  // namespace test_support
