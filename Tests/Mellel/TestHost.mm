// A host for the tests of the commands: it formats {X} as (X) and lists every citation in the
// bibliography, unless a scenario, its only argument, tells it to misbehave. Each request is one
// line on standard output. It ends with its parent, or after two minutes.
#include <Formats/CitationResolution.h>
#include <Formats/EventTable.h>
#include <Formats/Insertion.h>
#include <Formats/PayloadWriter.h>
#include <Formats/RecordMarkup.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Formats/SmallMessages.h>
#include <Formats/Unicode.h>
#include <Platform/AppleEventsProcess.h>
#include <Platform/AutoreleasePool.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#include <unistd.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace {

std::string scenario;

bool isScenario(std::string_view name) { return scenario == name; }

void tell(const std::string &line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

std::string payloadOf(NSAppleEventDescriptor *event) {
  NSData *const data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  return {static_cast<const char *>([data bytes]), [data length]};
}

void send(formats::FourCharacterCode eventClass, formats::FourCharacterCode eventID,
          std::string_view payload) {
  AEDesc target{};
  AppleEvent event{};
  AECreateDesc(typeApplSignature, &formats::mellelSignature, sizeof formats::mellelSignature,
               &target);
  AECreateAppleEvent(eventClass, eventID, &target, kAutoGenerateReturnID, kAnyTransactionID,
                     &event);
  AEPutParamPtr(&event, keyDirectObject, typeChar, payload.data(),
                static_cast<Size>(payload.size()));
  AESendMessage(&event, nullptr, kAENoReply, kNoTimeOut);
  AEDisposeDesc(&event);
  AEDisposeDesc(&target);
}

void activateMellel() {
  ProcessSerialNumber number{0, kNoProcess};
  while (GetNextProcess(&number) == noErr) {
    ProcessInfoRec information{};
    information.processInfoLength = sizeof information;
    if (GetProcessInformation(&number, &information) == noErr &&
        information.processSignature == formats::mellelSignature) {
      SetFrontProcess(&number);
      return;
    }
  }
}

void cancel(std::uint32_t documentID) {
  const auto payload = formats::encodeCancel(documentID);
  send(formats::mellelSignature, formats::answer::cancel, {payload.data(), payload.size()});
  activateMellel();
}

// Writes a payload of whatever size the writing needs.
template <typename Write>
std::string payloadWritten(Write write) {
  formats::PayloadWriter measure({});
  write(measure);
  std::string payload(measure.written(), '\0');
  formats::PayloadWriter writer(payload);
  write(writer);
  return payload;
}

void sendResolution(const formats::PreliminaryScanRequest &request, std::uint32_t documentID) {
  send(formats::mellelSignature, formats::answer::citationResolution,
       payloadWritten([&](formats::PayloadWriter &writer) {
         formats::writeCitationResolutionHeader(
             writer, documentID, static_cast<std::uint32_t>(request.citations.size()));
         for (const std::string_view citation : request.citations) {
           writer.writeStringUTF8(citation);
           writer.writeString(formats::recordMarkupForComponents(formats::decodeUTF8(citation)));
         }
       }));
}

std::string pidginOf(std::string_view citation) {
  if (isScenario("unbalanced")) {
    return "(x}";
  }
  if (citation.find("Nobody") != citation.npos) {
    return "\\'7b " + std::string(citation) + "\\'7d ";
  }
  if (citation.starts_with('!') || isScenario("empty")) {
    return "";
  }
  if (isScenario("sentences")) {
    return "See {\\i " + std::string(citation) + "}.";
  }
  return "({\\i " + std::string(citation) + "})";
}

std::string bibliographyOf(const formats::FinalScanRequest &request) {
  if (isScenario("broken-bibliography")) {
    return "no RTF";
  }
  std::string rtf = "{\\rtf1\\ansi{\\fonttbl\\f0\\fnil Sans;}\\f0\\fs24\\pard\\li720\\fi-720 ";
  for (const std::string_view citation : request.citations) {
    rtf += "Entry " + std::string(citation) + ".\\par\n";
  }
  return rtf + '}';
}

std::string scanReplyTo(const formats::FinalScanRequest &request, std::uint32_t documentID) {
  std::vector<std::string> groups;
  for (const std::string_view citation : request.citations) {
    groups.push_back(pidginOf(citation));
  }
  if (isScenario("too-few") && !groups.empty()) {
    groups.pop_back();
  }
  const bool hasBibliography = request.wantsBibliography && !isScenario("no-bibliography");
  const std::u16string style =
      formats::decodeUTF8(isScenario("other-style") ? "Another Style" : request.styleName);
  std::string payload = payloadWritten([&](formats::PayloadWriter &writer) {
    formats::writeScanReplyHeader(
        writer, {documentID, false, hasBibliography, style.empty() ? u"Default" : style,
                 static_cast<std::uint32_t>(groups.size())});
    for (const std::string &group : groups) {
      writer.writeStringUTF8(group);
    }
    if (hasBibliography) {
      writer.writeBytes(bibliographyOf(request));
    }
  });
  if (isScenario("cut-short")) {
    payload.resize(20);
  }
  return payload;
}

std::string described(std::string_view request, bool wantsBibliography, std::string_view style,
                      const std::vector<std::string_view> &citations) {
  std::string line(request);
  line += wantsBibliography ? " bibliography" : "";
  line += style.empty() ? "" : " in " + std::string(style);
  for (const std::string_view citation : citations) {
    line += " {" + std::string(citation) + '}';
  }
  return line;
}

}  // namespace

