#pragma once

#import <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
  NSViewMinXMargin = 1,
  NSViewWidthSizable = 2,
  NSViewMaxXMargin = 4,
};

@interface NSView : NSResponder
@property NSRect frame;
@property NSRect bounds;
@property NSAutoresizingMaskOptions autoresizingMask;
@property(nullable, readonly, assign) NSView *superview;
@property(copy) NSArray<__kindof NSView *> *subviews;
- (nullable __kindof NSView *)viewWithTag:(NSInteger)tag;
@end

@interface NSCell : NSObject <NSCopying, NSCoding>
@property(readonly) NSSize cellSize;
@end

@interface NSControl : NSView
@property(getter=isEnabled) BOOL enabled;
@property(nullable, strong) __kindof NSCell *cell;
@property(copy) NSString *stringValue;
@end

@interface NSTextField : NSControl
@end

@interface NSButton : NSControl
@property(copy) NSString *title;
@end

@interface NSMenuItem : NSObject <NSCopying>
@property(copy) NSString *title;
@end

@interface NSPopUpButton : NSButton
@property(readonly) NSInteger numberOfItems;
@property(nullable, readonly, strong) NSMenuItem *selectedItem;
@property(nullable, readonly, copy) NSString *titleOfSelectedItem;
- (void)addItemWithTitle:(NSString *)title;
- (void)addItemsWithTitles:(NSArray<NSString *> *)itemTitles;
- (void)removeAllItems;
- (NSInteger)indexOfItemWithTitle:(NSString *)title;
- (void)selectItemAtIndex:(NSInteger)index;
@end

NS_ASSUME_NONNULL_END
