// Apple Events. macOS spreads these over several headers of the framework AE.
#pragma once

#include <CoreServices/MacErrors.h>
#include <CoreServices/MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef FourCharCode AEKeyword;
typedef FourCharCode DescType;
typedef SInt16 AEReturnID;
typedef SInt32 AETransactionID;
typedef SInt32 AESendMode;

#pragma pack(push, 2)
typedef struct OpaqueAEDataStorageType *AEDataStorageType;
typedef AEDataStorageType *AEDataStorage;
struct AEDesc {
  DescType descriptorType;
  AEDataStorage dataHandle;
};
typedef struct AEDesc AEDesc;
#pragma pack(pop)
typedef AEDesc AEAddressDesc;
typedef AEDesc AppleEvent;

enum {
  typeChar = 'TEXT',
  typeSInt32 = 'long',
  typeNull = 'null',
  typeWildCard = '****',
  typeAppleEvent = 'aevt',
  typeApplSignature = 'sign',
  typeProcessSerialNumber = 'psn ',
  typeUTF8Text = 'utf8'
};

enum {
  keyDirectObject = '----',
  keyErrorNumber = 'errn',
  keyErrorString = 'errs',
  kCoreEventClass = 'aevt',
  kAEAnswer = 'ansr'
};

enum { kAutoGenerateReturnID = -1, kAnyTransactionID = 0 };

enum {
  kAENoReply = 0x00000001,
  kAEQueueReply = 0x00000002,
  kAEWaitReply = 0x00000003,
  kAENeverInteract = 0x00000010,
  kAECanInteract = 0x00000020,
  kAEAlwaysInteract = 0x00000030,
  kAECanSwitchLayer = 0x00000040
};

enum { kAEDefaultTimeout = -1, kNoTimeOut = -2 };

OSErr AECreateDesc(DescType typeCode, const void *dataPtr, Size dataSize, AEDesc *result);
OSErr AEDisposeDesc(AEDesc *theAEDesc);
OSErr AECreateAppleEvent(AEEventClass theAEEventClass, AEEventID theAEEventID,
                         const AEAddressDesc *target, AEReturnID returnID,
                         AETransactionID transactionID, AppleEvent *result);
OSErr AEPutParamPtr(AppleEvent *theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                    const void *dataPtr, Size dataSize);
OSErr AEPutParamDesc(AppleEvent *theAppleEvent, AEKeyword theAEKeyword, const AEDesc *theAEDesc);
OSErr AEGetParamPtr(const AppleEvent *theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                    DescType *actualType, void *dataPtr, Size maximumSize, Size *actualSize);
OSStatus AESendMessage(const AppleEvent *event, AppleEvent *reply, AESendMode sendMode,
                       long timeOutInTicks);

#ifdef __cplusplus
}
#endif