@interface TestHost : NSObject
@end

@implementation TestHost

- (void)serve:(AEEventID)eventID by:(SEL)selector {
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:self
                                                     andSelector:selector
                                                   forEventClass:formats::mellelSignature
                                                      andEventID:eventID];
}

- (void)serveAll {
  [self serve:formats::request::preliminaryScan by:@selector(preliminaryScan:reply:)];
  [self serve:formats::request::finalScan by:@selector(finalScan:reply:)];
  [self serve:formats::request::insertCitation by:@selector(insertCitation:reply:)];
  [self serve:formats::request::findCitation by:@selector(findCitation:reply:)];
  [self serve:formats::request::handshake by:@selector(handshake:reply:)];
  if (!isScenario("no-live")) {
    [self serve:formats::request::liveBibliography by:@selector(liveBibliography:reply:)];
  }
}

- (void)preliminaryScan:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  const std::string payload = payloadOf(event);
  const auto request = formats::decodePreliminaryScanRequest(payload);
  tell(described("preliminary scan", false, "", request.citations));
  if (isScenario("silent")) {
    return;
  }
  if (isScenario("ends-in-preliminary-scan")) {
    _exit(0);
  }
  if (isScenario("cancels-preliminary-scan")) {
    cancel(request.documentID);
    return;
  }
  if (isScenario("late-answers")) {
    sendResolution(request, request.documentID + 1);
    cancel(request.documentID - 1);
  }
  sendResolution(request, request.documentID + (isScenario("other-document") ? 1 : 0));
}

- (void)finalScan:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  const std::string payload = payloadOf(event);
  const auto request = formats::decodeFinalScanRequest(payload);
  tell(described("final scan", request.wantsBibliography, request.styleName, request.citations));
  if (isScenario("ends-in-final-scan")) {
    _exit(0);
  }
  if (isScenario("cancels-final-scan")) {
    cancel(request.documentID);
    return;
  }
  if (isScenario("slow")) {
    usleep(600'000);
  }
  if (isScenario("shows-dialog")) {
    usleep(1'400'000);
  }
  if (isScenario("late-answers")) {
    cancel(request.documentID + 1);
    send(formats::mellelSignature, formats::answer::finalScan,
         scanReplyTo(request, request.documentID - 1));
  }
  send(formats::mellelSignature, formats::answer::finalScan,
       scanReplyTo(request, request.documentID));
  activateMellel();
}

- (void)liveBibliography:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  const std::string payload = payloadOf(event);
  const auto request = formats::decodeLiveBibliographyRequest(payload);
  tell(described("live", request.wantsBibliography, request.styleName, request.citations));
  if (isScenario("ends-in-live")) {
    _exit(0);
  }
  if (isScenario("cancels-live")) {
    cancel(0);
    return;
  }
  if (isScenario("slow")) {
    usleep(600'000);
  }
  const std::string answer = scanReplyTo(request, isScenario("other-document") ? 1 : 0);
  [reply setDescriptor:[NSAppleEventDescriptor descriptorWithDescriptorType:typeChar
                                                                      bytes:answer.data()
                                                                     length:answer.size()]
            forKeyword:keyDirectObject];
  activateMellel();
}

- (void)insertCitation:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  tell([event paramDescriptorForKeyword:keyDirectObject] == nil ? "insert" : "insert with payload");
  if (!isScenario("nothing-selected")) {
    const std::u16string citation = isScenario("one-selected") ? u"Müller 2002" : u"{A;B}";
    const std::u16string markup = formats::recordMarkupForInsertion(citation);
    send(formats::insertionEventClass, formats::answer::citation,
         payloadWritten([&](formats::PayloadWriter &writer) {
           formats::writeInsertion(writer, citation, markup);
         }));
  }
  activateMellel();
}

- (void)findCitation:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  const std::string payload = payloadOf(event);
  tell("find " + payload.substr(0, payload.find('\0')) +
       (payload.ends_with('\0') ? "" : " (no NUL)"));
  activateMellel();
}

- (void)handshake:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  tell("handshake of " + std::to_string(payloadOf(event).size()) + " bytes");
  const auto preferences = formats::encodePreferences();
  send(formats::mellelSignature, formats::answer::preferences,
       {preferences.data(), preferences.size()});
}

@end

int main(int argc, char *argv[]) {
  const platform::AutoreleasePool pool;
  scenario = argc > 1 ? argv[1] : "";
  TestHost *const host = [[[TestHost alloc] init] autorelease];
  [host serveAll];
  const OSStatus status = platform::startReceivingAppleEvents(formats::korvoSignature, [] {});
  tell(status == noErr ? "ready" : "status " + std::to_string(status));
  if (status != noErr) {
    return 1;
  }
  [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:120]];
  return 0;
}
