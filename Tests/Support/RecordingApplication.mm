#import "RecordingApplication.h"

#include "CallLog.h"

using test_support::logCall;

namespace test_support {

std::function<void()> &duringModalLoop() {
  static std::function<void()> action;
  return action;
}

}  // namespace test_support

@implementation KOMainWindowController
@end
@implementation KOReferenceEditorWindowController
@end
@implementation KOMainWindowControllerOfAnother
@end

@implementation RecordingWindow
- (id)delegate {
  return windowDelegate;
}
- (NSInteger)level {
  return windowLevel;
}
- (void)setLevel:(NSInteger)level {
  logCall("setLevel " + std::to_string(level));
  windowLevel = level;
}
- (void)center {
  logCall("center");
}
- (void)orderFrontRegardless {
  logCall("orderFrontRegardless");
}
- (void)makeKeyAndOrderFront:(id)__attribute__((unused)) sender {
  logCall("makeKeyAndOrderFront");
}
- (void)close {
  logCall("close");
}
@end

@implementation RecordingApplication
- (id)init {
  self = [super init];
  allWindows = [[NSMutableArray alloc] init];
  return self;
}
- (void)dealloc {
  [allWindows release];
  [super dealloc];
}
- (NSArray *)windows {
  return allWindows;
}
- (BOOL)isHidden {
  logCall("isHidden");
  return hidden;
}
- (void)hide:(id)__attribute__((unused)) sender {
  logCall("hide");
}
- (void)unhide:(id)__attribute__((unused)) sender {
  logCall("unhide");
}
- (void)activateIgnoringOtherApps:(BOOL)flag {
  logCall(flag ? "activateIgnoringOtherApps YES" : "activateIgnoringOtherApps NO");
}
- (void)deactivate {
  logCall("deactivate");
}
- (NSInteger)runModalForWindow:(NSWindow *)__attribute__((unused)) window {
  logCall("runModal");
  if (test_support::duringModalLoop()) {
    test_support::duringModalLoop()();
  }
  return -1000;
}
@end

@implementation ScriptedScanController
- (void)dealloc {
  [scriptedWindow release];
  [super dealloc];
}
- (id)window {
  return scriptedWindow;
}
- (int32_t)chosenAction {
  logCall("chosenAction");
  return action;
}
- (id)selectedBibStyle {
  logCall("selectedBibStyle");
  return style;
}
@end
