#import "Events.h"

#import <Cocoa/Cocoa.h>

#include <cstdio>

// The system reads the signature from the application's Info.plist, and AppKit receives the events.
// A copy of the program alone, without its bundle around it, would wait for ever.
bool receiveEvents() {
  NSString *signature = [[NSBundle mainBundle] objectForInfoDictionaryKey:@"CFBundleSignature"];
  if (![signature isEqual:@"KRVO"]) {
    std::fputs("smallest-host: cannot receive Apple Events outside of SmallestHost.app\n", stderr);
    return false;
  }
  return true;
}
