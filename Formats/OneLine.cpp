#include "OneLine.h"

#include "Unicode.h"

#include <algorithm>

namespace formats {

std::string inOneLine(std::string_view text) {
  std::u16string line = decodeUTF8(text);
  std::ranges::replace_if(
      line, [](char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); }, u' ');
  return encodeUTF8(line);
}

}  // namespace formats
