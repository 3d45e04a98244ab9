// The word processor's process as a test directs it: what it is sent it tells on its standard
// output, a line each, and what it is told to send it sends to the host.
#pragma once

#include <Formats/EventTable.h>
#include <Tests/Support/EventSending.h>

#include <string>
#include <string_view>

namespace plugin_test {

// The test's own event to the word processor: the ID of a request, as it lies in memory, and the
// request's payload.
inline constexpr AEEventClass directionClass = formats::fourCharacterCode("TEST");
inline constexpr AEEventID sendRequest = formats::fourCharacterCode("send");

// The process must run. It sends the request without a wanted reply; the live bibliography's answer
// alone is a reply, for which it waits.
inline OSStatus haveSent(AEEventID request, std::string_view payload) {
  std::string direction(reinterpret_cast<const char *>(&request), sizeof request);
  direction += payload;
  return test_support::sendOneWay(formats::mellelSignature, directionClass, sendRequest, direction);
}

}  // namespace plugin_test
