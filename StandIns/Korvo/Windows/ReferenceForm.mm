#import "ReferenceForm.h"

#import "Controls.h"

#import <StandIns/Korvo/Adapter/StringConversion.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace korvo::windows {

namespace {

using library::EditableField;
using library::FieldForm;

constexpr CGFloat labelWidth = 130;
constexpr CGFloat shortLabelWidth = 64;
constexpr CGFloat fieldWidth = 440;
constexpr CGFloat shortFieldWidth = (fieldWidth - shortLabelWidth - 2 * gap) / 2;
constexpr CGFloat namesHeight = 58;
constexpr CGFloat remarkHeight = 16;
constexpr CGFloat remarkTextSize = 10;

// Short ones, each of which has the next field beside it.
constexpr std::string_view pairedKeys[] = {"volume", "page", "publisher"};

bool isPaired(const EditableField &field) {
  return std::ranges::find(pairedKeys, field.key) != std::end(pairedKeys);
}

// What people may not know about a field; nil for the others.
NSString *hintOf(const EditableField &field) {
  switch (field.form) {
    case FieldForm::identifier:
      return @"what stands behind # in citations: {Smith 2001#SMI2001}";
    case FieldForm::names:
      return field.key == "author" ? @"one a line: Smith, John" : nil;
    case FieldForm::date:
      return @"2001, 2001-05, 2001-05-03, a range 1914/1918, or words: in press";
    case FieldForm::kind:
    case FieldForm::line:
      break;
  }
  return nil;
}

CGFloat heightOf(const EditableField &field) {
  const CGFloat control = field.form == FieldForm::names ? namesHeight : controlHeight;
  return hintOf(field) == nil ? control : control + remarkHeight;
}

NSPopUpButton *makeKindButton(NSRect frame, id delegate) {
  NSPopUpButton *button = makePopUpButton(frame, delegate, @selector(kindChosen:));
  for (const std::string_view kind : library::referenceKinds()) {
    [button addItemWithTitle:adapter::stringFromUTF8(library::nameOfKind(kind))];
    [[button lastItem] setRepresentedObject:adapter::stringFromUTF8(kind)];
  }
  return button;
}

NSView *makeControl(FieldForm form, NSRect frame, id delegate) {
  if (form == FieldForm::kind) {
    return makeKindButton(frame, delegate);
  }
  if (form == FieldForm::names) {
    NSScrollView *area = makeTextArea(frame, true);
    [textOf(area) setDelegate:delegate];
    return area;
  }
  NSTextField *field = makeTextField(@"", frame);
  [field setDelegate:delegate];
  return field;
}

NSView *focusOf(FieldForm form, NSView *control) {
  return form == FieldForm::names ? textOf((NSScrollView *)control) : control;
}

NSTextField *makeRemark(NSRect frame) {
  NSTextField *remark = makeLabel(@"", frame, NSLeftTextAlignment);
  [remark setFont:[NSFont systemFontOfSize:remarkTextSize]];
  return remark;
}

void showKind(NSPopUpButton *button, NSString *kind) {
  NSInteger item = [button indexOfItemWithRepresentedObject:kind];
  if (item < 0) {
    // A kind that is none of the known ones is kept as it is. An item of the same title would go
    // when it is added.
    [button addItemWithTitle:@""];
    [[button lastItem] setTitle:kind];
    [[button lastItem] setRepresentedObject:kind];
    item = [button numberOfItems] - 1;
  }
  [button selectItemAtIndex:item];
}

}  // namespace

CGFloat ReferenceForm::width() { return 2 * margin + labelWidth + gap + fieldWidth; }

CGFloat ReferenceForm::height(const std::vector<EditableField> &fields) {
  CGFloat height = margin;
  for (const EditableField &field : fields) {
    height += isPaired(field) ? 0 : heightOf(field) + gap;
  }
  return height;
}

