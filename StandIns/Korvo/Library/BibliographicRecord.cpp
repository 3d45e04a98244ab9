#include "BibliographicRecord.h"

#include "CSLNames.h"

#include <algorithm>
#include <cctype>

namespace korvo::library {
namespace {

std::string joined(std::string_view first, std::string_view second, std::string_view between) {
  std::string result(first);
  if (!first.empty() && !second.empty()) {
    result += between;
  }
  return result += second;
}

// A year may be -350, 2001 or "2001"; 0 and texts that are no number are none.
std::string yearText(const Json &value) {
  std::string digits = value.is_number_integer() ? value.dump()
                       : value.is_string()       ? value.get<std::string>()
                                                 : std::string();
  const bool isNumber =
      !digits.empty() && std::all_of(digits.begin() + (digits.front() == '-'), digits.end(),
                                     [](unsigned char byte) { return std::isdigit(byte) != 0; });
  return isNumber && digits != "-" && digits != "0" ? digits : std::string();
}

// Four digits in a row: the year of "3 May 2001" or "2001-05-03".
std::string yearInside(std::string_view text) {
  std::size_t digits = 0;
  for (std::size_t index = 0; index <= text.size(); ++index) {
    const bool isDigit =
        index < text.size() && std::isdigit(static_cast<unsigned char>(text[index])) != 0;
    if (!isDigit && digits == 4) {
      return std::string(text.substr(index - 4, 4));
    }
    digits = isDigit ? digits + 1 : 0;
  }
  return {};
}

std::string yearOf(const Json &item) {
  const auto issued = item.find("issued");
  if (issued == item.end()) {
    return {};
  }
  if (issued->is_string()) {
    return yearInside(issued->get_ref<const std::string &>());
  }
  if (!issued->is_object()) {
    return {};
  }
  const auto parts = issued->find("date-parts");
  if (parts != issued->end() && parts->is_array() && !parts->empty() && parts->front().is_array() &&
      !parts->front().empty()) {
    if (std::string year = yearText(parts->front().front()); !year.empty()) {
      return year;
    }
  }
  for (const char *key : {"raw", "literal"}) {
    if (std::string year = yearInside(textMember(*issued, key)); !year.empty()) {
      return year;
    }
  }
  return {};
}

}  // namespace

std::string leadingParticle(std::string_view family) {
  std::size_t end = 0;
  while (end < family.size() && std::islower(static_cast<unsigned char>(family[end])) != 0) {
    const std::size_t blank = family.find(' ', end);
    if (blank == std::string_view::npos) {
      return {};
    }
    end = blank + 1;
  }
  return end == 0 || end >= family.size() ? std::string() : std::string(family.substr(0, end - 1));
}

std::string textMember(const Json &object, const char *key) {
  const auto member = object.find(key);
  if (member == object.end()) {
    return {};
  }
  if (member->is_string()) {
    return member->get<std::string>();
  }
  return member->is_number() ? member->dump() : std::string();
}

PersonName personName(const Json &cslName) {
  if (cslName.is_string()) {
    return {.family = cslName.get<std::string>()};
  }
  if (!cslName.is_object()) {
    return {};
  }
  if (std::string literal = textMember(cslName, "literal"); !literal.empty()) {
    return {.family = std::move(literal)};
  }
  PersonName name{.particle = joined(textMember(cslName, "dropping-particle"),
                                     textMember(cslName, "non-dropping-particle"), " "),
                  .family = textMember(cslName, "family"),
                  .given = textMember(cslName, "given"),
                  .suffix = textMember(cslName, "suffix")};
  if (name.particle.empty()) {
    name.particle = leadingParticle(name.family);
    if (!name.particle.empty()) {
      name.family.erase(0, name.particle.size() + 1);
    }
  }
  if (name.family.empty()) {
    name.family.swap(name.given);
  }
  return name;
}

std::vector<PersonName> personNames(const Json &item, const char *key) {
  std::vector<PersonName> names;
  const auto member = item.find(key);
  if (member == item.end() || !member->is_array()) {
    return names;
  }
  for (const Json &cslName : *member) {
    PersonName name = personName(cslName);
    if (!name.family.empty()) {
      names.push_back(std::move(name));
    }
  }
  return names;
}

std::string PersonName::familyWithParticle() const {
  // "d'Alembert", "al-Tabari": a particle that ends in such a sign stands close.
  const bool isClose =
      particle.ends_with('\'') || particle.ends_with("’") || particle.ends_with('-');
  return joined(particle, family, isClose ? "" : " ");
}

std::string PersonName::invertedForm() const {
  return joined(joined(familyWithParticle(), given, ", "), suffix, ", ");
}

std::expected<BibliographicRecord, std::string> readBibliographicRecord(std::string_view cslJson) {
  const Json item = Json::parse(cslJson, nullptr, /*allow_exceptions=*/false);
  if (!item.is_object()) {
    return std::unexpected("the reference is no JSON object");
  }
  BibliographicRecord record{.authors = personNames(item, "author"),
                             .year = yearOf(item),
                             .title = textMember(item, "title"),
                             .kind = textMember(item, "type"),
                             .containerTitle = textMember(item, "container-title")};
  if (record.authors.empty()) {
    record.authors = personNames(item, "editor");
  }
  // What BibTeX's "and others" becomes; CSL has no other word for it.
  if (record.authors.size() > 1 && record.authors.back() == PersonName{.family = "others"}) {
    record.authors.pop_back();
    record.hasMoreAuthors = true;
  }
  return record;
}

std::string authorsInOneLine(const BibliographicRecord &record) {
  std::string line;
  for (const PersonName &name : record.authors) {
    line = joined(line, name.invertedForm(), "; ");
  }
  return record.hasMoreAuthors ? line + "; et al." : line;
}

}  // namespace korvo::library
