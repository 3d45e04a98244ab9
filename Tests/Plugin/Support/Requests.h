// Every request that Mellel sends, in all its shapes, and what may come of it.
//
// The rules are spelt out here a second time, slowly and apart from the plug-in: what a payload of
// any bytes asks for, which answer it must get, and which calls may be made on the way.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#import "AgentTest.h"

namespace plugin_test {

struct GoldenRequest {
  std::string name;
  std::string eventID;  // "SCNQ"
  std::optional<std::string> payload;
};

// All eight requests; several where one has shapes.
const std::vector<GoldenRequest> &goldenRequests();

// Everything that was seen of the agent during one request.
struct Outcome {
  OSStatus status = noErr;
  // Of the reply event.
  std::optional<std::string> reply;
  std::vector<std::string> events;  // "SCNR"
  std::vector<std::optional<std::string>> payloads;
  std::size_t activations = 0;
  std::vector<std::string> calls;  // see CallLog.h

  bool operator==(const Outcome &) const = default;
};
std::ostream &operator<<(std::ostream &stream, const Outcome &outcome);

// Between a host that knows the golden requests' references and styles and a scripted dialog in
// which the user takes the style "Chosen".
class RequestTest : public AgentTest {
 protected:
  RequestTest();

  // Hands the event to the agent, which finds itself without a document and without a wish for
  // bibliographies.
  Outcome deliver(std::string_view eventID, std::optional<std::string_view> payload,
                  DescType type = typeChar);
  Outcome deliver(const GoldenRequest &request) {
    return deliver(request.eventID, request.payload);
  }

  // What is wrong with the outcome of a request with that payload to a host that behaves; empty
  // if nothing is.
  std::string fault(std::string_view eventID, std::optional<std::string_view> payload,
                    const Outcome &outcome) const;

  RecordingStyle *chosenStyle_ = nil;

 private:
  std::optional<ScriptedDialog> dialog_;
};

}  // namespace plugin_test
