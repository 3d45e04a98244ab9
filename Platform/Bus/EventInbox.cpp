#include "EventInbox.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

constexpr std::size_t eventOverhead = 1024;
constexpr std::size_t parameterOverhead = 64;

std::size_t sizeOf(const IncomingEvent &event) {
  std::size_t size = eventOverhead;
  for (const Parameter &parameter : event.parameters) {
    const std::size_t least = parameter.data.memoryFile() == nullptr ? 0 : largestInlineSize;
    size += parameterOverhead + std::max(parameter.data.size(), least);
  }
  return size;
}

}  // namespace

bool EventInbox::put(WaitingEvent event) {
  const std::size_t size = sizeOf(event.event);
  if (size > largestSize_ - size_) {
    return false;
  }
  events_.push_back(std::move(event));
  size_ += size;
  return true;
}

std::optional<WaitingEvent> EventInbox::take() {
  if (events_.empty()) {
    return std::nullopt;
  }
  WaitingEvent event = std::move(events_.front());
  events_.pop_front();
  size_ -= sizeOf(event.event);
  return event;
}

}  // namespace platform
