#import "InModalLoop.h"

#include <Platform/AutoreleasePool.h>

#import <Cocoa/Cocoa.h>

#include <utility>

@interface ModalLoopTimer : NSObject {
 @public
  void (*_function)(void *);
  void *_context;
  NSTimer *_timer;
}
@end

// What a timer changed is not looked at until an event comes, and then it takes one more turn of
// the run loop.
@implementation ModalLoopTimer
- (void)fire:(NSTimer *)__attribute__((unused)) timer {
  if (_function != nullptr) {
    _function(_context);
  }
  [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                      location:NSZeroPoint
                                 modifierFlags:0
                                     timestamp:0
                                  windowNumber:0
                                       context:nil
                                       subtype:0
                                         data1:0
                                         data2:0]
           atStart:NO];
  [[NSRunLoop currentRunLoop] addTimer:[NSTimer timerWithTimeInterval:0
                                                               target:self
                                                             selector:@selector(turn:)
                                                             userInfo:nil
                                                              repeats:NO]
                               forMode:NSModalPanelRunLoopMode];
}
- (void)turn:(NSTimer *)__attribute__((unused)) timer {
}
@end

namespace plugin_test {

InModalLoop::InModalLoop(double secondsBetween, std::function<bool()> function)
    : function_(std::move(function)), timer_([[ModalLoopTimer alloc] init]) {
  const platform::AutoreleasePool pool;
  ModalLoopTimer *target = static_cast<ModalLoopTimer *>(timer_);
  target->_function = call;
  target->_context = this;
  target->_timer = [[NSTimer timerWithTimeInterval:secondsBetween
                                            target:target
                                          selector:@selector(fire:)
                                          userInfo:nil
                                           repeats:YES] retain];
  [[NSRunLoop currentRunLoop] addTimer:target->_timer forMode:NSModalPanelRunLoopMode];
}

InModalLoop::~InModalLoop() {
  ModalLoopTimer *target = static_cast<ModalLoopTimer *>(timer_);
  target->_function = nullptr;
  [target->_timer invalidate];
  [target->_timer release];
  [target release];
}

void InModalLoop::call(void *self) {
  InModalLoop *loop = static_cast<InModalLoop *>(self);
  if (loop->function_()) {
    [static_cast<ModalLoopTimer *>(loop->timer_)->_timer invalidate];
  }
}

}  // namespace plugin_test
