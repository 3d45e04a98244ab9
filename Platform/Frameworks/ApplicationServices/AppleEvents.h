// Sending of Apple Events.
#pragma once

#include <ApplicationServices/AEDataModel.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef SInt32 AESendMode;

enum {
  kAENoReply = 0x00000001,
  kAEQueueReply = 0x00000002,
  kAEWaitReply = 0x00000003,
  // May be added to a mode; without effect.
  kAENeverInteract = 0x00000010,
  kAECanInteract = 0x00000020,
  kAEAlwaysInteract = 0x00000030,
  kAECanSwitchLayer = 0x00000040
};

// Time-outs count ticks of 1/60 second, or are one of these: a minute, and no end.
enum { kAEDefaultTimeout = -1, kNoTimeOut = -2 };

// Sends the event to the one process that declared the signature in the event's target (a
// descriptor of typeApplSignature; others: errAEWrongDataType).
//
// With kAENoReply it returns as soon as the event is under way: noErr says that the process is
// there, not that it handled the event. With kAEWaitReply it waits for the answer; events that
// arrive meanwhile are kept for later and never handled inside the wait. With kAEQueueReply it
// returns as with kAENoReply, and the reply is handled later as an event of class kCoreEventClass
// and ID kAEAnswer that has the return ID of the event: it tells of a refusal at once. `reply` is
// made the reply event after a success and the null descriptor otherwise, without being disposed of
// before; it may be null when no reply is wanted.
//
// procNotFound: no such process. errAEEventNotHandled: it has no handler for the event.
// errAETimeout: no answer in time. connectionInvalid: no message bus, or the process ended before
// it answered. Any other status is the handler's.
OSStatus AESendMessage(const AppleEvent *event, AppleEvent *reply, AESendMode sendMode,
                       long timeOutInTicks);

#ifdef __cplusplus
}
#endif
