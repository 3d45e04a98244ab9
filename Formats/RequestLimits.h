// What a request may ask of the host: the only place of these numbers.
//
// A request costs the host time and memory for each of its bytes and many times that for each of
// its citations, and a sender nothing. So there is an end to it, far above any document that a
// person writes. What goes beyond is refused as a whole, before the host is asked anything.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace formats {

// Bytes of a request's data. A million citations of sixty bytes, each sent twice, are less.
inline constexpr std::size_t largestRequest = std::size_t{128} * 1024 * 1024;
// Citations of a request. A group counts as one for each of its parts between semicolons.
inline constexpr std::size_t mostCitations = std::size_t{1024} * 1024;
// Bytes of the text of one citation group, and of a style's name.
inline constexpr std::size_t longestText = std::size_t{64} * 1024;

enum class RequestLimit { bytes, citations, textLength };

// What is said of a request that goes beyond: "it has more than 134217728 bytes".
std::string inWords(RequestLimit exceeded);

// Adds up what a request holds.
class RequestMeasure {
 public:
  explicit RequestMeasure(std::size_t payloadSize) : mustCount_(payloadSize > mostCitations) {
    if (payloadSize > largestRequest) {
      exceeded_ = RequestLimit::bytes;
    }
  }

  // Whether the request is still below its limits. What comes behind one that is not has to cost
  // nothing.
  bool addStyleName(std::string_view name) { return hasFittingLength(name); }
  bool addCitation(std::string_view text) {
    return hasFittingLength(text) && (!mustCount_ || countPartsOf(text));
  }

  // The first limit that was gone beyond.
  std::optional<RequestLimit> exceeded() const { return exceeded_; }

 private:
  bool hasFittingLength(std::string_view text) {
    return text.size() <= longestText || exceeds(RequestLimit::textLength);
  }
  bool countPartsOf(std::string_view text);
  // False.
  bool exceeds(RequestLimit limit);

  // Each citation takes a byte at least: a small request, as nearly all are, needs no counting.
  bool mustCount_;
  std::size_t citations_ = 0;
  std::optional<RequestLimit> exceeded_;
};

}  // namespace formats
