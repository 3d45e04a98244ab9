// What an AEDesc's handle points at, and the way between descriptors and plain values.
#pragma once

#include "AppleEventMessage.h"

#include <variant>

namespace platform {

// What a descriptor of typeAppleEvent holds.
struct EventRecord {
  AEEventClass eventClass = 0;
  AEEventID eventID = 0;
  DescType targetType = typeNull;
  SharedBytes targetData{};
  AEReturnID returnID = kAutoGenerateReturnID;
  AETransactionID transactionID = kAnyTransactionID;
  Parameters parameters{};
};

// Null unless the descriptor is an event.
EventRecord *eventRecord(const AEDesc *descriptor);

// Empty for an event and for the null descriptor.
SharedBytes descriptorData(const AEDesc *descriptor);

// To be disposed of by the caller. These throw std::bad_alloc.
AEDesc makeDescriptor(DescType type, SharedBytes data);
AEDesc makeDescriptor(EventRecord event);

}  // namespace platform

struct OpaqueAEDataStorage {
  std::variant<platform::SharedBytes, platform::EventRecord> contents;
};
