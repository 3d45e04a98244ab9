#include "OneLine.h"

#include "Unicode.h"

#include <algorithm>

namespace formats {

bool isOfOneLine(char16_t unit) {
  const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
  const bool isSeparator = unit == 0x2028 || unit == 0x2029;
  const bool turnsDirection =
      (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
  return !isControl && !isSeparator && !turnsDirection;
}

std::string inOneLine(std::string_view text) {
  std::u16string line = decodeUTF8(text);
  std::ranges::replace_if(line, [](char16_t unit) { return !isOfOneLine(unit); }, u' ');
  return encodeUTF8(line);
}

}  // namespace formats
