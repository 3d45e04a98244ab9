#import "Hosting.h"

#import "Events.h"
#import "SmallestAdapter.h"

#include <cstdio>

static Class loadPlugin(NSString *path) {
  Class plugin = [[NSBundle bundleWithPath:path] principalClass];
  if (plugin == Nil ||
      ![plugin conformsToProtocol:@protocol(KorvoWordProcessorIntegrationPlugin)]) {
    std::fprintf(stderr, "smallest-host: %s is no word-processor plug-in\n", [path UTF8String]);
    return Nil;
  }
  return plugin;
}

bool startHosting(NSString *bundlePath) {
  Class plugin = loadPlugin(bundlePath);
  if (plugin == Nil) {
    return false;
  }
  std::printf("%s, version %ld, %s\n", [[plugin registrationName] UTF8String],
              static_cast<long>([plugin version]), [[plugin protocolType] UTF8String]);
  [plugin setAdapter:[[[SmallestAdapter alloc] init] autorelease]];
  // The plug-in has installed its handlers and got its adapter: now events may come.
  if (!receiveEvents()) {
    return false;
  }
  [[plugin performSelector:@selector(defaultInstance)] start];
  return true;
}
