#include "WordProcessor.h"

#include <Formats/CitationResolution.h>
#include <Formats/ScanReply.h>
#include <Formats/SmallMessages.h>
#include <Platform/AppleEventsProcess.h>
#include <Platform/AutoreleasePool.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <cstdio>
#include <cstring>

namespace {

std::string payloadOf(NSAppleEventDescriptor *event) {
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  return {static_cast<const char *>([data bytes]), [data length]};
}

void tell(const std::string &line) {
  std::puts(line.c_str());
  std::fflush(stdout);
}

// Each document and its texts: "SCNR 7 APA (Smith)".
std::string inWords(const char *event, const std::string &payload) {
  const auto reply = formats::decodeScanReply(payload);
  if (!reply) {
    return reply.error();
  }
  std::string line = event + (" " + std::to_string(reply->documentID)) + " ";
  line += reply->styleName;
  for (const std::string_view group : reply->groups) {
    line += " ";
    line += group;
  }
  return line;
}

}  // namespace

@interface WordProcessor : NSObject
@end

@implementation WordProcessor

- (void)serve:(AEEventID)eventID of:(AEEventClass)eventClass by:(SEL)selector {
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:self
                                                     andSelector:selector
                                                   forEventClass:eventClass
                                                      andEventID:eventID];
}

- (void)serveAll {
  [self serve:plugin_test::sendRequest of:plugin_test::directionClass by:@selector(send:reply:)];
  const AEEventClass mellel = formats::mellelSignature;
  [self serve:formats::answer::finalScan of:mellel by:@selector(scanned:reply:)];
  [self serve:formats::answer::citationResolution of:mellel by:@selector(resolved:reply:)];
  [self serve:formats::answer::cancel of:mellel by:@selector(cancelled:reply:)];
}

- (void)send:(NSAppleEventDescriptor *)event
       reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  const std::string direction = payloadOf(event);
  AEEventID eventID = 0;
  std::memcpy(&eventID, direction.data(), sizeof eventID);
  const std::string payload = direction.substr(sizeof eventID);
  if (eventID != formats::request::liveBibliography) {
    test_support::sendOneWay(formats::korvoSignature, formats::mellelSignature, eventID, payload);
    return;
  }
  constexpr long tenSeconds = 600;
  const auto outcome = test_support::sendAndWait(formats::korvoSignature, formats::mellelSignature,
                                                 eventID, payload, tenSeconds);
  tell(outcome.reply ? inWords("LVBQ", *outcome.reply)
                     : "LVBQ status " + std::to_string(outcome.status));
}

- (void)scanned:(NSAppleEventDescriptor *)event
          reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  tell(inWords("SCNR", payloadOf(event)));
}

- (void)resolved:(NSAppleEventDescriptor *)event
           reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  const std::string payload = payloadOf(event);
  const auto resolution = formats::decodeCitationResolution(payload);
  std::string line =
      resolution ? "PRSR " + std::to_string(resolution->documentID) : "PRSR " + resolution.error();
  if (resolution) {
    for (const formats::ResolvedCitation &resolved : resolution->citations) {
      line += " ";
      line += resolved.citation;
    }
  }
  tell(line);
}

- (void)cancelled:(NSAppleEventDescriptor *)event
            reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  const auto documentID = formats::decodeCancel(payloadOf(event));
  tell(documentID ? "Rmcr " + std::to_string(*documentID) : "Rmcr " + documentID.error());
}

@end

// Ends by itself after two minutes, or with the test.
int main() {
  const platform::AutoreleasePool pool;
  [[[[WordProcessor alloc] init] autorelease] serveAll];
  const OSStatus status = platform::startReceivingAppleEvents(formats::mellelSignature, {});
  tell(status == noErr ? "ready" : "status " + std::to_string(status));
  if (status == noErr) {
    [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:120]];
  }
  return status == noErr ? 0 : 1;
}
