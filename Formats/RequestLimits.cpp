#include "RequestLimits.h"

#include <algorithm>

namespace formats {

std::string inWords(RequestLimit exceeded) {
  switch (exceeded) {
    case RequestLimit::bytes:
      return "it has more than " + std::to_string(largestRequest) + " bytes";
    case RequestLimit::citations:
      return "it has more than " + std::to_string(mostCitations) + " citations";
    case RequestLimit::textLength:
      return "a citation or the style's name in it has more than " + std::to_string(longestText) +
             " bytes";
  }
  return {};
}

bool RequestMeasure::countPartsOf(std::string_view text) {
  citations_ += 1 + static_cast<std::size_t>(std::ranges::count(text, ';'));
  return citations_ <= mostCitations || exceeds(RequestLimit::citations);
}

bool RequestMeasure::exceeds(RequestLimit limit) {
  if (!exceeded_) {
    exceeded_ = limit;
  }
  return false;
}

}  // namespace formats
