// Who handles the events that arrive, in a process without Cocoa: functions, where Cocoa has
// objects that NSAppleEventManager knows.
#pragma once

#include <Platform/AppleEventMessage.h>

#include <functional>

namespace platform {

// In place of a handler for the same class and ID. An event with a wanted reply is answered
// without parameters when the function returns, and with errAEEventFailed when an exception leaves
// it.
void setEventHandler(AEEventClass eventClass, AEEventID eventID,
                     std::function<void(const IncomingEvent &)> handler);
void removeEventHandler(AEEventClass eventClass, AEEventID eventID);

}  // namespace platform
