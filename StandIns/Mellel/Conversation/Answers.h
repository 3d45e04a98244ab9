// What comes back from a scan, checked: a document is rewritten only from an answer that belongs to
// it and is whole.
#pragma once

#include <StandIns/Mellel/RTF/Bibliography.h>
#include <StandIns/Mellel/RTF/CitationFinder.h>
#include <StandIns/Mellel/RTF/RichText.h>

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mellel::conversation {

// The document that an answer to a scan, or a cancellation of one, says it is for; nothing when it
// is too short to say.
std::optional<std::uint32_t> documentIDOfAnswer(std::string_view payload);

struct FormattedCitations {
  std::string styleName;  // well-formed UTF-8
  // One for each citation. None where the host formatted nothing: the citation stays as it is.
  std::vector<std::optional<rtf::RichText>> texts;
  // Nothing if the answer holds none, or none was wanted.
  std::optional<rtf::BibliographyParagraphs> bibliography;

  std::size_t count() const;  // of the citations that were formatted
};

// What the answer to a scan says of these citations. A citation that the host could not format
// comes back as text in braces. Nothing at all is an answer only to citations that ask not to
// be shown.
std::expected<FormattedCitations, std::string> readScanReply(
    std::string_view payload, std::uint32_t documentID, std::span<const rtf::Citation> citations,
    bool wantsBibliography);

// The answer to a preliminary scan: for each citation the parts that the host reads in it.
struct CheckedCitation {
  std::string citation;  // well-formed UTF-8, as are the records
  std::vector<std::string> records;
};

// Whether that is an answer to the request.
std::expected<void, std::string> checkCitationResolution(std::string_view payload,
                                                         std::uint32_t documentID,
                                                         std::size_t citationCount);

std::expected<std::vector<CheckedCitation>, std::string> readCitationResolution(
    std::string_view payload, std::uint32_t documentID, std::size_t citationCount);

}  // namespace mellel::conversation
