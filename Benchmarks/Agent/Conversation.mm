#import "Conversation.h"

#include <Formats/EventTable.h>
#include <Formats/ScanRequest.h>
#include <Platform/Carrier.h>
#include <Platform/EventDispatch.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace benchmarks {

namespace {

// Takes every event and lets it go.
class SwallowingCarrier final : public platform::Carrier {
 public:
  std::size_t bytesSent = 0;

  std::expected<platform::Parameters, OSStatus> send(
      const platform::OutgoingEvent &event) override {
    for (const platform::Parameter &parameter : event.parameters) {
      bytesSent += parameter.data.size();
    }
    return {};
  }
  std::expected<platform::Process, OSStatus> processBehind(
      std::optional<ProcessSerialNumber>) override {
    return mellelProcess;
  }
  std::expected<platform::Process, OSStatus> process(ProcessSerialNumber) override {
    return mellelProcess;
  }
  OSStatus activate(ProcessSerialNumber) override { return noErr; }

 private:
  const platform::Process mellelProcess{{0, 100}, formats::mellelSignature};
};

SwallowingCarrier &carrier() {
  static SwallowingCarrier instance;
  return instance;
}

FourCharCode eventIDOf(Kind kind) {
  switch (kind) {
    case Kind::finalScan:
      return formats::request::finalScan;
    case Kind::preliminaryScan:
      return formats::request::preliminaryScan;
    default:
      return formats::request::liveBibliography;
  }
}

std::string payloadOf(Kind kind, std::size_t citationCount, std::size_t first) {
  constexpr std::uint32_t documentID = 7;
  std::vector<std::string> texts(citationCount);
  std::vector<formats::CitationPair> citations(citationCount);
  for (std::size_t index = 0; index < citationCount; ++index) {
    texts[index] = citationAt(first + index);
    citations[index] = {texts[index], {}};
  }
  return kind == Kind::preliminaryScan
             ? formats::encodePreliminaryScanRequest(documentID, citations)
             : formats::encodeFinalScanRequest(documentID, true, "Prepared Style", citations);
}

platform::IncomingEvent requestFor(Kind kind, std::size_t citationCount, std::size_t first) {
  const std::string payload = payloadOf(kind, citationCount, first);
  auto bytes = platform::SharedBytes::copyOf(std::as_bytes(std::span(payload)));
  return {.eventClass = formats::mellelSignature,
          .eventID = eventIDOf(kind),
          .parameters = {{keyDirectObject, formats::textDescriptorType, std::move(bytes).value()}},
          .wantsReply = kind == Kind::liveBibliography};
}

}  // namespace

const char *nameOf(Kind kind) {
  switch (kind) {
    case Kind::finalScan:
      return "final scan";
    case Kind::preliminaryScan:
      return "preliminary scan";
    default:
      return "live bibliography";
  }
}

PreparedHost *startPlugin() {
  platform::setCarrier(&carrier());
  NSBundle *bundle = [NSBundle bundleWithPath:@PLUGIN_BUNDLE];
  const Class agent = [bundle principalClass];
  if (agent == Nil) {
    std::fputs("The plug-in's bundle does not load: " PLUGIN_BUNDLE "\n", stderr);
    return nil;
  }
  PreparedHost *host = [[PreparedHost alloc] init];
  [agent setAdapter:host];
  return host;
}

Conversation::Conversation(PreparedHost *host, Kind kind, std::size_t citationCount)
    : host_(host), kind_(kind), citationCount_(citationCount) {
  for (std::size_t first = 0; first < differentCitations; first += citationCount) {
    requests_.push_back(requestFor(kind, citationCount, first));
  }
}

void Conversation::prepareNext() {
  turn_ = (turn_ + 1) % requests_.size();
  [host_ prepareDocumentOfCitations:citationCount_ from:turn_ * citationCount_];
}

std::size_t Conversation::answerPrepared() {
  carrier().bytesSent = 0;
  const auto reply = platform::dispatchAppleEvent(requests_[turn_]);
  std::size_t bytes = carrier().bytesSent;
  for (const platform::Parameter &parameter : reply.value()) {
    bytes += parameter.data.size();
  }
  // Every citation takes more than a byte of any answer.
  if (bytes < citationCount_ ||
      (kind_ != Kind::preliminaryScan && ![host_ wasAskedForWholeDocument])) {
    std::fprintf(stderr, "The %s of %zu citations was not answered whole\n", nameOf(kind_),
                 citationCount_);
    std::exit(1);
  }
  return bytes;
}

}  // namespace benchmarks
