// The smallest host: one reference, one style, no windows of its own.
//
//   smallest-host BUNDLE
//
// loads the plug-in, prints what it says of itself and "ready", and serves the word processor until
// it is ended by a signal.

#import "Hosting.h"

#import <Cocoa/Cocoa.h>

#include <cstdio>

int main(int argc, char **argv) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  // AppKit takes what stands behind it, such as -AppleLanguages.
  if (argc < 2) {
    std::fprintf(stderr, "usage: smallest-host BUNDLE\n");
    return 2;
  }
  // AppKit would take the path for a document to open.
  [[NSUserDefaults standardUserDefaults]
      registerDefaults:[NSDictionary dictionaryWithObject:@"NO"
                                                   forKey:@"NSTreatUnknownArgumentsAsOpen"]];
  [NSApplication sharedApplication];
  if (!startHosting([NSString stringWithUTF8String:argv[1]])) {
    return 1;
  }
  std::puts("ready");
  std::fflush(stdout);
  [NSApp run];
  [pool drain];
  return 0;
}
