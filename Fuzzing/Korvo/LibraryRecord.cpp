// A reference from someone else's CSL-JSON: whatever is in it, a library takes it or says why not,
// and then finds it by every name that it may be cited by; a form that nobody changed changes
// nothing, and one into which anything was typed makes a reference again.

#include <Formats/Unicode.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>
#include <StandIns/Korvo/Library/BibliographicRecord.h>
#include <StandIns/Korvo/Library/CitationName.h>
#include <StandIns/Korvo/Library/EditableFields.h>
#include <StandIns/Korvo/Library/FoldedText.h>
#include <StandIns/Korvo/Library/Library.h>

#include <algorithm>
#include <vector>

namespace fuzzing {

namespace {

using korvo::library::Library;
using korvo::library::NewReference;

bool finds(Library &references, std::string_view tag) {
  const auto rows = references.matching(tag);
  require(rows.has_value());
  return rows->size() == 1;
}

void requireUnchangedForm(const NewReference &reference) {
  const auto fields = korvo::library::editableFields(reference);
  if (!fields) {
    require(fields.error().ends_with("nested too deeply"));
    return;
  }
  const auto same = korvo::library::withEditedFields(reference, *fields);
  require(same.has_value());
  require(same->identifier == reference.identifier && same->cslJson == reference.cslJson);
}

std::string_view withoutBlanksAround(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(blanks);
  return begin == std::string_view::npos
             ? std::string_view()
             : text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

// The text is typed into every field.
void requireTaken(const NewReference &reference, std::string_view text) {
  const auto before = korvo::library::editableFields(reference);
  if (!before) {
    return;
  }
  const std::string typed = formats::encodeUTF8(formats::decodeUTF8(text));
  std::vector<korvo::library::EditableField> fields = *before;
  for (korvo::library::EditableField &field : fields) {
    field.value = typed;
  }
  auto edited = korvo::library::withEditedFields(reference, fields);
  if (!edited) {
    // An identifier or a day that would break citations. The rest is taken without them.
    require(edited.error().find('\n') == std::string::npos);
    for (std::size_t index = 0; index < fields.size(); ++index) {
      const korvo::library::FieldForm form = fields[index].form;
      if (form == korvo::library::FieldForm::identifier ||
          form == korvo::library::FieldForm::date) {
        fields[index].value = (*before)[index].value;
      }
    }
    edited = korvo::library::withEditedFields(reference, fields);
  }
  require(edited.has_value());
  require(korvo::library::readBibliographicRecord(edited->cslJson).has_value());
  const auto shown = korvo::library::editableFields(*edited);
  require(shown.has_value() && shown->size() == before->size());
  for (std::size_t index = 0; index < shown->size(); ++index) {
    const korvo::library::EditableField &field = (*shown)[index];
    if (field.form == korvo::library::FieldForm::identifier ||
        field.form == korvo::library::FieldForm::line) {
      const std::string &given = fields[index].value;
      const bool isUnchanged = (*before)[index].value == given;
      require(field.value == (isUnchanged ? given : withoutBlanksAround(given)));
    }
  }
  requireUnchangedForm(*edited);
}

void requireFound(Library &references, const NewReference &reference,
                  const korvo::library::BibliographicRecord &record) {
  const auto rows = references.list({}, "");
  require(rows.has_value() && rows->size() == 1);
  require(references.cslJson(rows->front()) == reference.cslJson);
  const auto summary = references.summary(rows->front());
  require(summary.has_value() && summary->has_value());
  require((*summary)->identifier == reference.identifier);
  require((*summary)->title == record.title && (*summary)->year == record.year);
  require((*summary)->authors == korvo::library::authorsInOneLine(record));

  require(reference.identifier.empty() || finds(references, reference.identifier));
  for (const std::string &name : korvo::library::citationNames(record)) {
    require(finds(references, name));
  }
  const auto tag = references.citationTag(rows->front());
  require(tag.has_value());
  if (!reference.identifier.empty()) {
    require(*tag == reference.identifier);
  } else {
    require(*tag == korvo::library::firstAuthorAndYear(record));
    require(!*tag || finds(references, **tag));
  }
}

}  // namespace

void run(std::string_view bytes) {
  FuzzedData data(bytes);
  NewReference reference;
  reference.identifier = data.text();
  reference.cslJson = data.rest();
  const auto record = korvo::library::readBibliographicRecord(reference.cslJson);
  auto references = Library::temporary("fuzzed");
  require(references.has_value());
  const auto added = references->add({&reference, 1});
  require(added.has_value() == record.has_value());
  if (!record) {
    require(!record.error().empty() && references->count() == 0U);
    return;
  }
  require(added->added == 1 && added->alreadyThere == 0);
  requireFound(*references, reference, *record);
  requireUnchangedForm(reference);
  requireTaken(reference, reference.identifier);
  const auto again = references->add({&reference, 1});
  require(again.has_value() && again->added == 0 && again->alreadyThere == 1);
}

}  // namespace fuzzing
