// Descriptors: typed bytes, and Apple Events made of parameters that are typed bytes.
//
// A descriptor owns what `dataHandle` points at; every descriptor that one of these functions
// fills must be given to AEDisposeDesc once. Data that is put in is copied. Large data (see
// SharedBytes.h) is copied straight into the memory file that carries it to the other process.
// Nothing here coerces: data is got as the type it was put as, or as typeWildCard.
#pragma once

#include <ApplicationServices/MacErrors.h>
#include <ApplicationServices/MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef FourCharCode AEKeyword;
typedef FourCharCode DescType;
typedef SInt16 AEReturnID;
typedef SInt32 AETransactionID;

enum {
  typeNull = 0x6E756C6C,          /* 'null' */
  typeWildCard = 0x2A2A2A2A,      /* '****' */
  typeAppleEvent = 0x61657674,    /* 'aevt' */
  typeApplSignature = 0x7369676E, /* 'sign': the four bytes of an OSType in this machine's order */
  typeChar = 0x54455854,          /* 'TEXT' */
  typeSInt32 = 0x6C6F6E67,        /* 'long': in this machine's order */

  keyDirectObject = 0x2D2D2D2D, /* '----' */
  keyErrorNumber = 0x6572726E,  /* 'errn': in a reply, how the handler failed; a typeSInt32 */

  kCoreEventClass = 0x61657674, /* 'aevt' */
  kAEAnswer = 0x616E7372        /* 'ansr': the event ID of every reply */
};

enum { kAutoGenerateReturnID = -1, kAnyTransactionID = 0 };

typedef struct OpaqueAEDataStorage *AEDataStorage;

typedef struct AEDesc {
  DescType descriptorType;
  AEDataStorage dataHandle;
} AEDesc;

typedef AEDesc AEAddressDesc;
typedef AEDesc AppleEvent;

// Makes `descriptor` the null descriptor, without disposing of what it held.
void AEInitializeDesc(AEDesc *descriptor);

// Copies `dataSize` bytes. paramErr for a negative size, or for a null pointer to more than
// nothing; memFullErr. After a failure `result` is the null descriptor.
OSErr AECreateDesc(DescType typeCode, const void *dataPtr, Size dataSize, AEDesc *result);

// Gives up what the descriptor owns and makes it the null descriptor. Harmless on that one.
OSErr AEDisposeDesc(AEDesc *descriptor);

// Makes an event without parameters. `target` is copied; null, or the null descriptor, makes an
// event that cannot be sent.
OSErr AECreateAppleEvent(AEEventClass eventClass, AEEventID eventID, const AEAddressDesc *target,
                         AEReturnID returnID, AETransactionID transactionID, AppleEvent *result);

// Puts a copy of the bytes under the keyword, in place of what was there. errAENotAppleEvent when
// the descriptor is no event.
OSErr AEPutParamPtr(AppleEvent *event, AEKeyword keyword, DescType typeCode, const void *dataPtr,
                    Size dataSize);

// Puts the descriptor, which must not be an event, under the keyword. The bytes are shared.
OSErr AEPutParamDesc(AppleEvent *event, AEKeyword keyword, const AEDesc *descriptor);

// Copies at most `maximumSize` bytes of the parameter; `actualSize` gets the size it really has.
// `typeCode` and `actualSize` may be null. errAEDescNotFound; errAECoercionFail when it has
// another type than `desiredType`.
OSErr AEGetParamPtr(const AppleEvent *event, AEKeyword keyword, DescType desiredType,
                    DescType *actualType, void *dataPtr, Size maximumSize, Size *actualSize);

// Makes `result` a descriptor of the parameter, which shares its bytes.
OSErr AEGetParamDesc(const AppleEvent *event, AEKeyword keyword, DescType desiredType,
                     AEDesc *result);

OSErr AESizeOfParam(const AppleEvent *event, AEKeyword keyword, DescType *typeCode, Size *dataSize);

// Takes the parameter away. errAEDescNotFound when there is none.
OSErr AEDeleteParam(AppleEvent *event, AEKeyword keyword);

// Bytes of a descriptor that is no event; 0 for an event.
Size AEGetDescDataSize(const AEDesc *descriptor);

// Copies the first `maximumSize` bytes, or all there are.
OSErr AEGetDescData(const AEDesc *descriptor, void *dataPtr, Size maximumSize);

#ifdef __cplusplus
}
#endif
