// The application object: announces every modal dialog, whoever runs it, ends the run loop in an
// orderly way, also while a dialog is open, and lets open menus be used with keys.
#pragma once

#import "KOMenuKeys.h"

#import <Cocoa/Cocoa.h>

#include <memory>

namespace platform {
class RunLoopTimer;
}

@interface KOApplication : NSApplication {
  int openDialogs_;
  BOOL isAskedToEnd_;  // its delegate is about to answer
  // From the first attempt to end the run loop. A pointer: GCC cannot describe an instance
  // variable with a std::function in it to the run time.
  std::unique_ptr<platform::RunLoopTimer> nextAttempt_;
  std::unique_ptr<platform::RunLoopTimer> quit_;  // from the first terminate:
  KOMenuKeys *menuKeys_;                          // from the start of the run loop
}
// Ends an open dialog as if it had been closed without an answer, and then the run loop:
// `run` returns. Asks nobody.
- (void)endRun;
// The same, if the delegate agrees (applicationShouldTerminate:): it may have something to save.
- (void)terminate:(id)sender;
@end
