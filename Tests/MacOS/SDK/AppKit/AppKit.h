// AppKit as far as this project uses it, declared as Apple's documentation does.
#pragma once

#import <AppKit/NSApplication.h>
#import <AppKit/NSAttributedString.h>
#import <AppKit/NSButton.h>
#import <AppKit/NSNibLoading.h>
#import <AppKit/NSResponder.h>
#import <AppKit/NSWindow.h>
