// Apple Events and the Process Manager for Linux, under the names that they have on macOS.
//
// Import it after <Cocoa/Cocoa.h>, as on macOS. A C or C++ source gets everything but the two
// Cocoa classes. All of it is for the main thread only.
#pragma once

#include <ApplicationServices/AEDataModel.h>
#include <ApplicationServices/AppleEvents.h>
#include <ApplicationServices/MacErrors.h>
#include <ApplicationServices/MacTypes.h>
#include <ApplicationServices/Processes.h>
#ifdef __OBJC__
#import <ApplicationServices/NSAppleEventDescriptor.h>
#import <ApplicationServices/NSAppleEventManager.h>
#endif
