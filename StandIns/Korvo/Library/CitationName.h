// How authors name a reference in running text: by author(s) and year.
//
// "Smith, 2001", "Smith and Jones 2001", "Smith & Jones 2001" and "Smith et al., 2001" are
// ways of writing. Each is brought into one canonical form, and a reference is found by
// every canonical form that can mean it.
#pragma once

#include "BibliographicRecord.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::library {

// The canonical form of what an author wrote: folded, "and" for "&", without commas and full
// stops. UTF-8.
std::string canonicalCitationName(std::string_view visibleText);

// Every canonical form by which the reference may be cited, each once. With three authors:
// the first alone, the first with "et al", the first two with "et al", all of them; names
// with a particle with and without it. Empty when authors or year are missing.
std::vector<std::string> citationNames(const BibliographicRecord &record);

// "van Gogh 1888"; nothing when author or year is missing.
std::optional<std::string> firstAuthorAndYear(const BibliographicRecord &record);

}  // namespace korvo::library
