// The Process Manager, for the processes that declared an application signature.
#pragma once

#include <ApplicationServices/MacErrors.h>
#include <ApplicationServices/MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

// Names a running process, never two in turn. {0, kNoProcess} is none.
typedef struct ProcessSerialNumber {
  UInt32 highLongOfPSN;
  UInt32 lowLongOfPSN;
} ProcessSerialNumber;

enum { kNoProcess = 0 };

typedef struct FSRef *FSRefPtr;

typedef struct ProcessInfoRec {
  // The caller sets it to the size of this record.
  UInt32 processInfoLength;
  // Null, or room for a Pascal string of 255 bytes, which is made the signature's characters.
  StringPtr processName;
  ProcessSerialNumber processNumber;
  UInt32 processType;
  OSType processSignature;
  UInt32 processMode;
  char *processLocation;
  UInt32 processSize;
  UInt32 processFreeMem;
  ProcessSerialNumber processLauncher;
  UInt32 processLaunchDate;
  UInt32 processActiveTime;
  // Must be null: where a process's file lies is not known here.
  FSRefPtr processAppRef;
} ProcessInfoRec;

// Advances to the next process; {0, kNoProcess} stands before the first one. procNotFound after
// the last one, and when the one named has ended.
OSErr GetNextProcess(ProcessSerialNumber *serialNumber);

// Fills in the serial number and the signature; everything else becomes 0. paramErr when the
// record's length is not its size or an application reference is asked for.
OSErr GetProcessInformation(const ProcessSerialNumber *serialNumber, ProcessInfoRec *information);

// Asks the process to come to the front, without waiting until it has.
OSErr SetFrontProcess(const ProcessSerialNumber *serialNumber);

#ifdef __cplusplus
}
#endif
