#include "RunLoopTimer.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace platform {

RunLoopTimer::RunLoopTimer(std::function<void()> onTime)
    : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)),
      onTime_(std::move(onTime)) {}

RunLoopTimer::~RunLoopTimer() {
  watch_.reset();
  if (isUsable()) {
    close(descriptor_);
  }
}

void RunLoopTimer::callAfter(std::chrono::microseconds delay) {
  const auto now = Clock::now();
  const auto due = now + delay;
  const bool isDueAlready = due_ && *due_ <= now;
  if (isDueAlready && due <= now) {
    return;
  }
  due_ = due;
  if (!watch_ && isUsable()) {
    watch_.emplace(descriptor_, [this] { fire(); });
  }
  // A time of nothing would stop the timer.
  set(std::max<std::chrono::nanoseconds>(delay, std::chrono::nanoseconds(1)));
}

void RunLoopTimer::cancel() {
  if (due_) {
    due_.reset();
    set(std::chrono::nanoseconds(0));
  }
}

void RunLoopTimer::set(std::chrono::nanoseconds delay) {
  using namespace std::chrono;
  itimerspec setting{};
  setting.it_value.tv_sec = duration_cast<seconds>(delay).count();
  setting.it_value.tv_nsec = (delay % seconds(1)).count();
  timerfd_settime(descriptor_, 0, &setting, nullptr);
}

void RunLoopTimer::fire() {
  std::uint64_t expirations = 0;
  // Nothing to read when it was set anew since the run loop saw it.
  if (read(descriptor_, &expirations, sizeof expirations) == sizeof expirations) {
    due_.reset();
    watch_.reset();
    onTime_();
  }
}

}  // namespace platform
