// What the load tests ask of a host process beside the plug-in's requests: how it is, and to go
// wrong on purpose. See LoadEvents.h.
#pragma once

#import <Foundation/Foundation.h>

// Kept by whoever makes it as long as it shall answer.
@interface LoadEventsHandler : NSObject

// From now on, in a process that receives Apple Events.
- (void)serveAll;

// Ends a hold.
- (void)letGo;

@end
