// Sending events by Apple's functions, as any program does.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <optional>
#include <string>
#include <string_view>

namespace test_support {

struct Outcome {
  OSStatus status = noErr;
  // The direct object of the reply, if there was one.
  std::optional<std::string> reply;
  DescType replyType = typeNull;
};

// The payload is the direct object. Waits for the reply; the time is in sixtieths of a second.
Outcome sendAndWait(OSType target, AEEventClass eventClass, AEEventID eventID,
                    std::string_view payload, long timeOutInTicks);

OSStatus sendOneWay(OSType target, AEEventClass eventClass, AEEventID eventID,
                    std::string_view payload);

}  // namespace test_support
