// The one place that catches Objective-C exceptions. It is compiled as plain Objective-C: a typed
// @catch in GCC's Objective-C++ crashes as soon as an Objective-C exception arrives.
#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

// Calls `work(context)`. The object that it threw, autoreleased, or nil; a C++ exception passes
// through.
id KOMellelObjectThrownBy(void (*work)(void *), void *context);

#ifdef __cplusplus
}
#endif
