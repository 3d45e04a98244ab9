// The notice window: what plug-ins and the host itself have to tell the user, the last
// notices of this run, newest below. The text can be selected and copied.
#pragma once

#import <Cocoa/Cocoa.h>

@interface KONoticeWindowController : NSWindowController {
  NSMutableArray *notices_;  // NSAttributedString, oldest first
  NSTextView *text_;
}
- (id)init;

// Shows the window without taking the keyboard from where it is.
- (void)showNoticeWithHeader:(NSString *)header summary:(NSAttributedString *)summary;

- (void)copyAll:(id)sender;
- (void)clear:(id)sender;

// Everything that the window shows.
- (NSString *)shownText;
@end
