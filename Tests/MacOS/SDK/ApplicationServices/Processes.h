// The Process Manager: advised against since 10.9, and there.
#pragma once

#import <CoreServices/CoreServices.h>
#import <Foundation/NSObjCRuntime.h>

#define PROCESS_MANAGER MACOS_DEPRECATED(10.0, 10.9, "no longer supported")

enum { kNoProcess = 0, kSystemProcess = 1, kCurrentProcess = 2 };

typedef struct FSRef *FSRefPtr;

struct ProcessInfoRec {
  UInt32 processInfoLength;
  StringPtr processName;
  ProcessSerialNumber processNumber;
  UInt32 processType;
  OSType processSignature;
  UInt32 processMode;
  Ptr processLocation;
  UInt32 processSize;
  UInt32 processFreeMem;
  ProcessSerialNumber processLauncher;
  UInt32 processLaunchDate;
  UInt32 processActiveTime;
  FSRefPtr processAppRef;
};
typedef struct ProcessInfoRec ProcessInfoRec;

#ifdef __cplusplus
extern "C" {
#endif
OSErr GetNextProcess(ProcessSerialNumber *pPSN) PROCESS_MANAGER;
OSErr GetProcessInformation(const ProcessSerialNumber *PSN, ProcessInfoRec *info) PROCESS_MANAGER;
OSErr SetFrontProcess(const ProcessSerialNumber *pPSN) PROCESS_MANAGER;
#ifdef __cplusplus
}
#endif
