#import "TerminationSignals.h"

#import <Cocoa/Cocoa.h>
#include <sys/eventfd.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>

namespace {

// For the run loop to end everything by itself: together with the signal's own way less than a
// second.
constexpr timespec grace{.tv_sec = 0, .tv_nsec = 900'000'000};

constexpr int terminationSignals[] = {SIGTERM, SIGINT};
constexpr int endOfGrace = SIGALRM;

// For the handlers, which can reach nothing else. Written before they are installed.
int arrivals = -1;
timer_t graceTimer{};

// Handlers: only calls that POSIX allows there, and errno as it was.
void signalArrived(int /*signal*/) {
  const int error = errno;
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = write(arrivals, &one, sizeof one);
  const itimerspec once{.it_interval = {}, .it_value = grace};
  timer_settime(graceTimer, 0, &once, nullptr);
  errno = error;
}

void graceEnded(int /*signal*/) { _exit(EXIT_SUCCESS); }

bool install(int signal, void (*handler)(int)) {
  struct sigaction action{};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  return sigaction(signal, &action, nullptr) == 0;
}

bool installAll() {
  if (!install(endOfGrace, graceEnded)) {
    return false;
  }
  for (const int signal : terminationSignals) {
    if (!install(signal, signalArrived)) {
      return false;
    }
  }
  return true;
}

NSString *const watchedModes[] = {NSDefaultRunLoopMode, NSModalPanelRunLoopMode,
                                  NSEventTrackingRunLoopMode};

void *asEventData(int descriptor) {
  return reinterpret_cast<void *>(static_cast<std::uintptr_t>(descriptor));
}

}  // namespace

@implementation KOTerminationSignals

+ (BOOL)watch {
  arrivals = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  sigevent expiry{};
  expiry.sigev_notify = SIGEV_SIGNAL;
  expiry.sigev_signo = endOfGrace;
  return arrivals >= 0 && timer_create(CLOCK_MONOTONIC, &expiry, &graceTimer) == 0 && installAll();
}

- (id)initWithTarget:(id)target action:(SEL)action {
  self = [super init];
  if (self == nil) {
    return nil;
  }
  target_ = target;
  action_ = action;
  // What is started together with the application puts handlers of its own in their place.
  if (!installAll()) {
    [self release];
    return nil;
  }
  for (NSString *mode : watchedModes) {
    [[NSRunLoop currentRunLoop] addEvent:asEventData(arrivals)
                                    type:ET_RDESC
                                 watcher:(id<RunLoopEvents>)self
                                 forMode:mode];
  }
  return self;
}

- (void)dealloc {
  for (NSString *mode : watchedModes) {
    [[NSRunLoop currentRunLoop] removeEvent:asEventData(arrivals)
                                       type:ET_RDESC
                                    forMode:mode
                                        all:YES];
  }
  [super dealloc];
}

- (void)receivedEvent:(void *)data
                 type:(RunLoopEventType)type
                extra:(void *)extra
              forMode:(NSString *)mode {
  (void)data;
  (void)type;
  (void)extra;
  (void)mode;
  std::uint64_t count = 0;
  if (read(arrivals, &count, sizeof count) == static_cast<ssize_t>(sizeof count)) {
    [target_ performSelector:action_];
  }
}

@end
