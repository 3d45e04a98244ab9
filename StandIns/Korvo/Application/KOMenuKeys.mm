#import "KOMenuKeys.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr unichar escapeKey = 0x1B;
// In points: a hand is not quite still.
constexpr double clickRadius = 4;

unichar characterOf(NSEvent *key) {
  NSString *characters = [key charactersIgnoringModifiers];
  return [characters length] == 0 ? 0 : [characters characterAtIndex:0];
}

// With it the loop of a menu ends, and carries out what is highlighted.
NSEvent *mouseUpIn(NSWindow *window, NSEvent *cause) {
  return [NSEvent mouseEventWithType:NSLeftMouseUp
                            location:[window mouseLocationOutsideOfEventStream]
                       modifierFlags:0
                           timestamp:[cause timestamp]
                        windowNumber:[window windowNumber]
                             context:[cause context]
                         eventNumber:0
                          clickCount:1
                            pressure:0];
}

}  // namespace

@implementation KOMenuKeys

- (id)init {
  self = [super init];
  if (self != nil) {
    NSNotificationCenter *center = [NSNotificationCenter defaultCenter];
    [center addObserver:self
               selector:@selector(menuIsOpen:)
                   name:NSMenuDidBeginTrackingNotification
                 object:nil];
    [center addObserver:self
               selector:@selector(menuIsClosed:)
                   name:NSMenuDidEndTrackingNotification
                 object:nil];
  }
  return self;
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [choice_ release];
  [super dealloc];
}

- (void)keepChoice:(NSEvent *)event {
  [event retain];
  [choice_ release];
  choice_ = event;
}

- (void)menuIsOpen:(NSNotification *)notification {
  NSMenu *menu = [notification object];
  menu_ = menu == [NSApp mainMenu] ? nil : menu;
  keysHighlight_ = NO;
  pointerAtOpening_ = [NSEvent mouseLocation];
  isOpened_ = NO;
}

- (void)menuIsClosed:(NSNotification *)notification {
  (void)notification;
  menu_ = nil;
  [self keepChoice:nil];
}

- (BOOL)giveKey:(NSEvent *)key toOpenMenuOf:(NSWindow *)window {
  NSResponder *responder = [window firstResponder];
  if (![responder isKindOfClass:[NSPopUpButton class]] ||
      ![[[[(NSPopUpButton *)responder menu] menuRepresentation] window] isVisible]) {
    return NO;
  }
  [responder keyDown:key];
  return YES;
}

- (BOOL)isMenuHeldOpen {
  return menu_ != nil;
}

- (void)highlight:(NSInteger)item {
  [[menu_ menuRepresentation]
      setHighlightedItemIndex:std::clamp<NSInteger>(item, 0, [menu_ numberOfItems] - 1)];
  keysHighlight_ = YES;
  pointerAtLastKey_ = [NSEvent mouseLocation];
}

- (NSEvent *)eventForKey:(NSEvent *)key {
  NSMenuView *view = [menu_ menuRepresentation];
  switch (characterOf(key)) {
    case NSUpArrowFunctionKey:
      [self highlight:[view highlightedItemIndex] - 1];
      return nil;
    case NSDownArrowFunctionKey:
      [self highlight:[view highlightedItemIndex] + 1];
      return nil;
    case escapeKey:
      [view setHighlightedItemIndex:-1];
      return mouseUpIn([view window], key);
    case NSCarriageReturnCharacter:
    case NSEnterCharacter:
      return mouseUpIn([view window], key);
    default:
      return nil;
  }
}

// At every beat the menu would highlight what is under the pointer, also where that rests.
- (BOOL)undoesKeys:(NSEvent *)event {
  return [event type] == NSPeriodic && keysHighlight_ &&
         NSEqualPoints([NSEvent mouseLocation], pointerAtLastKey_);
}

// Who clicks on a pop-up has opened it; who goes to an item with the button held down chooses that.
- (BOOL)opensMenu:(NSEvent *)event {
  if ([event type] != NSLeftMouseUp || isOpened_) {
    return NO;
  }
  isOpened_ = YES;
  const NSPoint pointer = [NSEvent mouseLocation];
  return std::hypot(pointer.x - pointerAtOpening_.x, pointer.y - pointerAtOpening_.y) < clickRadius;
}

- (NSEvent *)eventForMenu:(NSEvent *)event {
  if ([self opensMenu:event] || [self undoesKeys:event]) {
    return nil;
  }
  NSEvent *given = [event type] == NSKeyDown ? [self eventForKey:event] : event;
  if ([given type] == NSLeftMouseUp) {
    [self keepChoice:given];
  }
  return given;
}

// GUI 0.29 passes over the first one that it sees, where the pointer has stayed. Then the menu is
// still open and asks again.
- (NSEvent *)choiceToRepeat {
  NSEvent *choice = [[choice_ retain] autorelease];
  [self keepChoice:nil];
  return choice;
}

@end