void ReferenceForm::build(NSView *view, const std::vector<EditableField> &fields, id delegate) {
  const CGFloat left = margin + labelWidth + gap;
  CGFloat top = NSHeight([view frame]) - margin;
  bool isSecond = false;
  for (const EditableField &field : fields) {
    const bool isFirst = isPaired(field);
    const CGFloat y = top - heightOf(field);
    const bool hasRemark = hintOf(field) != nil;
    const CGFloat x = isSecond ? left + fieldWidth - shortFieldWidth : left;
    const NSRect frame = NSMakeRect(x, hasRemark ? y + remarkHeight : y,
                                    isFirst || isSecond ? shortFieldWidth : fieldWidth,
                                    heightOf(field) - (hasRemark ? remarkHeight : 0));
    const NSUInteger mask = (isFirst ? NSViewMaxXMargin : NSViewWidthSizable) | NSViewMinYMargin;
    // The label stands beside the first line of its field.
    const CGFloat labelRoom = isSecond ? shortLabelWidth : labelWidth;
    add(view,
        makeLabel(adapter::stringFromUTF8(field.label),
                  NSMakeRect(x - gap - labelRoom, top - controlHeight, labelRoom, 20),
                  NSRightTextAlignment),
        NSViewMaxXMargin | NSViewMinYMargin);
    Row row = {.form = field.form,
               .control = makeControl(field.form, frame, delegate),
               .remark = nil,
               .hint = hintOf(field)};
    add(view, row.control, mask);
    if (hasRemark) {
      row.remark = makeRemark(NSMakeRect(x, y, fieldWidth, remarkHeight));
      add(view, row.remark, mask);
    }
    if (!rows_.empty()) {
      [focusOf(rows_.back().form, rows_.back().control)
          setNextKeyView:focusOf(row.form, row.control)];
    }
    rows_.push_back(row);
    showReason(rows_.size() - 1, std::nullopt);
    isSecond = isFirst;
    top -= isFirst ? 0 : heightOf(field) + gap;
  }
}

std::string ReferenceForm::text(std::size_t field) const {
  const Row &row = rows_[field];
  if (row.form == FieldForm::names) {
    return adapter::utf8([textOf((NSScrollView *)row.control) string]);
  }
  if (row.form == FieldForm::kind) {
    return adapter::utf8([[(NSPopUpButton *)row.control selectedItem] representedObject]);
  }
  return adapter::utf8([(NSTextField *)row.control stringValue]);
}

void ReferenceForm::show(std::size_t field, const std::string &text) {
  const Row &row = rows_[field];
  NSString *shown = adapter::stringFromUTF8(text);
  if (row.form == FieldForm::names) {
    [textOf((NSScrollView *)row.control) setString:shown];
  } else if (row.form == FieldForm::kind) {
    showKind((NSPopUpButton *)row.control, shown);
  } else {
    [(NSTextField *)row.control setStringValue:shown];
  }
}

void ReferenceForm::showReason(std::size_t field, const std::optional<std::string> &reason) {
  const Row &row = rows_[field];
  [row.remark setStringValue:reason ? adapter::stringFromUTF8(*reason) : row.hint];
  [row.remark setTextColor:reason ? [NSColor colorWithCalibratedRed:0.75 green:0 blue:0 alpha:1]
                                  : [NSColor darkGrayColor]];
}

std::string ReferenceForm::remark(std::size_t field) const {
  const Row &row = rows_[field];
  return row.remark == nil ? std::string() : adapter::utf8([row.remark stringValue]);
}

std::size_t ReferenceForm::fieldOf(id control) const {
  return static_cast<std::size_t>(std::ranges::find_if(rows_,
                                                       [&](const Row &row) {
                                                         return control == row.control ||
                                                                control ==
                                                                    focusOf(row.form, row.control);
                                                       }) -
                                  rows_.begin());
}

void ReferenceForm::focus(std::size_t field) const {
  const Row &row = rows_[field];
  [[row.control window] makeFirstResponder:focusOf(row.form, row.control)];
}

NSView *ReferenceForm::firstControl() const {
  return rows_.empty() ? nil : focusOf(rows_.front().form, rows_.front().control);
}

}  // namespace korvo::windows
