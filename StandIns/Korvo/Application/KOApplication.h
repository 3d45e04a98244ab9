// The application object: announces every modal dialog, whoever runs it, and ends the run
// loop in an orderly way, also while a dialog is open.
#pragma once

#import <Cocoa/Cocoa.h>

@interface KOApplication : NSApplication {
  int openDialogs_;
}
// Ends an open dialog as if it had been closed without an answer, and then the run loop:
// `run` returns.
- (void)endRun;
@end
