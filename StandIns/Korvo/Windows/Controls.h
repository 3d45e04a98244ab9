// The controls that the windows are made of, in one look. Frames are in points, origin at
// the lower left. All objects are autoreleased.
#pragma once

#import <Cocoa/Cocoa.h>

namespace korvo::windows {

// Between controls, and between controls and the window's edge.
constexpr CGFloat gap = 8;
constexpr CGFloat margin = 16;
constexpr CGFloat controlHeight = 24;

// A titled, closable, resizable window that its controller releases, not its close box. Sizes are
// those of its content.
NSWindow *makeWindow(NSString *title, NSSize size, NSSize least);
// Gives the window the place and size that it had last under this name, or, where there are none or
// its title would be out of reach, that upper left corner; and remembers them from now on.
void rememberPlace(NSWindow *window, NSString *name, NSPoint cornerOtherwise);
NSTextField *makeLabel(NSString *text, NSRect frame, NSTextAlignment alignment);
NSTextField *makeTextField(NSString *text, NSRect frame);
NSButton *makeButton(NSString *title, NSRect frame, id target, SEL action);
NSPopUpButton *makePopUpButton(NSRect frame, id target, SEL action);
NSSearchField *makeSearchField(NSString *placeholder, NSRect frame, id delegate);
// A text of several lines in a scroll view; the text is the scroll view's document.
NSScrollView *makeTextArea(NSRect frame, bool isEditable);
NSTextView *textOf(NSScrollView *textArea);

struct Column {
  NSString *identifier;
  NSString *title;
  CGFloat width;
  bool grows;  // takes a share of the space that is left
};
// A table in a scroll view; the table is the scroll view's document. The data source and the
// delegate are one.
NSScrollView *makeTable(NSRect frame, const Column *columns, NSUInteger count, id source);
NSTableView *tableOf(NSScrollView *tableArea);

// Adds the view, to follow the edges of its window as the mask says.
void add(NSView *parent, NSView *view, NSUInteger autoresizingMask);

}  // namespace korvo::windows
