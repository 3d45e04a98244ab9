// The Objective-C run time's basic types, as macOS has them.
#pragma once

#include <stdbool.h>

typedef struct objc_class *Class;
typedef struct objc_object {
  Class _Nonnull isa;
} *id;
typedef struct objc_selector *SEL;
typedef void (*IMP)(void);

// A Boolean on Apple's own processors, a character on Intel's.
#if __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif

#define YES __objc_yes
#define NO __objc_no
#ifdef __cplusplus
#define nil __null
#define Nil __null
#else
#define nil ((void *)0)
#define Nil ((void *)0)
#endif
