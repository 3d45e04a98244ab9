// Sockets that GNUstep listens on for other programs of the desktop: another korvo on the same
// display, the servers of the pasteboard and of notifications.
//
// GNUstep accepts a connection once its run loop has seen that one waits. While it handles
// something else first, and runs the loop once more within that to wait for an answer, the
// connection is accepted there, and then a second time by the loop outside: korvo would stand still
// until somebody else connects. GNUstep is ready for an accept that finds nothing, but lets it wait
// for ever. So the sockets are told not to wait.
#pragma once

#import <Foundation/Foundation.h>

@interface KOListeningPorts : NSObject
// From now on, for every port that a connection is made with.
+ (void)neverWait;
@end
