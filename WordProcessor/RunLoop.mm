#include "RunLoop.h"

#import <Foundation/Foundation.h>
#include <Platform/AutoreleasePool.h>

#include <algorithm>
#include <cstdint>
#include <utility>

// The run loop wants an object; it passes on to the callback, which it borrows.
@interface DescriptorWatcher : NSObject <RunLoopEvents> {
 @private
  const void *_onReadable;
}
- (instancetype)initWithCallback:(const std::function<void()> *)onReadable;
@end

@implementation DescriptorWatcher

- (instancetype)initWithCallback:(const std::function<void()> *)onReadable {
  self = [super init];
  if (self != nil) {
    _onReadable = onReadable;
  }
  return self;
}

- (void)receivedEvent:(void *)data
                 type:(RunLoopEventType)type
                extra:(void *)extra
              forMode:(NSString *)mode {
  (void)data;
  (void)type;
  (void)extra;
  (void)mode;
  (*static_cast<const std::function<void()> *>(_onReadable))();
}

@end

namespace wordprocessor {

namespace {

void *loopDataOf(int descriptor) {
  return reinterpret_cast<void *>(static_cast<std::uintptr_t>(descriptor));
}

// Far enough to make no difference, near enough for every clock.
constexpr std::chrono::hours longTime{24};

}  // namespace

bool runLoopUntil(const std::function<bool()> &condition,
                  std::optional<Progress::Clock::time_point> deadline, Progress &progress) {
  for (;;) {
    if (condition()) {
      return true;
    }
    const auto now = Progress::Clock::now();
    if (deadline && now >= *deadline) {
      return false;
    }
    const auto wake =
        std::min(deadline.value_or(now + longTime), progress.due().value_or(now + longTime));
    const platform::AutoreleasePool pool;
    const std::chrono::duration<double> wait = std::max(wake - now, Progress::Clock::duration(0));
    [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                             beforeDate:[NSDate dateWithTimeIntervalSinceNow:wait.count()]];
    progress.tick();
  }
}

class DescriptorWatch::State {
 public:
  State(int descriptor, std::function<void()> onReadable)
      : descriptor_(descriptor),
        onReadable_(std::move(onReadable)),
        watcher_([[DescriptorWatcher alloc] initWithCallback:&onReadable_]) {
    [[NSRunLoop currentRunLoop] addEvent:loopDataOf(descriptor_)
                                    type:ET_RDESC
                                 watcher:watcher_
                                 forMode:NSDefaultRunLoopMode];
  }
  ~State() {
    [[NSRunLoop currentRunLoop] removeEvent:loopDataOf(descriptor_)
                                       type:ET_RDESC
                                    forMode:NSDefaultRunLoopMode
                                        all:YES];
    [watcher_ release];
  }
  State(const State &) = delete;
  State &operator=(const State &) = delete;
  State(State &&) = delete;
  State &operator=(State &&) = delete;

 private:
  int descriptor_;
  std::function<void()> onReadable_;
  DescriptorWatcher *watcher_;
};

DescriptorWatch::DescriptorWatch(int descriptor, std::function<void()> onReadable)
    : state_(std::make_unique<State>(descriptor, std::move(onReadable))) {}

DescriptorWatch::~DescriptorWatch() = default;

}  // namespace wordprocessor
