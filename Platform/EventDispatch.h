// The way of an event that arrived to its handler, and what became of it.
#pragma once

#include "AppleEventMessage.h"

#include <expected>
#include <string>
#include <vector>

namespace platform {

// Runs the handler that NSAppleEventManager has for the event (without Cocoa: the one of
// WithoutCocoa/EventHandlers.h), to completion, and returns the parameters of the reply (none when
// no reply was wanted). errAEEventNotHandled when there is no handler; errAEEventFailed when an
// exception left it, which has then been logged.
std::expected<Parameters, OSStatus> dispatchAppleEvent(const IncomingEvent &event);

struct InstalledHandler {
  AEEventClass eventClass = 0;
  AEEventID eventID = 0;
  // The handler object; not retained.
  void *target = nullptr;
  // The name of its selector.
  std::string selector;
};

// The handlers that NSAppleEventManager has (there is no such list without Cocoa), the one
// installed longest ago first.
std::vector<InstalledHandler> installedEventHandlers();

}  // namespace platform
