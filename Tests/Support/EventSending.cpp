#include "EventSending.h"

#include <Platform/OwnedDescriptor.h>

namespace test_support {
namespace {

using platform::OwnedDescriptor;

OSStatus makeEvent(OSType signature, AEEventClass eventClass, AEEventID eventID,
                   std::string_view payload, OwnedDescriptor &event) {
  OwnedDescriptor target;
  OSStatus status = AECreateDesc(typeApplSignature, &signature, sizeof signature, &target);
  if (status == noErr) {
    status = AECreateAppleEvent(eventClass, eventID, &target, kAutoGenerateReturnID,
                                kAnyTransactionID, &event);
  }
  if (status == noErr) {
    status = AEPutParamPtr(&event, keyDirectObject, typeChar, payload.data(),
                           static_cast<Size>(payload.size()));
  }
  return status;
}

}  // namespace

Outcome sendAndWait(OSType target, AEEventClass eventClass, AEEventID eventID,
                    std::string_view payload, long timeOutInTicks) {
  OwnedDescriptor event;
  OwnedDescriptor reply;
  Outcome outcome;
  outcome.status = makeEvent(target, eventClass, eventID, payload, event);
  if (outcome.status == noErr) {
    outcome.status = AESendMessage(&event, &reply, kAEWaitReply, timeOutInTicks);
  }
  OwnedDescriptor answer;
  if (outcome.status == noErr &&
      AEGetParamDesc(&reply, keyDirectObject, typeWildCard, &answer) == noErr) {
    outcome.replyType = answer.descriptorType;
    outcome.reply.emplace(static_cast<std::size_t>(AEGetDescDataSize(&answer)), '\0');
    AEGetDescData(&answer, outcome.reply->data(), AEGetDescDataSize(&answer));
  }
  return outcome;
}

OSStatus sendOneWay(OSType target, AEEventClass eventClass, AEEventID eventID,
                    std::string_view payload) {
  OwnedDescriptor event;
  OwnedDescriptor reply;
  const OSStatus status = makeEvent(target, eventClass, eventID, payload, event);
  return status == noErr ? AESendMessage(&event, &reply, kAENoReply, kNoTimeOut) : status;
}

}  // namespace test_support
