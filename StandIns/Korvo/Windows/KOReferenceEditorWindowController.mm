#import "KOReferenceEditorWindowController.h"

#import "Controls.h"

#import <StandIns/Korvo/Adapter/StringConversion.h>

#include <algorithm>
#include <expected>
#include <string>
#include <utility>

namespace {

using korvo::library::EditableField;
using korvo::library::FieldForm;
using korvo::library::NewReference;

constexpr CGFloat labelWidth = 130;
constexpr CGFloat fieldWidth = 420;
constexpr CGFloat namesHeight = 58;

CGFloat heightOf(FieldForm form) {
  return form == FieldForm::names ? namesHeight : korvo::windows::controlHeight;
}

CGFloat heightOfForm(const std::vector<EditableField> &fields) {
  CGFloat height = 2 * korvo::windows::margin + korvo::windows::controlHeight;
  for (const EditableField &field : fields) {
    height += heightOf(field.form) + korvo::windows::gap;
  }
  return height + korvo::windows::gap;
}

std::expected<std::vector<EditableField>, std::string> fieldsOf(KOReference *reference) {
  const auto record = [[reference library] library].reference([reference row]);
  if (!record) {
    return std::unexpected(record.error());
  }
  if (!*record) {
    return std::unexpected("The reference is no longer in the library.");
  }
  return korvo::library::editableFields(**record);
}

NSView *makeControl(FieldForm form, NSRect frame) {
  switch (form) {
    case FieldForm::names:
      return korvo::windows::makeTextArea(frame, true);
    case FieldForm::kind: {
      NSPopUpButton *button = korvo::windows::makePopUpButton(frame, nil, nullptr);
      for (const std::string_view kind : korvo::library::referenceKinds()) {
        [button addItemWithTitle:korvo::adapter::stringFromUTF8(kind)];
      }
      return button;
    }
    case FieldForm::identifier:
    case FieldForm::line:
    case FieldForm::date:
      break;
  }
  return korvo::windows::makeTextField(@"", frame);
}

NSString *shownText(FieldForm form, NSView *control) {
  switch (form) {
    case FieldForm::names:
      return [korvo::windows::textOf((NSScrollView *)control) string];
    case FieldForm::kind:
      return [(NSPopUpButton *)control titleOfSelectedItem];
    case FieldForm::identifier:
    case FieldForm::line:
    case FieldForm::date:
      break;
  }
  return [(NSTextField *)control stringValue];
}

void showText(FieldForm form, NSView *control, NSString *text) {
  if (form == FieldForm::names) {
    [korvo::windows::textOf((NSScrollView *)control) setString:text];
  } else if (form == FieldForm::kind) {
    // A kind that is none of the known ones is kept as it is.
    if ([(NSPopUpButton *)control indexOfItemWithTitle:text] < 0) {
      [(NSPopUpButton *)control addItemWithTitle:text];
    }
    [(NSPopUpButton *)control selectItemWithTitle:text];
  } else {
    [(NSTextField *)control setStringValue:text];
  }
}

}  // namespace

@interface KOReferenceEditorWindowController (Building)
- (void)buildInView:(NSView *)content;
- (void)load;
- (std::vector<EditableField>)changedFields;
- (void)showStatus:(NSString *)status;
@end

@implementation KOReferenceEditorWindowController

- (id)initWithReference:(KOReference *)reference delegate:(id<KOReferenceEditorDelegate>)delegate {
  auto fields = fieldsOf(reference);
  std::vector<EditableField> shown = fields ? *std::move(fields) : std::vector<EditableField>();
  const NSSize size =
      NSMakeSize(2 * korvo::windows::margin + labelWidth + korvo::windows::gap + fieldWidth,
                 heightOfForm(shown));
  NSWindow *window = korvo::windows::makeWindow(@"Reference", size, NSMakeSize(420, size.height));
  self = [super initWithWindow:window];
  if (self != nil) {
    delegate_ = delegate;
    reference_ = [reference retain];
    loaded_ = std::move(shown);
    controls_ = [[NSMutableArray alloc] init];
    [self buildInView:[window contentView]];
    [window setDelegate:(id)self];
    [self load];
  }
  return self;
}

- (void)dealloc {
  [[self window] setDelegate:nil];
  [reference_ release];
  [controls_ release];
  [super dealloc];
}

