// Sending events by Apple's functions, as any program does.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <string>
#include <string_view>

namespace load_test {

struct Outcome {
  OSStatus status = noErr;
  /// The reply's direct object; empty when there is none.
  std::string reply;
};

/// Waits for the reply, up to two minutes.
Outcome sendAndWait(OSType target, AEEventClass eventClass, AEEventID eventID,
                    std::string_view payload);

OSStatus sendOneWay(OSType target, AEEventClass eventClass, AEEventID eventID,
                    std::string_view payload);

}  // namespace load_test
