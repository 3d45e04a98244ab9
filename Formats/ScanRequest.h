// The requests that list a document's citations: 'PRSQ', 'SCNQ' and 'LVBQ'.
//
// Decoding cannot fail (PayloadReader tells how what is cut short reads), but a request that goes
// beyond a limit has no citations. Decoded texts are UTF-8 views into the payload: nothing is
// copied. The encoders are what the word processor's side uses.
#pragma once

#include "RequestLimits.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace formats {

// One citation as it travels: two strings, of which the receiver picks one.
struct CitationPair {
  std::string_view first;
  std::string_view second;
};

struct PreliminaryScanRequest {
  std::uint32_t documentID = 0;
  std::uint32_t announcedCount = 0;         // from the header; to be compared with the citations
  std::vector<std::string_view> citations;  // the first string of each pair, markers removed
  std::optional<RequestLimit> exceeded = std::nullopt;
};

struct FinalScanRequest {
  std::uint32_t documentID = 0;
  bool wantsBibliography = false;           // the request byte is exactly 0xFF
  std::string_view styleName;               // empty: none is named
  std::uint32_t announcedCount = 0;         // never checked
  std::vector<std::string_view> citations;  // the chosen string of each pair, as it stands
  std::optional<RequestLimit> exceeded = std::nullopt;
};

// A live bibliography request is laid out like a final scan request.
using LiveBibliographyRequest = FinalScanRequest;

// The document that a request is about, which is needed to cancel one for whose citations there is
// no memory.
std::uint32_t documentIDOfScanRequest(std::string_view payload);

// These throw std::bad_alloc.
PreliminaryScanRequest decodePreliminaryScanRequest(std::string_view payload);
// The citations are chosen (the first string, or the second where the first is empty or begins
// with "verified"), but their "verified " markers are still there: the final scan removes
// them, the live bibliography does not.
FinalScanRequest decodeFinalScanRequest(std::string_view payload);
LiveBibliographyRequest decodeLiveBibliographyRequest(std::string_view payload);

std::string encodePreliminaryScanRequest(std::uint32_t documentID,
                                         std::span<const CitationPair> citations);
std::string encodeFinalScanRequest(std::uint32_t documentID, bool wantsBibliography,
                                   std::string_view styleName,
                                   std::span<const CitationPair> citations);
std::string encodeLiveBibliographyRequest(std::uint32_t documentID, bool wantsBibliography,
                                          std::string_view styleName,
                                          std::span<const CitationPair> citations);

}  // namespace formats
