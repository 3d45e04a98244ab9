#import "LoadEventsHandler.h"

#include "LoadEvents.h"

#include <Platform/AutoreleasePool.h>
#include <Tests/Support/LiveBytes.h>

#import <ApplicationServices/ApplicationServices.h>
#include <fcntl.h>
#import <Foundation/NSDebug.h>

#include <cstdlib>
#include <string>

namespace {

bool isHeld = false;

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

}  // namespace

@implementation LoadEventsHandler

- (void)serve:(AEEventID)eventID by:(SEL)selector {
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:self
                                                     andSelector:selector
                                                   forEventClass:load_test::loadClass
                                                      andEventID:eventID];
}

- (void)serveAll {
  [self serve:load_test::liveBytesEvent by:@selector(liveBytes:reply:)];
  [self serve:load_test::countObjectsEvent by:@selector(countObjects:reply:)];
  [self serve:load_test::liveTimersEvent by:@selector(liveTimers:reply:)];
  [self serve:load_test::newObjectsEvent by:@selector(newObjects:reply:)];
  [self serve:load_test::holdEvent by:@selector(hold:reply:)];
  [self serve:load_test::leakEvent by:@selector(leak:reply:)];
  [self serve:load_test::leakTimerEvent by:@selector(leakTimer:reply:)];
  [self serve:load_test::leakDescriptorEvent by:@selector(leakDescriptor:reply:)];
}

- (void)letGo {
  isHeld = false;
}

- (void)liveBytes:(NSAppleEventDescriptor *)__attribute__((unused)) event
            reply:(NSAppleEventDescriptor *)reply {
  answer(reply, std::to_string(test_support::liveBytes()));
}

- (void)countObjects:(NSAppleEventDescriptor *)__attribute__((unused)) event
               reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  GSDebugAllocationActive(YES);
}

- (void)liveTimers:(NSAppleEventDescriptor *)__attribute__((unused)) event
             reply:(NSAppleEventDescriptor *)reply {
  answer(reply, std::to_string(GSDebugAllocationCount([NSTimer class])));
}

- (void)newObjects:(NSAppleEventDescriptor *)__attribute__((unused)) event
             reply:(NSAppleEventDescriptor *)reply {
  answer(reply, GSDebugAllocationList(YES));
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

// As a timer that was added to several modes is, when one of them never runs.
- (void)leakTimer:(NSAppleEventDescriptor *)__attribute__((unused)) event
            reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  NSTimer *timer = [NSTimer timerWithTimeInterval:0
                                           target:self
                                         selector:@selector(letGo)
                                         userInfo:nil
                                          repeats:NO];
  [[NSRunLoop currentRunLoop] addTimer:timer forMode:@"A mode that never runs"];
}

- (void)leakDescriptor:(NSAppleEventDescriptor *)__attribute__((unused)) event
                 reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  open("/dev/null", O_RDONLY | O_CLOEXEC);
}

@end
