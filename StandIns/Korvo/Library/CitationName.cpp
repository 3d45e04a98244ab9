#include "CitationName.h"

#include "FoldedText.h"

#include <algorithm>
#include <span>

namespace korvo::library {
namespace {

// Nobody writes out more names than this in running text.
constexpr std::size_t longestListOfNames = 12;

// "Smith, Jones and Lee": the commas fall away in the canonical form.
std::string allNames(std::span<const std::string> names) {
  std::string text;
  for (std::size_t index = 0; index < names.size(); ++index) {
    if (index > 0) {
      text += index + 1 == names.size() ? " and " : " ";
    }
    text += names[index];
  }
  return text;
}

// `names` holds at least one name; with `hasMore`, it does not hold them all.
void appendForms(std::vector<std::string> &forms, std::span<const std::string> names, bool hasMore,
                 const std::string &year) {
  const auto append = [&](const std::string &people) {
    forms.push_back(canonicalCitationName(people + " " + year));
  };
  append(names[0]);
  if (names.size() > 1 || hasMore) {
    append(names[0] + " et al");
  }
  if (names.size() > 1 && names.size() <= longestListOfNames) {
    append(allNames(names));
  }
  if (names.size() > 2 || (names.size() == 2 && hasMore)) {
    append(names[0] + " " + names[1] + " et al");
  }
}

}  // namespace

std::string canonicalCitationName(std::string_view visibleText) {
  std::string spread;
  for (const char byte : foldedText(visibleText)) {
    if (byte == '&') {
      spread += " and ";
    } else if (byte == ',') {
      spread += ' ';
    } else if (byte != '.') {
      spread += byte;
    }
  }
  return foldedText(spread);  // once more for the blanks
}

std::vector<std::string> citationNames(const BibliographicRecord &record) {
  std::vector<std::string> forms;
  if (record.authors.empty() || record.year.empty()) {
    return forms;
  }
  std::vector<std::string> names(record.authors.size());
  // With many authors not every combination is of use: the others all bear their particles
  // or none of them does.
  const auto hasParticle = [](const PersonName &name) { return !name.particle.empty(); };
  const bool first = hasParticle(record.authors.front());
  const bool others = std::any_of(record.authors.begin() + 1, record.authors.end(), hasParticle);
  for (const bool othersWithParticle : {true, false}) {
    for (const bool firstWithParticle : {true, false}) {
      if ((othersWithParticle && !others) || (firstWithParticle && !first)) {
        continue;
      }
      for (std::size_t index = 0; index < names.size(); ++index) {
        const PersonName &author = record.authors[index];
        names[index] = (index == 0 ? firstWithParticle : othersWithParticle)
                           ? author.familyWithParticle()
                           : author.family;
      }
      appendForms(forms, names, record.hasMoreAuthors, record.year);
    }
  }
  std::ranges::sort(forms);
  forms.erase(std::unique(forms.begin(), forms.end()), forms.end());
  return forms;
}

std::optional<std::string> firstAuthorAndYear(const BibliographicRecord &record) {
  if (record.authors.empty() || record.year.empty()) {
    return std::nullopt;
  }
  return record.authors.front().familyWithParticle() + " " + record.year;
}

}  // namespace korvo::library
