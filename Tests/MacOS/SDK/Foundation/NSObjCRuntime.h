#pragma once

#include <float.h>
#include <limits.h>
#include <objc/objc.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

// Since when macOS has something, and since when it advises against it. The compiler warns of what
// is newer than the oldest system that it compiles for, and of what was deprecated by then.
#define MACOS_SINCE(version) __attribute__((availability(macos, introduced = version)))
#define MACOS_DEPRECATED(since, until, advice) \
  __attribute__((availability(macos, introduced = since, deprecated = until, message = advice)))

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_FORMAT_FUNCTION(text, first) __attribute__((format(__NSString__, text, first)))
#define NS_REQUIRES_NIL_TERMINATION __attribute__((sentinel(0, 1)))
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define NS_REQUIRES_SUPER __attribute__((objc_requires_super))
#define NS_UNAVAILABLE __attribute__((unavailable))
#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
#define NS_OPTIONS(type, name) \
  enum name : type name;       \
  enum name : type
#ifdef __cplusplus
#define FOUNDATION_EXPORT extern "C"
#else
#define FOUNDATION_EXPORT extern
#endif

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef unsigned short unichar;
typedef double NSTimeInterval;

static const NSInteger NSNotFound = LONG_MAX;

@class NSString;

NS_ASSUME_NONNULL_BEGIN
FOUNDATION_EXPORT void NSLog(NSString *format, ...) NS_FORMAT_FUNCTION(1, 2);
FOUNDATION_EXPORT Class _Nullable NSClassFromString(NSString *_Nonnull aClassName);
FOUNDATION_EXPORT NSString *NSStringFromClass(Class aClass);
FOUNDATION_EXPORT NSString *NSStringFromSelector(SEL aSelector);
NS_ASSUME_NONNULL_END
