// The one place that catches Objective-C exceptions.
//
// GCC's Objective-C++ cannot: a typed @catch in it crashes as soon as an Objective-C exception
// arrives. Plain Objective-C can, so the call is made from there.
#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

// Calls `function(context)`. Returns the object that it threw, autoreleased, or nil. A C++
// exception passes through.
id KorvoCatchObjectiveCException(void (*function)(void *), void *context);

#ifdef __cplusplus
}
#endif
