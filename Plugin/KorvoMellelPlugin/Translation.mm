#import "Translation.h"

#import "KOMellelScanController.h"

#include <algorithm>

namespace {

// The controls of the dialog that show a text of ours.
NSArray *textControlsOf(NSWindow *dialog) {
  NSMutableArray *controls = [NSMutableArray array];
  NSArray *views = [[dialog contentView] subviews];
  for (NSUInteger index = 0; index < [views count]; ++index) {
    NSView *view = [views objectAtIndex:index];
    const bool isButton =
        [view isKindOfClass:[NSButton class]] && ![view isKindOfClass:[NSPopUpButton class]];
    if (isButton || [view isKindOfClass:[NSTextField class]]) {
      [controls addObject:view];
    }
  }
  return controls;
}

void translate(NSControl *control, NSString *table) {
  if ([control isKindOfClass:[NSButton class]]) {
    NSButton *button = static_cast<NSButton *>(control);
    [button setTitle:translatedText([button title], table)];
  } else {
    [control setStringValue:translatedText([control stringValue], table)];
  }
}

// By how much the control is too narrow for its text.
CGFloat lackOf(NSControl *control) {
  return std::max<CGFloat>(0, [[control cell] cellSize].width - NSWidth([control frame]));
}

bool isTiedToTheRight(NSControl *control) {
  return ([control autoresizingMask] & NSViewMinXMargin) != 0;
}

// Where what stands to its left in the same row ends; 0 where nothing does.
CGFloat endOfLeftNeighbour(NSControl *control) {
  const NSRect frame = [control frame];
  NSArray *views = [[control superview] subviews];
  CGFloat end = 0;
  for (NSUInteger index = 0; index < [views count]; ++index) {
    const NSRect other = [static_cast<NSView *>([views objectAtIndex:index]) frame];
    const bool isInRow = NSMinY(other) < NSMaxY(frame) && NSMinY(frame) < NSMaxY(other);
    if (isInRow && NSMaxX(other) <= NSMinX(frame)) {
      end = std::max(end, NSMaxX(other));
    }
  }
  return end;
}

// By how much it may grow, so that it is as far from its neighbour, or the border, on the one side
// as it is from the border on the other.
CGFloat roomFor(NSControl *control) {
  const NSRect frame = [control frame];
  const CGFloat left = NSMinX(frame) - endOfLeftNeighbour(control);
  const CGFloat right = NSWidth([[control superview] bounds]) - NSMaxX(frame);
  return isTiedToTheRight(control) ? left - right : right - left;
}

void widen(NSControl *control, CGFloat lack) {
  NSRect frame = [control frame];
  frame.size.width += lack;
  if (isTiedToTheRight(control)) {
    frame.origin.x -= lack;
  }
  [control setFrame:frame];
}

// Widens the dialog for what has no room in it, and then the controls.
void makeRoomFor(NSArray *controls, NSWindow *dialog) {
  CGFloat tooNarrow = 0;
  for (NSUInteger index = 0; index < [controls count]; ++index) {
    NSControl *control = [controls objectAtIndex:index];
    tooNarrow = std::max(tooNarrow, lackOf(control) - roomFor(control));
  }
  // Not without need, and never for a dialog that is not there: nil has no size.
  if (tooNarrow > 0) {
    NSSize size = [[dialog contentView] bounds].size;
    size.width += tooNarrow;
    [dialog setContentSize:size];
  }
  for (NSUInteger index = 0; index < [controls count]; ++index) {
    NSControl *control = [controls objectAtIndex:index];
    widen(control, lackOf(control));
  }
}

}  // namespace

NSString *translatedText(NSString *english, NSString *table) {
  NSBundle *bundle = [NSBundle bundleForClass:[KOMellelScanController class]];
  return [bundle localizedStringForKey:english value:@"" table:table];
}

void translateDialog(NSWindow *dialog, NSString *table) {
  [dialog setTitle:translatedText([dialog title], table)];
  NSArray *controls = textControlsOf(dialog);
  for (NSUInteger index = 0; index < [controls count]; ++index) {
    translate([controls objectAtIndex:index], table);
  }
  makeRoomFor(controls, dialog);
}
