// Events that have arrived and wait for their handlers, in order.
//
// An event waits while another one's handler runs, and a handler may sit in a dialog for hours. So
// the inbox is bounded: by bytes, because one document's payload can weigh as much as a million
// small events. What costs more than bytes is counted as bytes: each event and each parameter a
// little, each memory file at least a mebibyte, since each is a mapping of its own.
#pragma once

#include "BusHandles.h"

#include <Platform/AppleEventMessage.h>

#include <cstddef>
#include <deque>
#include <optional>

namespace platform {

// Holds a document of more than a hundred megabytes, twice.
inline constexpr std::size_t largestInboxSize = std::size_t{256} * 1024 * 1024;

struct WaitingEvent {
  IncomingEvent event;
  // What to answer to: the message, or its return address. None for a reply.
  Message request;
};

class EventInbox {
 public:
  explicit EventInbox(std::size_t largestSize = largestInboxSize) : largestSize_(largestSize) {}

  // False, and the event is not taken, when there is no room for it.
  [[nodiscard]] bool put(WaitingEvent event);

  // The event that has waited longest.
  std::optional<WaitingEvent> take();

  bool isEmpty() const { return events_.empty(); }

 private:
  std::size_t largestSize_;
  std::size_t size_ = 0;
  std::deque<WaitingEvent> events_;
};

}  // namespace platform
