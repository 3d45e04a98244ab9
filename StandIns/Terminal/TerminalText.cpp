#include "TerminalText.h"

#include <Formats/OneLine.h>
#include <Formats/Unicode.h>

#include <array>
#include <cstdio>

namespace terminal {

TerminalText TerminalText::inOneLine(std::string_view text) { return of(formats::inOneLine(text)); }

TerminalText TerminalText::inJSON(std::string_view text) {
  std::u16string json = u"\"";
  for (const char16_t unit : formats::decodeUTF8(text)) {
    if (unit == u'"' || unit == u'\\') {
      json += u'\\';
      json += unit;
    } else if (formats::isOfOneLine(unit)) {
      json += unit;
    } else {
      std::array<char, 7> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(unit));
      json.append(escape.begin(), escape.end() - 1);
    }
  }
  return of(formats::encodeUTF8(json + u'"'));
}

}  // namespace terminal
