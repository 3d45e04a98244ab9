#include "EventHandlerTable.h"

#import <ApplicationServices/ApplicationServices.h>

using platform::EventHandlerTable;

@implementation NSAppleEventManager

+ (NSAppleEventManager *)sharedAppleEventManager {
  static NSAppleEventManager *manager = [[NSAppleEventManager alloc] init];
  return manager;
}

- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID {
  EventHandlerTable::shared().install({eventClass, eventID, handler, handleEventSelector});
}

- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID {
  EventHandlerTable::shared().remove(eventClass, eventID);
}

@end
