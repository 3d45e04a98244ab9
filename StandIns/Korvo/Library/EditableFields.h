// A reference as a form: fields that a person can read and change.
//
// The record is CSL-JSON with members that no form shows. What was not changed in the form
// stays in the record exactly as it was.
#pragma once

#include "Library.h"

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::library {

enum class FieldForm {
  identifier,  // the citation identifier
  kind,        // one of referenceKinds()
  line,        // a line of text
  names,       // a name a line: "van Gogh, Vincent"; without a comma: an institution
  date,        // "2001", "2001-05", "2001-05-03", two of them with "/", or other words
};

struct EditableField {
  FieldForm form;
  std::string key;    // CSL's name of the member; empty for the identifier
  std::string label;  // for people
  std::string value;  // UTF-8

  bool operator==(const EditableField &) const = default;
};

// CSL's types, sorted.
std::span<const std::string_view> referenceKinds();
// "Journal article" for "article-journal"; a type that CSL lacks is its own name.
std::string nameOfKind(std::string_view kind);

// All fields of the form, in the order in which to show them, empty ones too. The error
// says what is wrong with the record.
std::expected<std::vector<EditableField>, std::string> editableFields(
    const NewReference &reference);

// Why the value must not stand in its field, without the field's label; nothing where it may.
std::optional<std::string> reasonAgainst(const EditableField &field);

// The reference with the changed fields put in. The error says what is wrong with the record, or
// which value would break citations and why: an identifier that is empty or has a citation's own
// signs, a day that no month has.
std::expected<NewReference, std::string> withEditedFields(const NewReference &reference,
                                                          std::span<const EditableField> fields);

}  // namespace korvo::library