- (void)buildInView:(NSView *)content {
  using namespace korvo::windows;
  const NSSize size = [content frame].size;
  CGFloat top = size.height - margin;
  NSView *previous = nil;
  for (const EditableField &field : loaded_) {
    const CGFloat height = heightOf(field.form);
    top -= height;
    // The label stands beside the first line of its field.
    add(content,
        makeLabel(korvo::adapter::stringFromUTF8(field.label),
                  NSMakeRect(margin, top + height - controlHeight, labelWidth, 20),
                  NSRightTextAlignment),
        NSViewMaxXMargin | NSViewMinYMargin);
    NSView *control =
        makeControl(field.form, NSMakeRect(margin + labelWidth + gap, top, fieldWidth, height));
    add(content, control, NSViewWidthSizable | NSViewMinYMargin);
    [controls_ addObject:control];
    NSView *focus = field.form == FieldForm::names ? textOf((NSScrollView *)control) : control;
    [previous setNextKeyView:focus];
    previous = focus;
    top -= gap;
  }

  const CGFloat buttonWidth = 88;
  CGFloat x = size.width - margin - buttonWidth;
  NSButton *saveButton = makeButton(@"Save", NSMakeRect(x, margin, buttonWidth, controlHeight),
                                    self, @selector(saveClicked:));
  [saveButton setKeyEquivalent:@"\r"];
  add(content, saveButton, NSViewMinXMargin | NSViewMaxYMargin);
  x -= gap + buttonWidth;
  add(content,
      makeButton(@"Revert", NSMakeRect(x, margin, buttonWidth, controlHeight), self,
                 @selector(revert:)),
      NSViewMinXMargin | NSViewMaxYMargin);
  statusLabel_ =
      makeLabel(@"", NSMakeRect(margin, margin, x - gap - margin, 20), NSLeftTextAlignment);
  add(content, statusLabel_, NSViewWidthSizable | NSViewMaxYMargin);
}

- (KOReference *)reference {
  return reference_;
}

- (void)load {
  auto fields = fieldsOf(reference_);
  if (!fields) {
    [self showStatus:korvo::adapter::stringFromUTF8(fields.error())];
    return;
  }
  loaded_ = *std::move(fields);
  // A form is built once; a record that could not be read then has no controls.
  for (std::size_t index = 0; index < loaded_.size() && index < [controls_ count]; ++index) {
    showText(loaded_[index].form, [controls_ objectAtIndex:index],
             korvo::adapter::stringFromUTF8(loaded_[index].value));
  }
  const auto tag = [reference_ citationTag];
  [[self window] setTitle:tag && *tag ? korvo::adapter::stringFromUTF8(**tag) : @"Reference"];
}

- (std::vector<EditableField>)changedFields {
  std::vector<EditableField> changed;
  for (std::size_t index = 0; index < loaded_.size() && index < [controls_ count]; ++index) {
    EditableField field = loaded_[index];
    field.value = korvo::adapter::utf8(shownText(field.form, [controls_ objectAtIndex:index]));
    if (field.value != loaded_[index].value) {
      changed.push_back(std::move(field));
    }
  }
  return changed;
}

- (BOOL)save {
  // The changes go into the record as it is now: another program may have changed other
  // fields meanwhile.
  const auto saved =
      [[reference_ library] library].edit([reference_ row], [self](const NewReference &present) {
        return korvo::library::withEditedFields(present, [self changedFields]);
      });
  if (!saved) {
    [self showStatus:korvo::adapter::stringFromUTF8(saved.error())];
    return NO;
  }
  [self load];
  [self showStatus:[[reference_ library] library].isTemporary() ? @"Saved until Korvo quits"
                                                                : @"Saved"];
  [delegate_ referenceWasSaved:reference_];
  return YES;
}

- (void)saveClicked:(id)sender {
  (void)sender;
  // What is being typed counts too.
  [[self window] makeFirstResponder:nil];
  (void)[self save];
}

- (void)revert:(id)sender {
  (void)sender;
  [[self window] makeFirstResponder:nil];
  [self load];
  [self showStatus:@""];
}

- (BOOL)windowShouldClose:(id)sender {
  (void)sender;
  [[self window] makeFirstResponder:nil];
  if ([self changedFields].empty()) {
    return YES;
  }
  switch (NSRunAlertPanel(@"Unsaved changes", @"Save the changes to this reference?", @"Save",
                          @"Don't Save", @"Cancel")) {
    case NSAlertDefaultReturn:
      return [self save];
    case NSAlertAlternateReturn:
      return YES;
    default:
      return NO;
  }
}

- (void)windowWillClose:(NSNotification *)notification {
  (void)notification;
  [delegate_ editorWillClose:self];
}

- (void)showStatus:(NSString *)status {
  [statusLabel_ setStringValue:status];
}

- (NSString *)statusText {
  return [statusLabel_ stringValue];
}

- (NSString *)textOfField:(NSString *)key {
  const auto field =
      std::ranges::find(loaded_, korvo::adapter::utf8(key), &EditableField::key) - loaded_.begin();
  if (static_cast<std::size_t>(field) >= loaded_.size()) {
    return nil;
  }
  const auto index = static_cast<NSUInteger>(field);
  return shownText(loaded_[index].form, [controls_ objectAtIndex:index]);
}

- (void)setText:(NSString *)text ofField:(NSString *)key {
  const auto field =
      std::ranges::find(loaded_, korvo::adapter::utf8(key), &EditableField::key) - loaded_.begin();
  if (static_cast<std::size_t>(field) >= loaded_.size()) {
    return;
  }
  const auto index = static_cast<NSUInteger>(field);
  showText(loaded_[index].form, [controls_ objectAtIndex:index], text);
}

@end
