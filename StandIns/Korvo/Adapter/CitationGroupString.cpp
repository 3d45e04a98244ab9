#include "CitationGroupString.h"

#include <Formats/CitationText.h>

#include <algorithm>

namespace korvo::adapter {
namespace {

bool isBlank(char16_t unit) {
  constexpr std::u16string_view breaks = u"\n\r\v\f\u0085\u2028\u2029";
  return formats::isWhitespace(unit) || breaks.contains(unit);
}

std::u16string_view withoutBlanksAround(std::u16string_view text) {
  const auto begin = std::ranges::find_if_not(text, isBlank);
  auto end = text.end();
  while (end != begin && isBlank(*(end - 1))) {
    --end;
  }
  return {begin, end};
}

}  // namespace

std::vector<std::u16string_view> citationStrings(std::u16string_view groupString) {
  std::u16string_view text = withoutBlanksAround(groupString);
  if (text.size() >= 2 && text.starts_with(u'{') && text.ends_with(u'}')) {
    text = text.substr(1, text.size() - 2);
  }
  std::vector<std::u16string_view> pieces;
  for (;;) {
    const std::size_t separator = text.find(u';');
    pieces.push_back(text.substr(0, separator));
    if (separator == std::u16string_view::npos) {
      return pieces;
    }
    text.remove_prefix(separator + 1);
  }
}

}  // namespace korvo::adapter
