#import "Controls.h"

// GNUstep writes columns' titles in the colour of title bars, white, which is for a dark ground.
@interface KOColumnTitleCell : NSTableHeaderCell
@end

@implementation KOColumnTitleCell

- (NSColor *)textColor {
  return [NSColor controlTextColor];
}

@end

// GNUstep can draw stripes, and forgets that it was told to.
@interface KOStripedTable : NSTableView
@end

@implementation KOStripedTable

- (BOOL)usesAlternatingRowBackgroundColors {
  return YES;
}

@end

namespace korvo::windows {
namespace {

constexpr CGFloat textSize = 13;
constexpr CGFloat rowHeight = 22;

}  // namespace

NSWindow *makeWindow(NSString *title, NSSize size, NSSize least) {
  NSWindow *window =
      [[[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, size.width, size.height)
                                   styleMask:NSTitledWindowMask | NSClosableWindowMask |
                                             NSMiniaturizableWindowMask | NSResizableWindowMask
                                     backing:NSBackingStoreBuffered
                                       defer:YES] autorelease];
  [window setReleasedWhenClosed:NO];
  [window setTitle:title];
  [window setContentMinSize:least];
  [window center];
  return window;
}

void rememberPlace(NSWindow *window, NSString *name, NSPoint cornerOtherwise) {
  const NSRect before = [window frame];
  const bool isKnown = [window setFrameUsingName:name];
  const NSRect frame = [window frame];
  const NSPoint middleOfTitle = NSMakePoint(NSMidX(frame), NSMaxY(frame) - 1);
  if (!isKnown || !NSPointInRect(middleOfTitle, [[NSScreen mainScreen] visibleFrame])) {
    [window setFrame:before display:NO];
    [window setFrameTopLeftPoint:cornerOtherwise];
    [window saveFrameUsingName:name];
  }
  [window setFrameAutosaveName:name];
}

NSTextField *makeLabel(NSString *text, NSRect frame, NSTextAlignment alignment) {
  NSTextField *label = makeTextField(text, frame);
  [label setEditable:NO];
  [label setSelectable:NO];
  [label setBezeled:NO];
  [label setBordered:NO];
  [label setDrawsBackground:NO];
  [label setAlignment:alignment];
  return label;
}

NSTextField *makeTextField(NSString *text, NSRect frame) {
  NSTextField *field = [[[NSTextField alloc] initWithFrame:frame] autorelease];
  [field setFont:[NSFont systemFontOfSize:textSize]];
  [field setStringValue:text];
  [[field cell] setScrollable:YES];
  [[field cell] setWraps:NO];
  return field;
}

NSButton *makeButton(NSString *title, NSRect frame, id target, SEL action) {
  NSButton *button = [[[NSButton alloc] initWithFrame:frame] autorelease];
  [button setTitle:title];
  [button setFont:[NSFont systemFontOfSize:textSize]];
  [button setBezelStyle:NSRegularSquareBezelStyle];
  [button setTarget:target];
  [button setAction:action];
  return button;
}

NSPopUpButton *makePopUpButton(NSRect frame, id target, SEL action) {
  NSPopUpButton *button = [[[NSPopUpButton alloc] initWithFrame:frame pullsDown:NO] autorelease];
  [button setFont:[NSFont systemFontOfSize:textSize]];
  [button setTarget:target];
  [button setAction:action];
  return button;
}

NSSearchField *makeSearchField(NSString *placeholder, NSRect frame, id delegate) {
  NSSearchField *field = [[[NSSearchField alloc] initWithFrame:frame] autorelease];
  [field setFont:[NSFont systemFontOfSize:textSize]];
  [[field cell] setPlaceholderString:placeholder];
  [field setDelegate:delegate];
  return field;
}

NSScrollView *makeTextArea(NSRect frame, bool isEditable) {
  NSScrollView *scroll = [[[NSScrollView alloc] initWithFrame:frame] autorelease];
  [scroll setBorderType:NSBezelBorder];
  [scroll setHasVerticalScroller:YES];
  const NSSize size = [scroll contentSize];
  NSTextView *text =
      [[[NSTextView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)] autorelease];
  [text setEditable:isEditable ? YES : NO];
  [text setSelectable:YES];
  [text setRichText:isEditable ? NO : YES];
  [text setFont:[NSFont systemFontOfSize:textSize]];
  [text setVerticallyResizable:YES];
  [text setHorizontallyResizable:NO];
  [text setMinSize:size];
  [text setMaxSize:NSMakeSize(1e7, 1e7)];
  [text setAutoresizingMask:NSViewWidthSizable];
  [[text textContainer] setContainerSize:NSMakeSize(size.width, 1e7)];
  [[text textContainer] setWidthTracksTextView:YES];
  [scroll setDocumentView:text];
  return scroll;
}

NSTextView *textOf(NSScrollView *textArea) { return [textArea documentView]; }

NSScrollView *makeTable(NSRect frame, const Column *columns, NSUInteger count, id source) {
  NSScrollView *scroll = [[[NSScrollView alloc] initWithFrame:frame] autorelease];
  [scroll setBorderType:NSBezelBorder];
  [scroll setHasVerticalScroller:YES];
  [scroll setHasHorizontalScroller:NO];
  const NSSize size = [scroll contentSize];
  CGFloat spare = size.width;
  NSUInteger growing = 0;
  for (NSUInteger index = 0; index < count; ++index) {
    spare -= columns[index].width;
    growing += columns[index].grows ? 1 : 0;
  }
  NSTableView *table = [[[KOStripedTable alloc]
      initWithFrame:NSMakeRect(0, 0, size.width, size.height)] autorelease];
  for (NSUInteger index = 0; index < count; ++index) {
    const Column &described = columns[index];
    NSTableColumn *column =
        [[[NSTableColumn alloc] initWithIdentifier:described.identifier] autorelease];
    [column setHeaderCell:[[[KOColumnTitleCell alloc] init] autorelease]];
    [[column headerCell] setStringValue:described.title];
    [[column headerCell] setAlignment:NSLeftTextAlignment];
    [[column dataCell] setFont:[NSFont systemFontOfSize:textSize]];
    [[column dataCell] setLineBreakMode:NSLineBreakByTruncatingTail];
    [column setMinWidth:40];
    [column
        setWidth:described.width + (described.grows ? spare / static_cast<CGFloat>(growing) : 0)];
    [column setEditable:NO];
    [column setResizingMask:NSTableColumnUserResizingMask |
                            (described.grows ? NSTableColumnAutoresizingMask : 0)];
    [table addTableColumn:column];
  }
  [table setRowHeight:rowHeight];
  [table setDrawsGrid:NO];
  // On any other background GNUstep shows what is selected in white.
  [table setBackgroundColor:[NSColor whiteColor]];
  [table setColumnAutoresizingStyle:NSTableViewUniformColumnAutoresizingStyle];
  [table setAllowsEmptySelection:YES];
  // A click on a column's title sorts, also where the hand trembles, and leaves the selection
  // alone.
  [table setAllowsColumnSelection:NO];
  [table setAllowsColumnReordering:NO];
  [table setDataSource:source];
  [table setDelegate:source];
  [scroll setDocumentView:table];
  return scroll;
}

NSTableView *tableOf(NSScrollView *tableArea) { return [tableArea documentView]; }

void add(NSView *parent, NSView *view, NSUInteger autoresizingMask) {
  [view setAutoresizingMask:autoresizingMask];
  [parent addSubview:view];
}

}  // namespace korvo::windows
