// What may come of a request. The rules are spelt out here a second time, slowly and apart from the
// plug-in: what a payload of any bytes asks for, which answer it must get, and which calls may be
// made on the way.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace plugin_test {

// Everything that was seen of the agent during one request.
struct Outcome {
  OSStatus status = noErr;
  // Of the reply event.
  std::optional<std::string> reply;
  std::optional<SInt32> errorNumber;
  std::vector<std::string> events;  // "SCNR"
  std::vector<std::optional<std::string>> payloads;
  std::size_t activations = 0;
  std::vector<std::string> calls;  // see CallLog.h
  // Lines in the log that tell of an exception.
  std::size_t exceptionsLogged = 0;

  bool operator==(const Outcome &) const = default;
};
std::ostream &operator<<(std::ostream &stream, const Outcome &outcome);

// What is wrong with the outcome of a request with that payload to a host that behaves; empty
// if nothing is.
std::string fault(std::string_view eventID, std::optional<std::string_view> payload,
                  const Outcome &outcome);

// The same where the host does not behave: whether the outcome is one of those that are documented,
// an answer belongs to the request, and nobody is left waiting. An exception of the host's must
// have ended the request.
std::string faultInForm(std::string_view eventID, std::optional<std::string_view> payload,
                        const Outcome &outcome, bool hostThrew);

}  // namespace plugin_test
