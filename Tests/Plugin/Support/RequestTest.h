// Requests handed to the agent, and what comes of them.
#pragma once

#import "AgentTest.h"
#include "GoldenRequests.h"
#include "Outcome.h"

#include <functional>
#include <optional>
#include <string_view>

namespace plugin_test {

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

  // What the user takes in the dialog.
  void useInDialog(id<KorvoBibStyle> style);

  RecordingStyle *chosenStyle_ = nil;

 private:
  std::optional<ScriptedDialog> dialog_;
};

}  // namespace plugin_test
