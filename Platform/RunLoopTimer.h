// A call from the run loop at a later moment.
//
// It is a kernel timer behind a descriptor and not an NSTimer: GNUstep keeps an NSTimer that was
// added to several modes, also after it fired, until each of these modes has run, and an
// application may never run its modal one.
#pragma once

#include "RunLoop.h"

#include <chrono>
#include <functional>
#include <optional>

namespace platform {

// Calls from the run loop that was current when it was told to.
class RunLoopTimer {
 public:
  explicit RunLoopTimer(std::function<void()> onTime);
  ~RunLoopTimer();
  RunLoopTimer(const RunLoopTimer &) = delete;
  RunLoopTimer &operator=(const RunLoopTimer &) = delete;

  // False when the system had no timer to give; nothing is called then.
  bool isUsable() const { return descriptor_ >= 0; }

  // Calls once, in place of a call that was due. A delay in the past is none.
  void callAfter(std::chrono::microseconds delay);
  void cancel();

 private:
  using Clock = std::chrono::steady_clock;

  void set(std::chrono::nanoseconds delay);
  void fire();

  int descriptor_;
  // Nothing while no call is due. Spares the system calls that would change nothing: the bus sets
  // its timer several times for each message, nearly always to what it is.
  std::optional<Clock::time_point> due_;
  std::function<void()> onTime_;
  // From the first call to be made until one is: each descriptor makes every turn of the run loop
  // longer.
  std::optional<RunLoopDescriptor> watch_;
};

}  // namespace platform
