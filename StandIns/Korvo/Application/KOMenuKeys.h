// Keys in the open menu of a pop-up. GNUstep offers every key to the buttons of the window first,
// so that Return would press the window's default button and the menu would go with what it showed
// before; and it reads no key at all while the mouse keeps the menu open. GUI 0.32 takes the end of
// the click that opens a menu for the choice in it, so that the menu is gone at once.
#pragma once

#import <Cocoa/Cocoa.h>

@interface KOMenuKeys : NSObject {
  NSMenu *menu_;              // the one that the mouse has opened; not retained
  BOOL keysHighlight_;        // the last to choose an item in it were keys
  NSPoint pointerAtLastKey_;  // on the screen
  NSPoint pointerAtOpening_;
  BOOL isOpened_;    // the click that opened the menu is over
  NSEvent *choice_;  // the end of a click that the menu's loop was given last; retained
}
// YES for a key that belongs to a menu which keys have opened: it has got it.
- (BOOL)giveKey:(NSEvent *)key toOpenMenuOf:(NSWindow *)window;

// While the mouse keeps a menu open its loop asks for events, and is to be given keys, too.
- (BOOL)isMenuHeldOpen;
// What the loop of that menu gets in place of an event; nil for nothing.
- (NSEvent *)eventForMenu:(NSEvent *)event;
// What it gets without an event; nil for nothing.
- (NSEvent *)choiceToRepeat;
@end
