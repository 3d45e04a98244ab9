#import "KOApplication.h"

#include "Effects.h"

#include <Platform/RunLoopTimer.h>

#include <chrono>
#include <string>

namespace {

constexpr auto timeBetweenAttempts = std::chrono::milliseconds(50);

// The run loop, a modal one too, looks at its state only after an event.
void wakeRunLoop() {
  NSEvent *event = [NSEvent otherEventWithType:NSApplicationDefined
                                      location:NSZeroPoint
                                 modifierFlags:0
                                     timestamp:0
                                  windowNumber:0
                                       context:nil
                                       subtype:0
                                         data1:0
                                         data2:0];
  [NSApp postEvent:event atStart:NO];
}

// "stopped" and "aborted" are the two codes that AppKit itself ends a dialog with.
std::string codeInWords(NSInteger code) {
  if (code == NSRunStoppedResponse) {
    return "stopped";
  }
  if (code == NSRunAbortedResponse) {
    return "aborted";
  }
  return std::to_string(code);
}

}  // namespace

@implementation KOApplication

- (NSInteger)runModalForWindow:(NSWindow *)window {
  korvo::application::announce("dialog: open");
  ++openDialogs_;
  // GUI 0.32 gives no keys to a window that is not visible when its session begins.
  if (![window isVisible]) {
    [window center];
    [window orderFrontRegardless];
  }
  const NSInteger code = [super runModalForWindow:window];
  --openDialogs_;
  korvo::application::announce("dialog: closed " + codeInWords(code));
  return code;
}

- (void)endRun {
  if (openDialogs_ == 0) {
    [self stop:nil];
  } else if ([self modalWindow] != nil) {
    [self stopModalWithCode:0];
  }
  wakeRunLoop();
  // Again a moment later, until `run` has returned: neither a run loop nor a dialog that is
  // only just starting can be stopped yet, and who ran a dialog has its turn before the end.
  if (nextAttempt_ == nullptr) {
    nextAttempt_ = std::make_unique<platform::RunLoopTimer>([self] { [self endRun]; });
  }
  nextAttempt_->callAfter(timeBetweenAttempts);
}

- (void)run {
  [super run];
  if (nextAttempt_ != nullptr) {
    nextAttempt_->cancel();
  }
}

- (void)endIfDelegateAgrees {
  // The question whether to save may be open already.
  if (isAskedToEnd_) {
    return;
  }
  id delegate = [self delegate];
  if ([delegate respondsToSelector:@selector(applicationShouldTerminate:)]) {
    isAskedToEnd_ = YES;
    const NSApplicationTerminateReply reply = [delegate applicationShouldTerminate:self];
    isAskedToEnd_ = NO;
    if (reply != NSTerminateNow) {
      return;
    }
  }
  [self endRun];
}

// A moment later: the menu that it was chosen from would stay open below a question.
- (void)terminate:(id)sender {
  (void)sender;
  if (quit_ == nullptr) {
    quit_ = std::make_unique<platform::RunLoopTimer>([self] { [self endIfDelegateAgrees]; });
  }
  quit_->callAfter(std::chrono::microseconds(0));
}

- (void)finishLaunching {
  [super finishLaunching];
  menuKeys_ = [[KOMenuKeys alloc] init];
}

- (void)dealloc {
  [menuKeys_ release];
  [super dealloc];
}

- (void)sendEvent:(NSEvent *)event {
  if ([event type] != NSKeyDown || ![menuKeys_ giveKey:event toOpenMenuOf:[self keyWindow]]) {
    [super sendEvent:event];
  }
}

// A method of its own: GCC 12 cannot compile a message to super within a loop.
- (NSEvent *)nextEventOrKeyMatchingMask:(NSUInteger)mask untilDate:(NSDate *)date {
  return [super nextEventMatchingMask:mask | NSKeyDownMask
                            untilDate:date
                               inMode:NSEventTrackingRunLoopMode
                              dequeue:YES];
}

- (NSEvent *)nextEventMatchingMask:(NSUInteger)mask
                         untilDate:(NSDate *)date
                            inMode:(NSString *)mode
                           dequeue:(BOOL)dequeue {
  if (![menuKeys_ isMenuHeldOpen] || !dequeue || ![mode isEqual:NSEventTrackingRunLoopMode]) {
    return [super nextEventMatchingMask:mask untilDate:date inMode:mode dequeue:dequeue];
  }
  if (NSEvent *choice = [menuKeys_ choiceToRepeat]) {
    return choice;
  }
  while (true) {
    NSEvent *event = [self nextEventOrKeyMatchingMask:mask untilDate:date];
    if (event == nil) {
      return nil;
    }
    if (NSEvent *given = [menuKeys_ eventForMenu:event]) {
      return given;
    }
  }
}

@end
