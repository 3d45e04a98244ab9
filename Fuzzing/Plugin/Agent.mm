// The whole agent, loaded as a host loads it: a conversation of any events, with a host, a memory
// and a word processor that fail where the fuzz bytes say. Each event has exactly one of its
// documented outcomes, and the next good requests are answered as if nothing had been.

#import "FuzzedHost.h"

#include <Formats/CitationResolution.h>
#include <Formats/EventTable.h>
#include <Formats/RecordMarkup.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/Unicode.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <Tests/Support/CallLog.h>
#import <Tests/Support/RecordingApplication.h>
#include <Tests/Support/RecordingCarrier.h>

#import <KorvoMellelAgent+Private.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace fuzzing {

namespace {

using Carrier = test_support::RecordingCarrier;

constexpr std::size_t longestConversation = 8;

bool memoryIsThere = true;
ScriptedScanController *dialog = nil;

void *allocate(id, SEL, std::size_t size) { return memoryIsThere ? std::calloc(size, 1) : nullptr; }

id openDialog(id, SEL, id) { return dialog; }

void discardLogLine(NSString *) {}

template <typename Function>
void replaceMethod(Class of, SEL selector, Function *function) {
  method_setImplementation(class_getInstanceMethod(of, selector),
                           reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(function)));
}

Class agentClass() {
  static const Class loaded = [] {
    _NSLog_printf_handler = discardLogLine;
    const Carrier carrier;
    NSBundle *bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:PLUGIN_BUNDLE]];
    const Class agent = [bundle principalClass];
    require(agent != Nil);
    [agent class];
    replaceMethod(agent, @selector(allocateOutgoingBytes:), allocate);
    replaceMethod(object_getClass(NSClassFromString(@"KOMellelScanController")),
                  @selector(openMellelScanControllerWithAdapter:), openDialog);
    return agent;
  }();
  return loaded;
}

// An agent as after the start of the host, with all that it talks to.
class Conversation {
 public:
  Conversation() : pool_([[NSAutoreleasePool alloc] init]), host_([[FuzzedHost alloc] init]) {
    const Class agent = agentClass();
    [[agent defaultInstance] release];
    [agent initialize];
    [agent setAdapter:host_];
    realApplication_ = NSApp;
    application_ = [[RecordingApplication alloc] init];
    NSApp = reinterpret_cast<NSApplication *>(application_);
    carrier.addProcess(formats::mellelSignature);
    carrier.sent.clear();
  }
  ~Conversation() {
    NSApp = realApplication_;
    [application_ release];
    [agentClass() setAdapter:nil];
    [host_ release];
    test_support::calls().clear();
    [pool_ drain];
  }
  Conversation(const Conversation &) = delete;
  Conversation &operator=(const Conversation &) = delete;

  FuzzedHost *host() const { return host_; }

  Carrier carrier;

 private:
  NSAutoreleasePool *pool_;
  FuzzedHost *host_;
  NSApplication *realApplication_;
  RecordingApplication *application_;
};

struct Event {
  AEEventClass eventClass = formats::mellelSignature;
  AEEventID eventID = 0;
  std::optional<std::string> payload;
  bool wantsReply = false;
  // The citations that a payload of the right form lists.
  std::optional<std::vector<std::string>> citations;
};

constexpr AEEventID eventIDs[] = {
    formats::request::preliminaryScan,  formats::request::finalScan,
    formats::request::liveBibliography, formats::request::insertCitation,
    formats::request::findCitation,     formats::request::handshake,
    formats::request::scanCitations,    formats::request::importCitations};

Event eventFrom(FuzzedData &data) {
  Event event;
  const std::size_t kind = data.choice(10);
  event.eventID = kind < std::size(eventIDs) ? eventIDs[kind] : data.number();
  event.eventClass = kind == 9 ? data.number() : event.eventClass;
  const std::size_t form = data.choice(4);
  event.wantsReply = data.flag();
  if (form == 0) {
    return event;
  }
  if (form == 1) {
    event.payload = std::string(data.text());
    return event;
  }
  const std::uint32_t documentID = data.number();
  const std::string_view styleName = data.text();
  std::vector<formats::CitationPair> pairs;
  event.citations.emplace();
  for (std::size_t count = data.choice(5); count > 0; --count) {
    pairs.push_back({data.text(), ""});
    event.citations->emplace_back(pairs.back().first);
  }
  event.payload = event.eventID == formats::request::preliminaryScan
                      ? formats::encodePreliminaryScanRequest(documentID, pairs)
                      : formats::encodeFinalScanRequest(documentID, form == 3, styleName, pairs);
  return event;
}

bool isHandled(const Event &event) {
  return event.eventClass == formats::mellelSignature &&
         std::ranges::find(eventIDs, event.eventID) != std::end(eventIDs);
}

void requireCompleteAnswer(const Event &event, AEEventID answer, std::string_view payload) {
  if (answer == formats::answer::citationResolution) {
    const auto request = formats::decodePreliminaryScanRequest(*event.payload);
    const auto resolution = formats::decodeCitationResolution(payload);
    require(resolution.has_value());
    require(resolution->documentID == request.documentID);
    require(resolution->citations.size() == request.citations.size());
    for (std::size_t index = 0; index < request.citations.size(); ++index) {
      const std::string citation =
          formats::encodeUTF8(formats::decodeUTF8(request.citations[index]));
      require(resolution->citations[index].citation == citation);
    }
    return;
  }
  const auto request = formats::decodeFinalScanRequest(*event.payload);
  const auto reply = formats::decodeScanReply(payload);
  require(reply.has_value());
  require(reply->styleName == goodStyleName);
  require(reply->groups.size() == request.citations.size());
  require(reply->bibliography.value_or(goodBibliography) == goodBibliography);
  require(!request.wantsBibliography || reply->bibliography.has_value());
}

