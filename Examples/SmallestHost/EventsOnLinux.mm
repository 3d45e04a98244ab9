#import "Events.h"

#import <Platform/AppleEventsProcess.h>

#import <Cocoa/Cocoa.h>

#include <cstdio>

bool receiveEvents() {
  constexpr FourCharCode hostSignature = 'K' << 24 | 'R' << 16 | 'V' << 8 | 'O';
  const OSStatus status = platform::startReceivingAppleEvents(
      hostSignature, [] { [NSApp activateIgnoringOtherApps:YES]; });
  if (status != noErr) {
    std::fprintf(stderr, "smallest-host: cannot receive Apple Events (%d)\n",
                 static_cast<int>(status));
    return false;
  }
  return true;
}
