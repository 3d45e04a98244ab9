// Which object handles which event.
//
// Goes by another name at run time, as NSAppleEventDescriptor does and for the same reason.
#pragma once

#include <ApplicationServices/AEDataModel.h>
#import <Foundation/Foundation.h>

#define NSAppleEventManager KorvoAppleEventManager

@interface NSAppleEventManager : NSObject

+ (NSAppleEventManager *)sharedAppleEventManager;

// From now on events of this class and ID go to `handler`, in place of the handler that was
// there. The selector's method takes the event and the reply event, both NSAppleEventDescriptors,
// and returns nothing. The handler is not retained: it removes itself before it goes away.
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;

- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;

@end
