// The answer to a preliminary scan ('PRSR'): each citation with the XML records of its parts.
#pragma once

#include "PayloadWriter.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace formats {

inline constexpr std::size_t citationResolutionFixedSize = 10;

// Writes what comes before the first entry. The sender then writes, for each citation, its
// text and its XML text with writeString.
void writeCitationResolutionHeader(PayloadWriter &writer, std::uint32_t documentID,
                                   std::uint32_t citationCount);

struct ResolvedCitation {
  std::string_view citation;
  std::string_view markup;
};

struct CitationResolution {
  std::uint32_t documentID = 0;
  std::vector<ResolvedCitation> citations;
};

// Refuses what is cut short or does not hold the announced number of entries, with one line
// that says what is wrong.
std::expected<CitationResolution, std::string> decodeCitationResolution(std::string_view payload);

}  // namespace formats
