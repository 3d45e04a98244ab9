// The host process of the load tests: the real plug-in, loaded as a host loads it, with an echoing
// host around it. It prints a line once it receives, and runs until its parent ends it.
#import "EchoingHost.h"
#include "LoadEvents.h"
#import "LoadEventsHandler.h"

#include <Platform/AppleEventsProcess.h>
#include <Platform/AutoreleasePool.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <cstdio>

int main() {
  const platform::AutoreleasePool pool;
  NSBundle *bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:PLUGIN_BUNDLE]];
  Class agent = [bundle principalClass];
  [agent setAdapter:[[[EchoingHost alloc] init] autorelease]];
  [[agent performSelector:@selector(defaultInstance)] start];
  LoadEventsHandler *handler = [[[LoadEventsHandler alloc] init] autorelease];
  [handler serveAll];
  const OSStatus status =
      platform::startReceivingAppleEvents(formats::korvoSignature, [handler] { [handler letGo]; });
  std::printf("%d\n", static_cast<int>(status));
  std::fflush(stdout);
  if (agent == Nil || status != noErr) {
    return 1;
  }
  [[NSRunLoop currentRunLoop] run];
  return 0;
}
