#include "EditableFields.h"

#include "CSLNames.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <iterator>
#include <optional>

namespace korvo::library {
namespace {

struct FormField {
  FieldForm form;
  const char *key;
  const char *label;
};

constexpr FormField form[] = {
    {FieldForm::identifier, "", "Citation identifier"},
    {FieldForm::kind, "type", "Kind"},
    {FieldForm::names, "author", "Authors"},
    {FieldForm::names, "editor", "Editors"},
    {FieldForm::date, "issued", "Date"},
    {FieldForm::line, "title", "Title"},
    {FieldForm::line, "container-title", "Published in"},
    {FieldForm::line, "volume", "Volume"},
    {FieldForm::line, "issue", "Issue"},
    {FieldForm::line, "page", "Pages"},
    {FieldForm::line, "edition", "Edition"},
    {FieldForm::line, "publisher", "Publisher"},
    {FieldForm::line, "publisher-place", "Place"},
    {FieldForm::line, "DOI", "DOI"},
    {FieldForm::line, "URL", "URL"},
};

struct Kind {
  std::string_view type;  // CSL's
  std::string_view name;  // for people
};

constexpr std::array kinds = std::to_array<Kind>({
    {"article", "Article"},
    {"article-journal", "Journal article"},
    {"article-magazine", "Magazine article"},
    {"article-newspaper", "Newspaper article"},
    {"bill", "Bill"},
    {"book", "Book"},
    {"broadcast", "Broadcast"},
    {"chapter", "Book chapter"},
    {"classic", "Classical work"},
    {"collection", "Collection"},
    {"dataset", "Dataset"},
    {"document", "Document"},
    {"entry", "Entry"},
    {"entry-dictionary", "Dictionary entry"},
    {"entry-encyclopedia", "Encyclopedia entry"},
    {"event", "Event"},
    {"figure", "Figure"},
    {"graphic", "Graphic"},
    {"hearing", "Hearing"},
    {"interview", "Interview"},
    {"legal_case", "Legal case"},
    {"legislation", "Legislation"},
    {"manuscript", "Manuscript"},
    {"map", "Map"},
    {"motion_picture", "Film"},
    {"musical_score", "Musical score"},
    {"pamphlet", "Pamphlet"},
    {"paper-conference", "Conference paper"},
    {"patent", "Patent"},
    {"performance", "Performance"},
    {"periodical", "Periodical"},
    {"personal_communication", "Personal communication"},
    {"post", "Post"},
    {"post-weblog", "Blog post"},
    {"regulation", "Regulation"},
    {"report", "Report"},
    {"review", "Review"},
    {"review-book", "Book review"},
    {"software", "Software"},
    {"song", "Song or recording"},
    {"speech", "Speech"},
    {"standard", "Standard"},
    {"thesis", "Thesis"},
    {"treaty", "Treaty"},
    {"webpage", "Web page"},
});
static_assert(std::ranges::is_sorted(kinds, {}, &Kind::type));

constexpr auto kindTypes = [] {
  std::array<std::string_view, kinds.size()> types;
  std::ranges::transform(kinds, types.begin(), &Kind::type);
  return types;
}();

std::vector<std::string_view> lines(std::string_view text) {
  std::vector<std::string_view> result;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    result.push_back(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  return result;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(" \t\r\n") - begin + 1);
}

std::string namesText(const Json &item, const char *key) {
  std::string text;
  for (const PersonName &name : personNames(item, key)) {
    if (!text.empty()) {
      text += '\n';
    }
    text += name.invertedForm();
  }
  return text;
}

// "van Gogh, Vincent" or "King, Martin Luther, Jr."
Json nameFromLine(std::string_view line) {
  const std::size_t comma = line.find(',');
  if (comma == std::string_view::npos) {
    return Json{{"literal", line}};
  }
  std::string_view family = trimmed(line.substr(0, comma));
  std::string_view given = trimmed(line.substr(comma + 1));
  Json name = Json::object();
  if (const std::string particle = leadingParticle(family); !particle.empty()) {
    name["non-dropping-particle"] = particle;
    family.remove_prefix(particle.size() + 1);
  }
  name["family"] = family;
  if (const std::size_t second = given.find(','); second != std::string_view::npos) {
    name["suffix"] = trimmed(given.substr(second + 1));
    given = trimmed(given.substr(0, second));
  }
  if (!given.empty()) {
    name["given"] = given;
  }
  return name;
}

// A name that stands in the record already keeps what the form does not show of it.
Json namesFromText(const Json &item, const std::string &key, std::string_view text) {
  Json names = Json::array();
  const auto present = item.find(key);
  for (const std::string_view rawLine : lines(text)) {
    const std::string_view line = trimmed(rawLine);
    if (line.empty()) {
      continue;
    }
    Json name = nameFromLine(line);
    if (present != item.end() && present->is_array()) {
      const auto same = std::ranges::find_if(
          *present, [&](const Json &other) { return personName(other).invertedForm() == line; });
      if (same != present->end()) {
        name = *same;
      }
    }
    names.push_back(std::move(name));
  }
  return names;
}

std::string twoDigits(std::int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

// "2001-05-03"; nothing where the parts are no numbers.
std::string datePartsText(const Json &parts) {
  std::string text;
  if (!parts.is_array()) {
    return text;
  }
  for (const Json &part : parts) {
    std::int64_t number = 0;
    const std::string digits = part.is_string() ? part.get<std::string>() : part.dump();
    const char *end = digits.data() + digits.size();
    if (std::from_chars(digits.data(), end, number).ptr != end) {
      return {};
    }
    text += text.empty() ? std::to_string(number) : "-" + twoDigits(number);
  }
  return text;
}

std::string dateText(const Json &item) {
  const auto issued = item.find("issued");
  if (issued == item.end()) {
    return {};
  }
  if (issued->is_string()) {
    return issued->get<std::string>();
  }
  if (!issued->is_object()) {
    return {};
  }
  const auto parts = issued->find("date-parts");
  if (parts != issued->end() && parts->is_array() && !parts->empty() && parts->size() <= 2) {
    const std::string first = datePartsText(parts->front());
    const std::string last = parts->size() == 2 ? datePartsText(parts->back()) : std::string();
    return last.empty() ? first : first + "/" + last;
  }
  for (const char *key : {"literal", "raw"}) {
    if (std::string text = textMember(*issued, key); !text.empty()) {
      return text;
    }
  }
  return {};
}

// The numbers of "2001", "2001-05" or "2001-05-03"; nothing when the text is no such date.
std::optional<std::vector<int>> datePartsFromText(std::string_view text) {
  std::vector<int> parts;
  const char *position = text.data();
  const char *end = text.data() + text.size();
  while (position != end && parts.size() < 3) {
    if (!parts.empty() && *position++ != '-') {
      return std::nullopt;
    }
    int number = 0;
    const auto read = std::from_chars(position, end, number);
    const int largest = parts.empty() ? 9999 : parts.size() == 1 ? 12 : 31;
    const int least = parts.empty() ? -9999 : 1;
    if (read.ec != std::errc() || number < least || number > largest) {
      return std::nullopt;
    }
    parts.push_back(number);
    position = read.ptr;
  }
  if (position != end || parts.empty()) {
    return std::nullopt;
  }
  return parts;
}

bool isDayOfCalendar(const std::vector<int> &parts) {
  using namespace std::chrono;
  return parts.size() < 3 || year_month_day(year(parts[0]), month(static_cast<unsigned>(parts[1])),
                                            day(static_cast<unsigned>(parts[2])))
                                 .ok();
}

using Dates = std::vector<std::vector<int>>;

// One date or, with a slash, two; nothing where they are neither.
std::optional<Dates> datesFromText(std::string_view text) {
  const std::size_t slash = text.find('/');
  const auto first = datePartsFromText(text.substr(0, slash));
  if (!first || slash == std::string_view::npos) {
    return first ? std::optional<Dates>({*first}) : std::nullopt;
  }
  const auto last = datePartsFromText(text.substr(slash + 1));
  return last ? std::optional<Dates>({*first, *last}) : std::nullopt;
}

Json dateFromText(std::string_view text) {
  if (const auto dates = datesFromText(text)) {
    return Json{{"date-parts", *dates}};
  }
  return Json{{"literal", text}};
}

std::string fieldText(const FormField &field, const Json &item, const NewReference &reference) {
  switch (field.form) {
    case FieldForm::identifier:
      return reference.identifier;
    case FieldForm::names:
      return namesText(item, field.key);
    case FieldForm::date:
      return dateText(item);
    case FieldForm::kind:
    case FieldForm::line:
      return textMember(item, field.key);
  }
  return {};
}

// What has a meaning of its own in a citation that stands in a text.
constexpr std::string_view signsOfCitations = ";{}#@\\";

std::optional<std::string> reasonAgainstIdentifier(std::string_view value) {
  if (value.empty()) {
    return "without one the reference is found by author and year only";
  }
  const std::size_t sign = value.find_first_of(signsOfCitations);
  if (sign != std::string_view::npos) {
    return "\"" + std::string(1, value[sign]) + "\" has a meaning of its own in citations";
  }
  return std::nullopt;
}

std::optional<std::string> reasonAgainstDate(std::string_view value) {
  const auto dates = datesFromText(value);
  if (dates && !std::ranges::all_of(*dates, isDayOfCalendar)) {
    return "the calendar has no " + std::string(value);
  }
  return std::nullopt;
}

void putField(Json &item, NewReference &reference, const EditableField &field) {
  const std::string_view value = trimmed(field.value);
  if (field.form == FieldForm::identifier) {
    reference.identifier = value;
    item["id"] = value;
  } else if (value.empty()) {
    item.erase(field.key);
  } else if (field.form == FieldForm::names) {
    Json names = namesFromText(item, field.key, value);
    item[field.key] = std::move(names);
  } else if (field.form == FieldForm::date) {
    item[field.key] = dateFromText(value);
  } else {
    item[field.key] = value;
  }
}

// Far more than any reference has; and few enough to write the record again, which takes stack for
// every level.
constexpr std::size_t greatestDepth = 200;

bool isNestedTooDeeply(std::string_view json) {
  std::size_t depth = 0;
  bool isInString = false;
  for (std::size_t index = 0; index < json.size(); ++index) {
    const char byte = json[index];
    if (isInString && byte == '\\') {
      ++index;
    } else if (byte == '"') {
      isInString = !isInString;
    } else if (!isInString && (byte == '[' || byte == '{')) {
      if (++depth > greatestDepth) {
        return true;
      }
    } else if (!isInString && (byte == ']' || byte == '}')) {
      --depth;
    }
  }
  return false;
}

}  // namespace

std::span<const std::string_view> referenceKinds() { return kindTypes; }

std::string nameOfKind(std::string_view kind) {
  const auto found = std::ranges::lower_bound(kinds, kind, {}, &Kind::type);
  return std::string(found != kinds.end() && found->type == kind ? found->name : kind);
}

std::optional<std::string> reasonAgainst(const EditableField &field) {
  switch (field.form) {
    case FieldForm::identifier:
      return reasonAgainstIdentifier(trimmed(field.value));
    case FieldForm::date:
      return reasonAgainstDate(trimmed(field.value));
    case FieldForm::kind:
    case FieldForm::line:
    case FieldForm::names:
      break;
  }
  return std::nullopt;
}

std::expected<std::vector<EditableField>, std::string> editableFields(
    const NewReference &reference) {
  const Json item = Json::parse(reference.cslJson, nullptr, /*allow_exceptions=*/false);
  if (!item.is_object()) {
    return std::unexpected("the reference is no JSON object");
  }
  if (isNestedTooDeeply(reference.cslJson)) {
    return std::unexpected("the reference's JSON is nested too deeply");
  }
  std::vector<EditableField> fields;
  for (const FormField &field : form) {
    fields.push_back({.form = field.form,
                      .key = field.key,
                      .label = field.label,
                      .value = fieldText(field, item, reference)});
  }
  return fields;
}

std::expected<NewReference, std::string> withEditedFields(const NewReference &reference,
                                                          std::span<const EditableField> fields) {
  const auto present = editableFields(reference);
  if (!present) {
    return std::unexpected(present.error());
  }
  std::vector<EditableField> changed;
  std::ranges::copy_if(fields, std::back_inserter(changed), [&](const EditableField &field) {
    return std::ranges::find(*present, field) == present->end();
  });
  // JSON can be written in many ways: without a change it stays written as it was.
  if (changed.empty()) {
    return reference;
  }
  for (const EditableField &field : changed) {
    if (const auto reason = reasonAgainst(field)) {
      return std::unexpected(field.label + ": " + *reason);
    }
  }
  Json item = Json::parse(reference.cslJson, nullptr, /*allow_exceptions=*/false);
  NewReference edited = reference;
  for (const EditableField &field : changed) {
    putField(item, edited, field);
  }
  edited.cslJson = item.dump(-1, ' ', false, Json::error_handler_t::replace);
  return edited;
}

}  // namespace korvo::library
