// The application object: announces every modal dialog, whoever runs it, and ends the run
// loop in an orderly way, also while a dialog is open.
#pragma once

#import <Cocoa/Cocoa.h>

#include <memory>

namespace platform {
class RunLoopTimer;
}

@interface KOApplication : NSApplication {
  int openDialogs_;
  // From the first attempt to end the run loop. A pointer: GCC cannot describe an instance
  // variable with a std::function in it to the run time.
  std::unique_ptr<platform::RunLoopTimer> nextAttempt_;
}
// Ends an open dialog as if it had been closed without an answer, and then the run loop:
// `run` returns.
- (void)endRun;
@end
