#include <Platform/Bus/RunLoopTimer.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace platform {

RunLoopTimer::RunLoopTimer(std::function<void()> onTime)
    : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)),
      onTime_(std::move(onTime)) {
  if (isUsable()) {
    watch_.emplace(descriptor_, [this] { fire(); });
  }
}

RunLoopTimer::~RunLoopTimer() {
  watch_.reset();
  if (isUsable()) {
    close(descriptor_);
  }
}

void RunLoopTimer::callAfter(std::chrono::microseconds delay) {
  using namespace std::chrono;
  // A time of nothing would stop the timer.
  const nanoseconds wait = std::max<nanoseconds>(delay, nanoseconds(1));
  itimerspec setting{};
  setting.it_value.tv_sec = duration_cast<seconds>(wait).count();
  setting.it_value.tv_nsec = (wait % seconds(1)).count();
  timerfd_settime(descriptor_, 0, &setting, nullptr);
}

void RunLoopTimer::cancel() {
  const itimerspec none{};
  timerfd_settime(descriptor_, 0, &none, nullptr);
}

void RunLoopTimer::fire() {
  std::uint64_t expirations = 0;
  // Nothing to read when it was set anew since the run loop saw it.
  if (read(descriptor_, &expirations, sizeof expirations) == sizeof expirations) {
    onTime_();
  }
}

}  // namespace platform
