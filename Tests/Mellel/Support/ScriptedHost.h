// The host at the other end of the commands, in the test's own process: it answers each request as
// a good host does, unless the test says otherwise for that kind of request.
//
// Everything is real from the request that leaves to the event that the handlers of the commands
// get; in place of the bus stand a recording carrier and ProcessWithoutBus.h.
#pragma once

#include <Formats/EventTable.h>
#include <Tests/Support/RecordingCarrier.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace mellel_test {

// One event to the word processor. To a live bibliography the first is the reply itself.
struct Answer {
  formats::FourCharacterCode eventClass = 0;
  formats::FourCharacterCode eventID = 0;
  std::optional<std::string> payload;  // without one there is no direct object
  DescType type = formats::bufferDescriptorType;
};

class ScriptedHost {
 public:
  ScriptedHost();

  // Gets the good answer and the document it is for, 0 where it is for none, and says what is sent
  // in its place.
  using Script = std::function<std::vector<Answer>(const Answer &good, std::uint32_t documentID)>;
  void answer(formats::FourCharacterCode request, Script script) {
    scripts_[request] = std::move(script);
  }
  void answerWell() { scripts_.clear(); }

  // Delivers an event at once. The status that its sender would get.
  OSStatus deliver(const Answer &answer);

  // How often each kind was asked for.
  std::map<formats::FourCharacterCode, std::size_t> requests;

 private:
  void serve(const platform::OutgoingEvent &event);
  void reply(const std::vector<Answer> &answers);

  test_support::RecordingCarrier carrier_;
  std::map<formats::FourCharacterCode, Script> scripts_;
};

// The good answers, byte by byte, to a document with three citations.
std::string goodResolution(std::uint32_t documentID);
std::string goodScanReply(std::uint32_t documentID);
std::string goodCitation();
std::string goodPreferences();
std::string goodCancel(std::uint32_t documentID);

}  // namespace mellel_test
