// What the library has to know of a reference, read from its CSL-JSON: who, when, what.
//
// The JSON comes from importers and from other people's programs. Members of the wrong kind
// are taken for absent; only text that is no JSON object at all is an error.
#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::library {

// A person (particle, family, given, suffix) or, with only a family name, an institution or
// somebody with one name. "Vincent van Gogh" has the particle "van".
struct PersonName {
  std::string particle = {};
  std::string family = {};
  std::string given = {};
  std::string suffix = {};

  // "van Gogh"
  std::string familyWithParticle() const;
  // "van Gogh, Vincent"; "King, Martin Luther, Jr."; an institution as it is.
  std::string invertedForm() const;

  bool operator==(const PersonName &) const = default;
};

struct BibliographicRecord {
  std::vector<PersonName> authors;  // the editors, where there is no author
  bool hasMoreAuthors = false;      // than are named: "Smith and others"
  std::string year;                 // "2001", "-350" (before our era), or empty
  std::string title;
  std::string kind;  // CSL's type: "article-journal"
  std::string containerTitle;

  bool operator==(const BibliographicRecord &) const = default;
};

// Texts are UTF-8. The error says what is wrong with the JSON.
std::expected<BibliographicRecord, std::string> readBibliographicRecord(std::string_view cslJson);

// "van Gogh, Vincent; Smith, John", perhaps "; et al.": for a list of references.
std::string authorsInOneLine(const BibliographicRecord &record);

}  // namespace korvo::library
