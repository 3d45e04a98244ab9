// One of many senders: LoadSender HOST SENDER FIRST COUNT sends COUNT small requests, each with a
// number of its own, and checks that it gets the answers to exactly these. Most are live
// bibliographies, whose answer comes in the reply; one in ten is a preliminary scan, answered to
// the word processor by an event with the number in it; one in ten a handshake.
#include "LoadEvents.h"
#include "LoadNumbers.h"

#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/SmallMessages.h>
#include <Tests/Support/EventSending.h>

#include <cstdio>
#include <cstdlib>

using namespace load_test;
using test_support::Outcome;
using test_support::sendAndWait;
using test_support::sendOneWay;

namespace {

bool isAnswered(Asked host, std::uint32_t number) {
  const std::string text = citationText(host, number);
  const formats::CitationPair citation{text, ""};
  switch (kindOf(number)) {
    case Kind::preliminaryScan:
      return sendOneWay(korvoSignature, formats::mellelSignature, formats::request::preliminaryScan,
                        formats::encodePreliminaryScanRequest(number, {&citation, 1})) == noErr;
    case Kind::handshake: {
      const auto payload = formats::encodeHandshake({});
      return sendAndWait(korvoSignature, formats::mellelSignature, formats::request::handshake,
                         {payload.data(), payload.size()}, replyTimeOut)
                 .status == noErr;
    }
    case Kind::liveBibliography:
      break;
  }
  const Outcome outcome = sendAndWait(
      korvoSignature, formats::mellelSignature, formats::request::liveBibliography,
      formats::encodeLiveBibliographyRequest(number, false, styleOf(host), {&citation, 1}),
      replyTimeOut);
  const std::string payload = outcome.reply.value_or("");
  const auto reply = formats::decodeScanReply(payload);
  return outcome.status == noErr && reply && reply->groups.size() == 1 &&
         isFormatted(host, number, reply->groups.front());
}

}  // namespace

int main(int count, char **arguments) {
  if (count != 5) {
    std::fputs("usage: LoadSender echo|korvo SENDER FIRST COUNT\n", stderr);
    return 2;
  }
  const Asked host = std::string_view(arguments[1]) == "korvo" ? Asked::korvo : Asked::echo;
  const auto sender = static_cast<std::uint32_t>(std::strtoul(arguments[2], nullptr, 10));
  const auto first = static_cast<std::uint32_t>(std::strtoul(arguments[3], nullptr, 10));
  const auto amount = static_cast<std::uint32_t>(std::strtoul(arguments[4], nullptr, 10));
  std::uint32_t answered = 0;
  for (std::uint32_t index = first; index < first + amount; ++index) {
    if (isAnswered(host, numberOf(sender, index))) {
      ++answered;
    } else {
      std::fprintf(stderr, "sender %u: event %u was not answered, or not with its own answer\n",
                   sender, index);
    }
  }
  const std::string done = std::to_string(sender) + " " + std::to_string(answered);
  return sendOneWay(formats::mellelSignature, loadClass, doneEvent, done) == noErr ? 0 : 1;
}
