#pragma once

#import <AppKit/NSResponder.h>
#import <AppKit/NSWindow.h>

NS_ASSUME_NONNULL_BEGIN

@class NSApplication;

APPKIT_EXTERN __kindof NSApplication *_Null_unspecified NSApp;
APPKIT_EXTERN void NSBeep(void);

@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication *sharedApplication;
@property(getter=isHidden, readonly) BOOL hidden;
@property(getter=isActive, readonly) BOOL active;
@property(readonly, copy) NSArray<NSWindow *> *windows;
@property(nullable, readonly, assign) NSWindow *modalWindow;
- (void)hide:(nullable id)sender;
- (void)unhide:(nullable id)sender;
- (void)deactivate;
- (void)activate MACOS_SINCE(14.0);
// Since macOS 14 no more than a request.
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps
    MACOS_DEPRECATED(10.0, 27.0, "use activate");
- (void)run;
- (NSModalResponse)runModalForWindow:(NSWindow *)window;
- (void)stopModal;
- (void)stopModalWithCode:(NSModalResponse)returnCode;
- (void)abortModal;
@end

NS_ASSUME_NONNULL_END
