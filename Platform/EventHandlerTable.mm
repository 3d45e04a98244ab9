#include "EventHandlerTable.h"

#include <algorithm>

namespace platform {

EventHandlerTable &EventHandlerTable::shared() {
  static EventHandlerTable table;
  return table;
}

void EventHandlerTable::install(const EventHandler &handler) {
  remove(handler.eventClass, handler.eventID);
  handlers_.push_back(handler);
}

void EventHandlerTable::remove(AEEventClass eventClass, AEEventID eventID) {
  std::erase_if(handlers_, [=](const EventHandler &handler) {
    return handler.eventClass == eventClass && handler.eventID == eventID;
  });
}

const EventHandler *EventHandlerTable::find(AEEventClass eventClass, AEEventID eventID) const {
  const auto found = std::ranges::find_if(handlers_, [=](const EventHandler &handler) {
    return handler.eventClass == eventClass && handler.eventID == eventID;
  });
  return found == handlers_.end() ? nullptr : &*found;
}

}  // namespace platform
