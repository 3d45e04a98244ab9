// Apple Events as plain values: what a carrier takes and what it delivers.
#pragma once

#include "SharedBytes.h"

#include <ApplicationServices/AppleEvents.h>

#include <vector>

namespace platform {

struct Parameter {
  AEKeyword keyword = 0;
  DescType type = typeNull;
  SharedBytes data{};
};

// In the order in which they were put in.
using Parameters = std::vector<Parameter>;

// The first parameter under the keyword; null when there is none.
const Parameter *findParameter(const Parameters &parameters, AEKeyword keyword);

// An event as AESendMessage was given it.
struct OutgoingEvent {
  FourCharCode targetSignature = 0;
  AEEventClass eventClass = 0;
  AEEventID eventID = 0;
  AEReturnID returnID = kAutoGenerateReturnID;
  AETransactionID transactionID = kAnyTransactionID;
  Parameters parameters{};
  bool wantsReply = false;
  // The reply comes as an event of its own, with the return ID of this one.
  bool queuesReply = false;
  // In ticks of 1/60 second, or kAEDefaultTimeout or kNoTimeOut.
  long timeOutInTicks = kNoTimeOut;
};

// An event as it arrived.
struct IncomingEvent {
  AEEventClass eventClass = 0;
  AEEventID eventID = 0;
  Parameters parameters{};
  bool wantsReply = false;
  // Of a reply that was queued: that of the event which it answers.
  AEReturnID returnID = kAutoGenerateReturnID;
};

}  // namespace platform
