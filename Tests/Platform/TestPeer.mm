// The other process of the tests: it serves the events of TestEvents.h until its parent ends it, or
// for two minutes.
#include "TestEvents.h"

#include <Platform/AppleEventsProcess.h>
#include <Platform/AutoreleasePool.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

using namespace platform_test;

namespace {

std::string notes;

std::string payloadOf(NSAppleEventDescriptor *event) {
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  return {static_cast<const char *>([data bytes]), [data length]};
}

void answer(NSAppleEventDescriptor *reply, const std::string &text) {
  [reply setDescriptor:[NSAppleEventDescriptor descriptorWithDescriptorType:typeChar
                                                                      bytes:text.data()
                                                                     length:text.size()]
            forKeyword:keyDirectObject];
}

void note(const std::string &text) { notes += text + "\n"; }

double milliseconds(NSAppleEventDescriptor *event) {
  return std::strtod(payloadOf(event).c_str(), nullptr);
}

}  // namespace

@interface TestPeer : NSObject
@end

@implementation TestPeer

- (void)serve:(AEEventID)eventID by:(SEL)selector {
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:self
                                                     andSelector:selector
                                                   forEventClass:testClass
                                                      andEventID:eventID];
}

- (void)serveAll {
  [self serve:echoEvent by:@selector(echo:reply:)];
  [self serve:noteEvent by:@selector(note:reply:)];
  [self serve:notesEvent by:@selector(notes:reply:)];
  [self serve:nestEvent by:@selector(nest:reply:)];
  [self serve:sleepEvent by:@selector(sleep:reply:)];
  [self serve:askBackEvent by:@selector(askBack:reply:)];
  [self serve:noteBackEvent by:@selector(noteBack:reply:)];
  [self serve:raiseEvent by:@selector(raise:reply:)];
  [self serve:throwEvent by:@selector(throw:reply:)];
  [self serve:stopEvent by:@selector(stop:reply:)];
  [self serve:dieEvent by:@selector(die:reply:)];
}

- (void)echo:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  [reply setDescriptor:[event paramDescriptorForKeyword:keyDirectObject]
            forKeyword:keyDirectObject];
}

- (void)note:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  note(payloadOf(event) + ([reply descriptorType] == typeNull ? "" : " with reply"));
}

- (void)notes:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)event;
  answer(reply, notes);
  notes.clear();
}

- (void)nest:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  note("nest");
  NSDate *end = [NSDate dateWithTimeIntervalSinceNow:milliseconds(event) / 1000];
  while ([end timeIntervalSinceNow] > 0) {
    [[NSRunLoop currentRunLoop] runMode:@"NSModalPanelRunLoopMode" beforeDate:end];
  }
  note("nested");
  answer(reply, "done");
}

- (void)sleep:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(milliseconds(event)));
  answer(reply, "awake");
}

- (void)askBack:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  const Outcome outcome = sendAndWait(testSignature, echoEvent, payloadOf(event));
  sendOneWay(testSignature, noteEvent,
             outcome.reply.value_or("status " + std::to_string(outcome.status)));
}

- (void)noteBack:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  const OSStatus status = sendOneWay(testSignature, noteEvent, payloadOf(event));
  answer(reply, std::to_string(status));
}

- (void)raise:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)event;
  (void)reply;
  [NSException raise:NSGenericException format:@"on purpose"];
}

- (void)throw:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)event;
  (void)reply;
  throw std::runtime_error("on purpose");
}

- (void)stop:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)event;
  (void)reply;
  platform::stopReceivingAppleEvents();
}

- (void)die:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)event;
  (void)reply;
  _exit(0);
}

@end

int main() {
  const platform::AutoreleasePool pool;
  TestPeer *peer = [[[TestPeer alloc] init] autorelease];
  [peer serveAll];
  const OSStatus status =
      platform::startReceivingAppleEvents(peerSignature, [] { note("activated"); });
  std::printf("%d\n", static_cast<int>(status));
  std::fflush(stdout);
  if (status != noErr) {
    return 1;
  }
  [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:120]];
  return 0;
}