// A preliminary scan of the right form, with nothing in its way: a text that holds a NUL ends
// there.
bool mustBeAnswered(const Event &event) {
  return event.citations && memoryIsThere && !hostScript().hasMisbehaved &&
         std::ranges::none_of(*event.citations, [](const std::string &citation) {
           return citation.find('\0') != std::string::npos;
         });
}

// What the event led to: `sent` went to the word processor, `answer` is the reply.
void requireDocumentedOutcome(const Event &event, const Carrier::Answer &answer,
                              const std::vector<platform::OutgoingEvent> &sent) {
  using namespace formats;
  if (!isHandled(event)) {
    require(answer.status == errAEEventNotHandled && sent.empty());
    return;
  }
  // Nothing that a host throws leaves a handler.
  require(answer.status == noErr);
  require(sent.size() <= 1);
  const AEEventID told = sent.empty() ? 0 : sent[0].eventID;
  const bool isCancelled = told == answer::cancel;
  const std::optional<std::string> reply = answer.directObject();
  require(!reply || event.eventID == request::liveBibliography);
  std::optional<std::string> complete;
  switch (event.eventID) {
    case request::preliminaryScan:
      require(isCancelled || told == answer::citationResolution);
      require(!isCancelled || !mustBeAnswered(event));
      break;
    case request::finalScan:
      require(isCancelled || told == answer::finalScan);
      require(event.payload || isCancelled);
      break;
    case request::liveBibliography:
      require(sent.empty() || isCancelled);
      require((reply ? 1 : 0) + (isCancelled ? 1 : 0) + (answer.errorNumber() ? 1 : 0) <= 1);
      require(!event.wantsReply || reply || isCancelled || answer.errorNumber());
      complete = reply;
      break;
    case request::insertCitation:
      require(sent.empty() ||
              (told == answer::citation && sent[0].eventClass == insertionEventClass));
      break;
    case request::handshake:
      require(told == answer::preferences);
      break;
    default:
      require(sent.empty());
  }
  if (told == answer::citationResolution || told == answer::finalScan) {
    complete = Carrier::directObject(sent[0]);
    require(complete.has_value());
  }
  if (complete && event.payload && !hostScript().hasMisbehaved) {
    requireCompleteAnswer(event, told, *complete);
  }
}

// The dialog's outcome, the memory and the word processor, for the length of one event.
void prepareSurroundings(Conversation &conversation, FuzzedData &data) {
  const unsigned troubles = data.byte();
  memoryIsThere = (troubles & 0xF0U) != 0xF0;
  conversation.carrier.sendResult = {};
  if ((troubles & 0x0FU) == 0x0F) {
    conversation.carrier.sendResult = std::unexpected(OSStatus{procNotFound});
  }
  conversation.carrier.enumerationStatus = (troubles & 0x0FU) == 0x0E ? memFullErr : noErr;
  conversation.carrier.activationStatus = (troubles & 0x0FU) == 0x0D ? procNotFound : noErr;
  [dialog release];
  dialog = [[ScriptedScanController alloc] init];
  dialog->scriptedWindow = (troubles & 0x0FU) == 0x0C ? nil : [[RecordingWindow alloc] init];
  dialog->action = static_cast<int32_t>((troubles >> 4U) % 3);
  dialog->style = (troubles & 1U) != 0 ? (id)[conversation.host() style] : nil;
}

void deliver(Conversation &conversation, FuzzedData &data) {
  const Event event = eventFrom(data);
  prepareSurroundings(conversation, data);
  hostScript() = {&data, false};
  Carrier &carrier = conversation.carrier;
  carrier.sent.clear();
  const Carrier::Answer answer =
      carrier.deliver(event.eventClass, event.eventID, event.payload, event.wantsReply);
  requireDocumentedOutcome(event, answer, carrier.sent);
  hostScript() = {};
}

void requireGoodAnswers(Conversation &conversation) {
  FuzzedData nothing({});
  prepareSurroundings(conversation, nothing);
  Carrier &carrier = conversation.carrier;
  const std::vector<formats::CitationPair> citations = {{"Smith 2001", ""}, {"a;b", ""}};
  carrier.sent.clear();
  carrier.deliver(formats::mellelSignature, formats::request::preliminaryScan,
                  formats::encodePreliminaryScanRequest(7, citations));
  require(carrier.sent.size() == 1);
  const std::string resolutionPayload = Carrier::directObject(carrier.sent[0]).value_or("");
  const auto resolution = formats::decodeCitationResolution(resolutionPayload);
  require(resolution.has_value() && resolution->documentID == 7);
  require(resolution->citations.size() == 2);
  require(formats::tagsInRecordMarkup(resolution->citations[1].markup) ==
          std::vector<std::string_view>({"a", "b"}));

  carrier.sent.clear();
  carrier.deliver(formats::mellelSignature, formats::request::finalScan,
                  formats::encodeFinalScanRequest(8, true, "any", citations));
  require(carrier.sent.size() == 1);
  const std::string replyPayload = Carrier::directObject(carrier.sent[0]).value_or("");
  const auto reply = formats::decodeScanReply(replyPayload);
  require(reply.has_value() && reply->documentID == 8);
  require(reply->groups == std::vector<std::string_view>({"(Smith 2001)", "(a; b)"}));
  require(reply->bibliography == goodBibliography);
}

}  // namespace

void run(std::string_view bytes) {
  FuzzedData data(bytes);
  Conversation conversation;
  for (std::size_t count = 0; count < longestConversation && !data.isAtEnd(); ++count) {
    deliver(conversation, data);
  }
  requireGoodAnswers(conversation);
}

}  // namespace fuzzing
