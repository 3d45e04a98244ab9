#import "KOReferenceEditorWindowController.h"

#import "Controls.h"

#import <StandIns/Korvo/Adapter/StringConversion.h>

#include <algorithm>
#include <expected>
#include <optional>
#include <string>
#include <utility>

namespace {

using korvo::library::EditableField;
using korvo::library::FieldForm;
using korvo::library::NewReference;
using korvo::windows::ReferenceForm;

// Two lines of an error with the path of a file.
constexpr CGFloat statusHeight = 34;
constexpr CGFloat heightBelowForm =
    korvo::windows::margin + korvo::windows::controlHeight + korvo::windows::gap + statusHeight;

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

}  // namespace

@interface KOReferenceEditorWindowController (Building)
- (void)buildInView:(NSView *)content;
- (void)load;
- (std::vector<EditableField>)changedFields;
- (std::optional<std::string>)reasonAgainst:(const EditableField &)field;
- (void)showStatus:(NSString *)status;
- (void)changed:(id)control;
- (void)left:(id)control;
@end

@implementation KOReferenceEditorWindowController

- (id)initWithReference:(KOReference *)reference delegate:(id<KOReferenceEditorDelegate>)delegate {
  auto fields = fieldsOf(reference);
  std::vector<EditableField> shown = fields ? *std::move(fields) : std::vector<EditableField>();
  const NSSize size =
      NSMakeSize(ReferenceForm::width(), ReferenceForm::height(shown) + heightBelowForm);
  NSWindow *window = korvo::windows::makeWindow(@"Reference", size, size);
  self = [super initWithWindow:window];
  if (self != nil) {
    delegate_ = delegate;
    reference_ = [reference retain];
    loaded_ = std::move(shown);
    [self buildInView:[window contentView]];
    [window setDelegate:(id)self];
    [self load];
  }
  return self;
}

- (void)dealloc {
  [[self window] setDelegate:nil];
  [reference_ release];
  [super dealloc];
}

- (void)buildInView:(NSView *)content {
  using namespace korvo::windows;
  const NSSize size = [content frame].size;
  form_.build(content, loaded_, self);
  [[self window] setInitialFirstResponder:form_.firstControl()];

  const CGFloat buttonWidth = 88;
  CGFloat x = size.width - margin - buttonWidth;
  // Not by Return, which begins a new line in the fields of names.
  NSButton *saveButton = makeButton(@"Save", NSMakeRect(x, margin, buttonWidth, controlHeight),
                                    self, @selector(saveClicked:));
  add(content, saveButton, NSViewMinXMargin | NSViewMaxYMargin);
  x -= gap + buttonWidth;
  add(content,
      makeButton(@"Revert", NSMakeRect(x, margin, buttonWidth, controlHeight), self,
                 @selector(revert:)),
      NSViewMinXMargin | NSViewMaxYMargin);
  statusLabel_ = makeLabel(
      @"", NSMakeRect(margin, margin + controlHeight + gap, size.width - 2 * margin, statusHeight),
      NSLeftTextAlignment);
  [[statusLabel_ cell] setScrollable:NO];
  [[statusLabel_ cell] setWraps:YES];
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
  for (std::size_t index = 0; index < std::min(loaded_.size(), form_.size()); ++index) {
    form_.show(index, loaded_[index].value);
    form_.showReason(index, std::nullopt);
  }
  const auto tag = [reference_ citationTag];
  [[self window] setTitle:tag && *tag ? korvo::adapter::stringFromUTF8(**tag) : @"Reference"];
  [[self window] setDocumentEdited:NO];
}

- (EditableField)shownField:(std::size_t)index {
  EditableField field = loaded_[index];
  field.value = form_.text(index);
  return field;
}

- (std::vector<EditableField>)changedFields {
  std::vector<EditableField> changed;
  for (std::size_t index = 0; index < std::min(loaded_.size(), form_.size()); ++index) {
    EditableField field = [self shownField:index];
    if (field != loaded_[index]) {
      changed.push_back(std::move(field));
    }
  }
  return changed;
}

- (std::optional<std::string>)reasonAgainst:(const EditableField &)field {
  if (auto reason = korvo::library::reasonAgainst(field)) {
    return reason;
  }
  // Without an answer the library itself refuses it, or not, when it is saved.
  if (field.form == FieldForm::identifier &&
      [[reference_ library] library].hasIdentifier(field.value).value_or(false)) {
    return "another reference bears it already";
  }
  return std::nullopt;
}

