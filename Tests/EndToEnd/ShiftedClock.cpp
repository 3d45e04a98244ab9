// Preloaded into a program: its wall clock is wrong by as many seconds as the file says that
// KORVO_CLOCK names, from one moment to the next. The clocks that no one can set stay right.
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <cstdlib>

namespace {

time_t shift() {
  static const int file = [] {
    const char *name = std::getenv("KORVO_CLOCK");
    return name == nullptr ? -1 : open(name, O_RDONLY | O_CLOEXEC);
  }();
  char digits[32] = {};
  if (file < 0 || pread(file, digits, sizeof digits - 1, 0) <= 0) {
    return 0;
  }
  return std::atol(digits);
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec *now) noexcept {
  const long result = syscall(SYS_clock_gettime, clock, now);
  if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)) {
    now->tv_sec += shift();
  }
  return static_cast<int>(result);
}

int gettimeofday(timeval *now, void *) noexcept {
  timespec time{};
  const int result = clock_gettime(CLOCK_REALTIME, &time);
  *now = {time.tv_sec, time.tv_nsec / 1000};
  return result;
}

time_t time(time_t *now) noexcept {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  if (now != nullptr) {
    *now = time.tv_sec;
  }
  return time.tv_sec;
}
}
