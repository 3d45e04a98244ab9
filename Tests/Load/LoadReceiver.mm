// The host process of the load tests: the real plug-in, loaded as a host loads it, with an echoing
// host around it. It prints a line once it receives, and runs until its parent ends it.
#import "EchoingHost.h"
#include "LoadEvents.h"

#include <Platform/AppleEventsProcess.h>
#include <Platform/AutoreleasePool.h>
#include <Tests/Support/LiveBytes.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

bool isHeld = false;

std::string payloadOf(NSAppleEventDescriptor *event) {
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  return {static_cast<const char *>([data bytes]), [data length]};
}

}  // namespace

@interface LoadEventsHandler : NSObject
@end

@implementation LoadEventsHandler

- (void)serve:(AEEventID)eventID by:(SEL)selector {
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:self
                                                     andSelector:selector
                                                   forEventClass:load_test::loadClass
                                                      andEventID:eventID];
}

- (void)liveBytes:(NSAppleEventDescriptor *)__attribute__((unused)) event
            reply:(NSAppleEventDescriptor *)reply {
  const std::string digits = std::to_string(test_support::liveBytes());
  [reply setDescriptor:[NSAppleEventDescriptor descriptorWithDescriptorType:typeChar
                                                                      bytes:digits.data()
                                                                     length:digits.size()]
            forKeyword:keyDirectObject];
}

- (void)hold:(NSAppleEventDescriptor *)event
       reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  const double seconds = std::strtod(payloadOf(event).c_str(), nullptr);
  NSDate *end = [NSDate dateWithTimeIntervalSinceNow:seconds];
  isHeld = true;
  while (isHeld && [end timeIntervalSinceNow] > 0) {
    const platform::AutoreleasePool pool;
    [[NSRunLoop currentRunLoop] runMode:@"NSModalPanelRunLoopMode" beforeDate:end];
  }
}

- (void)leak:(NSAppleEventDescriptor *)event
       reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  [[maybe_unused]] static void *volatile lost = nullptr;
  lost = std::malloc(std::strtoul(payloadOf(event).c_str(), nullptr, 10));
  lost = nullptr;
}

@end

int main() {
  const platform::AutoreleasePool pool;
  NSBundle *bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:PLUGIN_BUNDLE]];
  Class agent = [bundle principalClass];
  [agent setAdapter:[[[EchoingHost alloc] init] autorelease]];
  [[agent performSelector:@selector(defaultInstance)] start];
  LoadEventsHandler *handler = [[[LoadEventsHandler alloc] init] autorelease];
  [handler serve:load_test::liveBytesEvent by:@selector(liveBytes:reply:)];
  [handler serve:load_test::holdEvent by:@selector(hold:reply:)];
  [handler serve:load_test::leakEvent by:@selector(leak:reply:)];
  const OSStatus status =
      platform::startReceivingAppleEvents(formats::korvoSignature, [] { isHeld = false; });
  std::printf("%d\n", static_cast<int>(status));
  std::fflush(stdout);
  if (agent == Nil || status != noErr) {
    return 1;
  }
  [[NSRunLoop currentRunLoop] run];
  return 0;
}
