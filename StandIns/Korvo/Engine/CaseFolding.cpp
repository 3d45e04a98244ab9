#include "CaseFolding.h"

#include <Formats/Unicode.h>

#include <unicode/unistr.h>

#include <algorithm>

namespace korvo::engine {

std::string caseFolded(std::string_view text) {
  std::string folded;
  if (!formats::isASCII(text)) {
    icu::UnicodeString::fromUTF8(text).foldCase().toUTF8String(folded);
    return folded;
  }
  // Most texts by far take this short cut.
  folded = text;
  std::ranges::transform(folded, folded.begin(), [](char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
  });
  return folded;
}

}  // namespace korvo::engine
