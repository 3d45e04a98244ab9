// The form of the reference editor: a control for each field, with what is to be said about it.
#pragma once

#include <StandIns/Korvo/Library/EditableFields.h>

#import <Cocoa/Cocoa.h>

#include <optional>
#include <string>
#include <vector>

namespace korvo::windows {

class ReferenceForm {
 public:
  // Fills the view from its upper edge down. `delegate` hears of changes as the delegate of text
  // fields and text views does, and gets kindChosen: from the menu of kinds. It is not retained.
  void build(NSView *view, const std::vector<library::EditableField> &fields, id delegate);
  // What the fields need below one another.
  static CGFloat height(const std::vector<library::EditableField> &fields);
  static CGFloat width();

  // Fields by their place in what was built.
  std::string text(std::size_t field) const;
  void show(std::size_t field, const std::string &text);
  // Below the field, in place of the hint; nothing brings the hint back.
  void showReason(std::size_t field, const std::optional<std::string> &reason);
  // What stands below the field; empty for nothing.
  std::string remark(std::size_t field) const;
  // The field that the control, or the text view in it, belongs to; the number of fields for none.
  std::size_t fieldOf(id control) const;
  void focus(std::size_t field) const;
  // For the first: the window's first responder.
  NSView *firstControl() const;

  std::size_t size() const { return rows_.size(); }

 private:
  // Its views belong to the window.
  struct Row {
    library::FieldForm form;
    NSView *control;
    NSTextField *remark;  // nil for a field about which nothing is ever to be said
    NSString *hint;
  };
  std::vector<Row> rows_;
};

}  // namespace korvo::windows
