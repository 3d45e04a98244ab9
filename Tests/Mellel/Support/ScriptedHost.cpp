#include "ScriptedHost.h"

#include <Formats/ScanRequest.h>

namespace mellel_test {

namespace {

using namespace std::string_literals;
using test_support::RecordingCarrier;

std::string bytesOf(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(number >> shift & 0xFF);
  }
  return bytes;
}

Answer goodAnswerTo(formats::FourCharacterCode request, std::uint32_t documentID) {
  switch (request) {
    case formats::request::preliminaryScan:
      return {formats::mellelSignature, formats::answer::citationResolution,
              goodResolution(documentID)};
    case formats::request::finalScan:
      return {formats::mellelSignature, formats::answer::finalScan, goodScanReply(documentID)};
    case formats::request::liveBibliography:
      return {formats::mellelSignature, formats::answer::finalScan, goodScanReply(0)};
    case formats::request::insertCitation:
      return {formats::insertionEventClass, formats::answer::citation, goodCitation()};
    case formats::request::handshake:
      return {formats::mellelSignature, formats::answer::preferences, goodPreferences()};
    default:
      return {};
  }
}

bool isAboutDocument(formats::FourCharacterCode request) {
  return request == formats::request::preliminaryScan || request == formats::request::finalScan;
}

platform::Parameters parametersOf(const Answer &answer) {
  if (!answer.payload) {
    return {};
  }
  auto data = platform::SharedBytes::copyOf(std::as_bytes(std::span(*answer.payload)));
  return {{keyDirectObject, answer.type, std::move(*data)}};
}

}  // namespace

ScriptedHost::ScriptedHost() {
  carrier_.onSend = [this](const platform::OutgoingEvent &event) { serve(event); };
}

void ScriptedHost::serve(const platform::OutgoingEvent &event) {
  ++requests[event.eventID];
  const std::string payload = RecordingCarrier::directObject(event).value_or("");
  carrier_.sent.clear();
  const std::uint32_t documentID =
      isAboutDocument(event.eventID) ? formats::documentIDOfScanRequest(payload) : 0;
  const Answer good = goodAnswerTo(event.eventID, documentID);
  const auto script = scripts_.find(event.eventID);
  std::vector<Answer> answers = {good};
  if (script != scripts_.end()) {
    answers = script->second(good, documentID);
  }
  if (event.wantsReply) {
    reply(answers);
    return;
  }
  for (const Answer &answer : answers) {
    deliver(answer);
  }
}

void ScriptedHost::reply(const std::vector<Answer> &answers) {
  carrier_.sendResult = answers.empty() ? platform::Parameters() : parametersOf(answers.front());
  for (std::size_t index = 1; index < answers.size(); ++index) {
    deliver(answers[index]);
  }
}

OSStatus ScriptedHost::deliver(const Answer &answer) {
  const platform::IncomingEvent event{answer.eventClass, answer.eventID, parametersOf(answer),
                                      false};
  return carrier_.deliver(event).status;
}

std::string goodResolution(std::uint32_t documentID) {
  const auto records = [](const std::string &tag) {
    return "<records><korvo>" + tag + "</korvo><korvo>x</korvo></records>\0"s;
  };
  return "\0\0"s + bytesOf(documentID) + bytesOf(3) + "Smith 2001\0"s + records("Smith\xC3\xA9") +
         "Nobody\0"s + "\0"s + "!S\0"s + records("!S");
}

std::string goodScanReply(std::uint32_t documentID) {
  return "\0\0"s + bytesOf(documentID) + "\0\0\0\0"s + "\0\0\xFF\0"s + "Styl\xC3\xA9\0"s +
         bytesOf(3) +
         "({\\i Sm} {\\b\\super 2}\\uc0\\u8211 "
         "\\u-3913 {\\ul\\sub 3} \\'7b x\\'7d , \xC3\xA9\\\ny)\0"s
         "\\'7b Nobody\\'7d \0"s
         "\0"s
         "{\\rtf1\\ansi{\\fonttbl\\f0\\fnil Sans;}\\f0\\fs24\\pard\\li720\\fi-720 "
         "A. {\\i T}.\\tab \\u233?b\\par\n\\pard B.\\par\n}";
}

std::string goodCitation() { return "{A 1;\xC3\xA9}\0<korvo>A 1</korvo>\0"s; }

std::string goodPreferences() { return "\0\0\0\5\0\0\xFF\xFF\0\0\0\0\0\1"s; }

std::string goodCancel(std::uint32_t documentID) { return "\0\0"s + bytesOf(documentID); }

}  // namespace mellel_test
