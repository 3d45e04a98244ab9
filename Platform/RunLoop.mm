#include "RunLoop.h"

#include <Platform/AutoreleasePool.h>

#import <Foundation/Foundation.h>

#include <array>
#include <cstdint>

// Hands the run loop's message on to a function.
@interface KorvoRunLoopTarget : NSObject <RunLoopEvents> {
 @public
  void (*_function)(void *);
  void *_context;
}
@end

@implementation KorvoRunLoopTarget

- (void)receivedEvent:(void *)data
                 type:(RunLoopEventType)type
                extra:(void *)extra
              forMode:(NSString *)mode {
  (void)data;
  (void)type;
  (void)extra;
  (void)mode;
  // The function may release the object that this one belongs to.
  [[self retain] autorelease];
  if (_function != nullptr) {
    _function(_context);
  }
}

@end

namespace platform {
namespace {

// AppKit's modes by their values: a tool without AppKit has the bus too.
std::array<NSString *, 3> servedModes() {
  return {NSDefaultRunLoopMode, @"NSModalPanelRunLoopMode", @"NSEventTrackingRunLoopMode"};
}

KorvoRunLoopTarget *newTarget(void (*function)(void *), void *context) {
  KorvoRunLoopTarget *target = [[KorvoRunLoopTarget alloc] init];
  target->_function = function;
  target->_context = context;
  return target;
}

void watch(void *runLoop, int descriptor, RunLoopEventType type, KorvoRunLoopTarget *target) {
  for (NSString *mode : servedModes()) {
    [static_cast<NSRunLoop *>(runLoop)
        addEvent:reinterpret_cast<void *>(static_cast<std::uintptr_t>(descriptor))
            type:type
         watcher:target
         forMode:mode];
  }
}

void unwatch(void *runLoop, int descriptor, RunLoopEventType type) {
  for (NSString *mode : servedModes()) {
    [static_cast<NSRunLoop *>(runLoop)
        removeEvent:reinterpret_cast<void *>(static_cast<std::uintptr_t>(descriptor))
               type:type
            forMode:mode
                all:YES];
  }
}

}  // namespace

RunLoopDescriptor::RunLoopDescriptor(int descriptor, std::function<void()> onReady)
    : descriptor_(descriptor),
      onReady_(std::move(onReady)),
      runLoop_([[NSRunLoop currentRunLoop] retain]),
      target_(newTarget(fire, this)) {
  const AutoreleasePool pool;
  watch(runLoop_, descriptor_, ET_RDESC, static_cast<KorvoRunLoopTarget *>(target_));
}

RunLoopDescriptor::~RunLoopDescriptor() {
  const AutoreleasePool pool;
  setWatchesWriting(false);
  unwatch(runLoop_, descriptor_, ET_RDESC);
  KorvoRunLoopTarget *target = static_cast<KorvoRunLoopTarget *>(target_);
  target->_function = nullptr;
  [target release];
  [static_cast<NSRunLoop *>(runLoop_) release];
}

void RunLoopDescriptor::setWatchesWriting(bool watches) {
  if (watches == watchesWriting_) {
    return;
  }
  const AutoreleasePool pool;
  watchesWriting_ = watches;
  if (watches) {
    watch(runLoop_, descriptor_, ET_WDESC, static_cast<KorvoRunLoopTarget *>(target_));
  } else {
    unwatch(runLoop_, descriptor_, ET_WDESC);
  }
}

void RunLoopDescriptor::fire(void *self) { static_cast<RunLoopDescriptor *>(self)->onReady_(); }

}  // namespace platform
