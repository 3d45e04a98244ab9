// The handlers that are installed, behind NSAppleEventManager. An object of it holds no reference
// to the handler objects.
#pragma once

#include <ApplicationServices/AEDataModel.h>
#import <Foundation/Foundation.h>

#include <vector>

namespace platform {

struct EventHandler {
  AEEventClass eventClass = 0;
  AEEventID eventID = 0;
  id target = nil;
  SEL selector = nullptr;
};

class EventHandlerTable {
 public:
  // The one behind the shared manager.
  static EventHandlerTable &shared();

  // In place of the handler for the same class and ID, which loses its place in the order.
  void install(const EventHandler &handler);
  void remove(AEEventClass eventClass, AEEventID eventID);

  // Null when there is none. Valid until the next change.
  const EventHandler *find(AEEventClass eventClass, AEEventID eventID) const;

  // The one installed longest ago first.
  const std::vector<EventHandler> &all() const { return handlers_; }

 private:
  std::vector<EventHandler> handlers_;
};

}  // namespace platform
