// The basic types of macOS's system interfaces, as wide as they are there on 64-bit machines.
#pragma once

#include <stdint.h>

typedef uint32_t UInt32;
typedef int16_t SInt16;
typedef int32_t SInt32;

// Four ASCII characters in a number, the first one in the most significant byte.
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;

// Result of a system call: 0 or one of the negative values of MacErrors.h.
typedef SInt16 OSErr;
typedef SInt32 OSStatus;

// A count of bytes.
typedef long Size;

// A Pascal string: its first byte tells how many bytes follow.
typedef unsigned char *StringPtr;
