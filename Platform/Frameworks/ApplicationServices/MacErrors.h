// The status values that Apple Events and the Process Manager answer with.
#pragma once

enum {
  noErr = 0,
  paramErr = -50,
  // Another process has already declared the same application signature.
  portInUse = -97,
  memFullErr = -108,
  // No running process has the signature or the serial number asked for.
  procNotFound = -600,
  // There is no session bus to reach anybody over, or the other side died before it answered.
  connectionInvalid = -609,

  errAECoercionFail = -1700,
  errAEDescNotFound = -1701,
  errAECorruptData = -1702,
  errAEWrongDataType = -1703,
  errAENotAEDesc = -1704,
  errAENotAppleEvent = -1707,
  errAEEventNotHandled = -1708,
  errAETimeout = -1712,
  // The message bus's policy keeps this process from sending to that one.
  errAEEventNotPermitted = -1743,
  errAEEventFailed = -10000
};
