// Every request that Mellel sends, in all its shapes, and what may come of it.
//
// The rules are spelt out here a second time, slowly and apart from the plug-in: what a payload of
// any bytes asks for, which answer it must get, and which calls may be made on the way.
#pragma once

#import "AgentTest.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plugin_test {

struct GoldenRequest {
  std::string name;
  std::string eventID;  // "SCNQ"
  std::optional<std::string> payload;
};

// All eight requests; several where one has shapes.
const std::vector<GoldenRequest> &goldenRequests();
const GoldenRequest &goldenRequestNamed(std::string_view name);

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

// Between a host that knows the golden requests' references and styles and a scripted dialog in
// which the user takes the style "Chosen".
class RequestTest : public AgentTest {
 protected:
  RequestTest();

  // Hands the event to the agent, which finds itself without a document and without a wish for
  // bibliographies.
  // What is between this test and the dispatch of the event, if anything is, has to make its call.
  using Around = std::function<void(const std::function<void()> &dispatch)>;
  Outcome deliver(std::string_view eventID, std::optional<std::string_view> payload,
                  DescType type = typeChar, const Around &around = {});
  Outcome deliver(const GoldenRequest &request) {
    return deliver(request.eventID, request.payload);
  }

  // Forgets what was recorded.
  void forget();

  // What is wrong with the outcome of a request with that payload to a host that behaves; empty
  // if nothing is.
  std::string fault(std::string_view eventID, std::optional<std::string_view> payload,
                    const Outcome &outcome) const;

  // The same where the host does not behave: whether the outcome is one of those that are
  // documented, an answer belongs to the request, and nobody is left waiting. An exception of the
  // host's must have ended the request.
  static std::string faultInForm(std::string_view eventID, std::optional<std::string_view> payload,
                                 const Outcome &outcome, bool hostThrew);

  // What the user takes in the dialog.
  void useInDialog(id<KorvoBibStyle> style);

  RecordingStyle *chosenStyle_ = nil;

 private:
  std::optional<ScriptedDialog> dialog_;
};

}  // namespace plugin_test
