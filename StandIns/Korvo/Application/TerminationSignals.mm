#import "TerminationSignals.h"

#import <Cocoa/Cocoa.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <iterator>

namespace {

sigset_t terminationSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  return signals;
}

NSString *const watchedModes[] = {NSDefaultRunLoopMode, NSModalPanelRunLoopMode,
                                  NSEventTrackingRunLoopMode};

void *asEventData(int descriptor) {
  return reinterpret_cast<void *>(static_cast<std::uintptr_t>(descriptor));
}

}  // namespace

@implementation KOTerminationSignals

+ (void)block {
  const sigset_t signals = terminationSignals();
  sigprocmask(SIG_BLOCK, &signals, nullptr);
}

- (id)initWithTarget:(id)target action:(SEL)action {
  self = [super init];
  if (self == nil) {
    return nil;
  }
  target_ = target;
  action_ = action;
  const sigset_t signals = terminationSignals();
  descriptor_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor_ < 0) {
    [self release];
    return nil;
  }
  for (NSString *mode : watchedModes) {
    [[NSRunLoop currentRunLoop] addEvent:asEventData(descriptor_)
                                    type:ET_RDESC
                                 watcher:(id<RunLoopEvents>)self
                                 forMode:mode];
  }
  return self;
}

- (void)dealloc {
  if (descriptor_ >= 0) {
    for (NSString *mode : watchedModes) {
      [[NSRunLoop currentRunLoop] removeEvent:asEventData(descriptor_)
                                         type:ET_RDESC
                                      forMode:mode
                                          all:YES];
    }
    close(descriptor_);
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
  signalfd_siginfo received;
  if (read(descriptor_, &received, sizeof received) == static_cast<ssize_t>(sizeof received)) {
    [target_ performSelector:action_];
  }
}

@end
