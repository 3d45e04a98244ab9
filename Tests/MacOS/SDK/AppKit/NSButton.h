#pragma once

#import <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSView : NSResponder
@end

@interface NSControl : NSView
@property(getter=isEnabled) BOOL enabled;
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
