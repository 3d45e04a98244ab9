// The other process of a measurement: a fork of this one that serves until it is ended.
#pragma once

#include <sched.h>
#include <sys/types.h>

#include <functional>

namespace benchmarks {

class Partner {
 public:
  // Runs `serve` in a new process and returns once that has called `ready`. A connection that
  // this process has open is not to be used by the new one, which ends with this one at the
  // latest.
  explicit Partner(const std::function<void(const std::function<void()> &ready)> &serve);
  ~Partner();
  Partner(const Partner &) = delete;
  Partner &operator=(const Partner &) = delete;

 private:
  pid_t number_ = -1;
};

// As long as there is one, this process and all its partners run on one processor.
class OneProcessor {
 public:
  OneProcessor();
  ~OneProcessor();
  OneProcessor(const OneProcessor &) = delete;
  OneProcessor &operator=(const OneProcessor &) = delete;

 private:
  cpu_set_t before_{};
};

}  // namespace benchmarks