// Shows why fields cannot be saved; the first of them, or none.
- (std::optional<std::size_t>)firstWrongField {
  std::optional<std::size_t> first;
  for (std::size_t index = 0; index < std::min(loaded_.size(), form_.size()); ++index) {
    const EditableField field = [self shownField:index];
    const auto reason = field == loaded_[index] ? std::nullopt : [self reasonAgainst:field];
    form_.showReason(index, reason);
    if (reason && !first) {
      first = index;
    }
  }
  return first;
}

- (BOOL)save {
  if (const auto wrong = [self firstWrongField]) {
    [self showStatus:@"Not saved: a field cannot be as it is."];
    form_.focus(*wrong);
    return NO;
  }
  // The changes go into the record as it is now: another program may have changed other
  // fields meanwhile.
  const auto saved =
      [[reference_ library] library].edit([reference_ row], [self](const NewReference &present) {
        return korvo::library::withEditedFields(present, [self changedFields]);
      });
  if (!saved) {
    [self showStatus:korvo::adapter::stringFromUTF8("Not saved: " + saved.error())];
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

- (BOOL)mayClose {
  [[self window] makeFirstResponder:nil];
  if ([self changedFields].empty()) {
    return YES;
  }
  [[self window] makeKeyAndOrderFront:nil];
  NSString *question =
      [NSString stringWithFormat:@"Save the changes to the reference %@?", [[self window] title]];
  switch (NSRunAlertPanel(@"Unsaved changes", @"%@", @"Save", @"Don't Save", @"Cancel", question)) {
    case NSAlertDefaultReturn:
      return [self save];
    case NSAlertAlternateReturn:
      return YES;
    default:
      return NO;
  }
}

- (BOOL)windowShouldClose:(id)sender {
  (void)sender;
  return [self mayClose];
}

- (void)windowWillClose:(NSNotification *)notification {
  (void)notification;
  [delegate_ editorWillClose:self];
}

// In full where it is longer than the room for it.
- (void)showStatus:(NSString *)status {
  [statusLabel_ setStringValue:status];
  [statusLabel_ setToolTip:status];
}

- (NSString *)statusText {
  return [statusLabel_ stringValue];
}

// The fields' delegate

- (void)changed:(id)control {
  const std::size_t field = form_.fieldOf(control);
  if (field < form_.size()) {
    form_.showReason(field, std::nullopt);
  }
  [self showStatus:@""];
  [[self window] setDocumentEdited:[self changedFields].empty() ? NO : YES];
}

- (void)left:(id)control {
  const std::size_t index = form_.fieldOf(control);
  if (index >= form_.size()) {
    return;
  }
  const EditableField field = [self shownField:index];
  if (field != loaded_[index]) {
    form_.showReason(index, [self reasonAgainst:field]);
  }
}

- (void)controlTextDidChange:(NSNotification *)notification {
  [self changed:[notification object]];
}

- (void)controlTextDidEndEditing:(NSNotification *)notification {
  [self left:[notification object]];
}

- (void)textDidChange:(NSNotification *)notification {
  [self changed:[notification object]];
}

- (void)kindChosen:(id)sender {
  [self changed:sender];
}

// Names have lines, but no tabs.
- (BOOL)textView:(NSTextView *)text doCommandBySelector:(SEL)command {
  if (sel_isEqual(command, @selector(insertTab:))) {
    [[self window] selectKeyViewFollowingView:text];
    return YES;
  }
  if (sel_isEqual(command, @selector(insertBacktab:))) {
    [[self window] selectKeyViewPrecedingView:text];
    return YES;
  }
  return NO;
}

// For scripts and tests

- (std::size_t)indexOfField:(NSString *)key {
  return static_cast<std::size_t>(
      std::ranges::find(loaded_, korvo::adapter::utf8(key), &EditableField::key) - loaded_.begin());
}

- (NSString *)textOfField:(NSString *)key {
  const std::size_t index = [self indexOfField:key];
  return index < form_.size() ? korvo::adapter::stringFromUTF8(form_.text(index)) : nil;
}

- (void)setText:(NSString *)text ofField:(NSString *)key {
  const std::size_t index = [self indexOfField:key];
  if (index >= form_.size()) {
    return;
  }
  form_.show(index, korvo::adapter::utf8(text));
  [self showStatus:@""];
  const EditableField field = [self shownField:index];
  form_.showReason(index, field == loaded_[index] ? std::nullopt : [self reasonAgainst:field]);
}

- (NSString *)remarkOnField:(NSString *)key {
  const std::size_t index = [self indexOfField:key];
  return index < form_.size() ? korvo::adapter::stringFromUTF8(form_.remark(index)) : nil;
}

@end
