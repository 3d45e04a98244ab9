// SIGTERM and SIGINT end the program: from the run loop, which closes windows and dialogs, or,
// where no run loop comes to it within a second, at once.
//
// The program runs on one thread, and this one can be busy for long: it reads a library from a pipe
// that nobody fills, formats ten thousand citations, follows a mouse button that is held down. A
// signal handler may do next to nothing there. But to end the process is one of the few things it
// may do, and nothing is lost by it: what is saved is in SQLite's files, which are whole whenever
// the process ends, and every line of output is flushed as it is printed.
#pragma once

#import <Foundation/Foundation.h>

@interface KOTerminationSignals : NSObject {
  id target_;  // not retained
  SEL action_;
}
// From here on the signals end the program, with status 0. False when the system refuses.
+ (BOOL)watch;
// `action`, without arguments, is sent from the run loop, in whichever mode it is.
- (id)initWithTarget:(id)target action:(SEL)action;
@end
