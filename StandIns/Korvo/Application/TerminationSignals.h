// SIGTERM and SIGINT, brought into the run loop.
//
// A signal handler may do next to nothing. Here the signals are blocked and read from a
// descriptor that the run loop watches, in every mode that it may be in.
#pragma once

#import <Foundation/Foundation.h>

@interface KOTerminationSignals : NSObject {
  int descriptor_;
  id target_;  // not retained
  SEL action_;
}
// From before any other thread is started, so that none of them takes the signals.
+ (void)block;
// `action`, without arguments, is sent from the run loop. nil when the system refuses.
- (id)initWithTarget:(id)target action:(SEL)action;
@end
