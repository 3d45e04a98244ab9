#pragma once

enum {
  paramErr = -50,
  memFullErr = -108,
  procNotFound = -600,
  connectionInvalid = -609,
  errAECoercionFail = -1700,
  errAEDescNotFound = -1701,
  errAECorruptData = -1702,
  errAEWrongDataType = -1703,
  errAENotAEDesc = -1704,
  errAENotAppleEvent = -1707,
  errAEEventNotHandled = -1708,
  errAETimeout = -1712,
  errAEEventNotPermitted = -1743,
  errAEEventFailed = -10000
};
