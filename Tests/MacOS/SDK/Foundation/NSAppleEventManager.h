#pragma once

#import <Foundation/NSAppleEventDescriptor.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager *)sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@property(nullable, readonly, retain) NSAppleEventDescriptor *currentAppleEvent;
@end

NS_ASSUME_NONNULL_END
