#pragma once

#include <stdint.h>

typedef unsigned char UInt8;
typedef signed char SInt8;
typedef unsigned short UInt16;
typedef signed short SInt16;
typedef unsigned int UInt32;
typedef signed int SInt32;

typedef SInt32 Fixed;
typedef char *Ptr;
typedef Ptr *Handle;
typedef long Size;
typedef SInt16 OSErr;
typedef SInt32 OSStatus;
typedef void *LogicalAddress;
typedef unsigned char Boolean;
typedef unsigned char *StringPtr;
typedef unsigned char Str255[256];
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef FourCharCode ResType;
typedef SInt16 ScriptCode;
typedef SInt16 LangCode;
typedef UInt8 Byte;
typedef SInt8 SignedByte;

// Names that are easily taken for free: these belong to the system.
typedef unsigned char Style;
typedef SInt16 StyleParameter;
typedef Style StyleField;
struct Point {
  short v;
  short h;
};
typedef struct Point Point;
struct Rect {
  short top;
  short left;
  short bottom;
  short right;
};
typedef struct Rect Rect;

#pragma pack(push, 2)
struct ProcessSerialNumber {
  UInt32 highLongOfPSN;
  UInt32 lowLongOfPSN;
};
typedef struct ProcessSerialNumber ProcessSerialNumber;
#pragma pack(pop)

enum { noErr = 0 };
