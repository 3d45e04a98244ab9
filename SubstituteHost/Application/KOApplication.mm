#import <SubstituteHostApplication/KOApplication.h>

#include <string>

#include <SubstituteHostApplication/Effects.h>

namespace {

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
  if (code == NSRunStoppedResponse) return "stopped";
  if (code == NSRunAbortedResponse) return "aborted";
  return std::to_string(code);
}

}  // namespace

@implementation KOApplication

- (NSInteger)runModalForWindow:(NSWindow *)window {
  application::announce("dialog: open");
  const NSInteger code = [super runModalForWindow:window];
  application::announce("dialog: closed " + codeInWords(code));
  // Who ran the dialog comes first; the end waits for the next turn of the run loop.
  if (isEnding_) [self performSelector:@selector(endRun) withObject:nil afterDelay:0];
  return code;
}

- (void)endRun {
  isEnding_ = YES;
  if ([self modalWindow] != nil) {
    [self stopModalWithCode:0];
  } else {
    [self stop:nil];
  }
  wakeRunLoop();
}

- (void)terminate:(id)sender {
  (void)sender;
  [self endRun];
}

@end
