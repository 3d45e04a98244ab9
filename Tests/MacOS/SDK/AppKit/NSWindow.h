#pragma once

#import <AppKit/NSButton.h>
#import <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSInteger NSModalResponse;
typedef NSInteger NSWindowLevel;

static const NSWindowLevel NSNormalWindowLevel = 0;
static const NSWindowLevel NSModalPanelWindowLevel = 8;

@class NSWindow;

@protocol NSWindowDelegate <NSObject>
@optional
- (BOOL)windowShouldClose:(NSWindow *)sender;
@end

@interface NSWindow : NSResponder
@property(copy) NSString *title;
@property(nullable, strong) __kindof NSView *contentView;
@property(nullable, assign) id<NSWindowDelegate> delegate;
@property NSWindowLevel level;
@property(getter=isVisible, readonly) BOOL visible;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property(readonly) NSInteger windowNumber;
- (void)close;
- (void)center;
- (void)setContentSize:(NSSize)size;
- (void)orderOut:(nullable id)sender;
- (void)orderFrontRegardless;
- (void)makeKeyAndOrderFront:(nullable id)sender;
@end

@interface NSWindowController : NSResponder <NSCoding>
- (instancetype)initWithWindow:(nullable NSWindow *)window NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithWindowNibName:(NSString *)windowNibName;
- (instancetype)initWithWindowNibName:(NSString *)windowNibName owner:(id)owner;
@property(nullable, strong) NSWindow *window;
@property(getter=isWindowLoaded, readonly) BOOL windowLoaded;
- (void)loadWindow;
- (void)windowDidLoad;
- (IBAction)showWindow:(nullable id)sender;
- (void)close;
@end

NS_ASSUME_NONNULL_END
