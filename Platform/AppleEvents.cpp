#include "Carrier.h"
#include "Descriptor.h"

#include <cstring>
#include <new>
#include <utility>

using platform::EventRecord;
using platform::OutgoingEvent;

namespace {

constexpr AESendMode replyModeMask = 0x3;

std::expected<FourCharCode, OSStatus> targetSignature(const EventRecord &event) {
  FourCharCode signature = 0;
  if (event.targetType != typeApplSignature || event.targetData.size() != sizeof signature) {
    return std::unexpected(OSStatus{errAEWrongDataType});
  }
  std::memcpy(&signature, event.targetData.view().data(), sizeof signature);
  return signature;
}

}  // namespace

OSStatus AESendMessage(const AppleEvent *event, AppleEvent *reply, AESendMode sendMode,
                       long timeOutInTicks) try {
  if (reply != nullptr) {
    AEInitializeDesc(reply);
  }
  const EventRecord *record = platform::eventRecord(event);
  if (record == nullptr) {
    return errAENotAppleEvent;
  }
  const bool wantsReply = (sendMode & replyModeMask) == kAEWaitReply;
  const bool queuesReply = (sendMode & replyModeMask) == kAEQueueReply;
  const bool modeIsOffered = wantsReply || queuesReply || (sendMode & replyModeMask) == kAENoReply;
  if (!modeIsOffered || timeOutInTicks < kNoTimeOut || (wantsReply && reply == nullptr)) {
    return paramErr;
  }
  const auto signature = targetSignature(*record);
  if (!signature) {
    return signature.error();
  }
  auto answer =
      platform::currentCarrier().send(OutgoingEvent{.targetSignature = *signature,
                                                    .eventClass = record->eventClass,
                                                    .eventID = record->eventID,
                                                    .returnID = record->returnID,
                                                    .transactionID = record->transactionID,
                                                    .parameters = record->parameters,
                                                    .wantsReply = wantsReply,
                                                    .queuesReply = queuesReply,
                                                    .timeOutInTicks = timeOutInTicks});
  if (!answer) {
    return answer.error();
  }
  if (wantsReply) {
    EventRecord replyRecord{.eventClass = kCoreEventClass, .eventID = kAEAnswer};
    replyRecord.returnID = record->returnID;
    replyRecord.transactionID = record->transactionID;
    replyRecord.parameters = *std::move(answer);
    *reply = platform::makeDescriptor(std::move(replyRecord));
  }
  return noErr;
} catch (const std::bad_alloc &) {
  return memFullErr;
}
