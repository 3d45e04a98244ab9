#include "EventHandlers.h"

#include <Platform/EventDispatch.h>
#include <Platform/FourCharacters.h>
#include <Platform/GuardedCall.h>
#include <Platform/Log.h>

#include <map>
#include <utility>

namespace platform {
namespace {

using Handlers =
    std::map<std::pair<AEEventClass, AEEventID>, std::function<void(const IncomingEvent &)>>;

Handlers &handlers() {
  static Handlers installed;
  return installed;
}

}  // namespace

void setEventHandler(AEEventClass eventClass, AEEventID eventID,
                     std::function<void(const IncomingEvent &)> handler) {
  handlers()[{eventClass, eventID}] = std::move(handler);
}

void removeEventHandler(AEEventClass eventClass, AEEventID eventID) {
  handlers().erase({eventClass, eventID});
}

std::expected<Parameters, OSStatus> dispatchAppleEvent(const IncomingEvent &event) try {
  const auto installed = handlers().find({event.eventClass, event.eventID});
  if (installed == handlers().end()) {
    return std::unexpected(OSStatus{errAEEventNotHandled});
  }
  // A copy: the handler may set and remove handlers.
  const auto handler = installed->second;
  if (const auto exception = exceptionLeaving([&] { handler(event); })) {
    logLine("The handler of event " + inQuotes(event.eventClass) + " " + inQuotes(event.eventID) +
            " was left by an exception: " + *exception);
    return std::unexpected(OSStatus{errAEEventFailed});
  }
  return Parameters();
} catch (...) {
  // No memory to call the handler, or to say how it ended.
  return std::unexpected(OSStatus{memFullErr});
}

}  // namespace platform
