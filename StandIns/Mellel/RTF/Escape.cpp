#include "Escape.h"

#include <Formats/Unicode.h>

#include <cstdint>

namespace mellel::rtf {

namespace {

void appendUnit(std::string &rtf, char16_t unit) {
  switch (unit) {
    case '\\':
    case '{':
    case '}':
      rtf += '\\';
      rtf += static_cast<char>(unit);
      return;
    case '\t':
      rtf += "\\tab ";
      return;
    case '\n':
    case 0x2028:
    case 0x2029:
      rtf += "\\line ";
      return;
    case 0x00A0:
      rtf += "\\~";
      return;
    default:
      break;
  }
  if (unit >= 0x80) {
    // The number is a signed one of 16 bits.
    rtf += "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + ' ';
  } else if (unit >= 0x20 && unit != 0x7F) {
    rtf += static_cast<char>(unit);
  }
}

}  // namespace

void appendEscaped(std::string &rtf, std::string_view text) {
  if (!formats::isASCII(text)) {
    for (const char16_t unit : formats::decodeUTF8(text)) {
      appendUnit(rtf, unit);
    }
    return;
  }
  for (const char byte : text) {
    appendUnit(rtf, static_cast<unsigned char>(byte));
  }
}

}  // namespace mellel::rtf
