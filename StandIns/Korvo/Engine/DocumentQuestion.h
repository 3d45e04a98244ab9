// Everything that the formatting of a document depends on, as one string of bytes.
//
// Two questions are the same bytes exactly when all their parts are the same: each text is
// preceded by its length, each list by its count.
#pragma once

#include "CitationProcessor.h"

#include <span>
#include <string>
#include <string_view>

namespace korvo::engine {

// `styleText` is the content of the CSL file, `items` the CSL-JSON of every cited item in the
// order of first mention.
std::string documentQuestion(std::string_view styleText, std::string_view locale,
                             bool wantsBibliography, std::span<const std::string> items,
                             std::span<const CiteGroup> groups);

}  // namespace korvo::engine
