// Text as RTF writes it.
#pragma once

#include <string>
#include <string_view>

namespace mellel::rtf {

// Appends UTF-8 text as ASCII RTF that reads as exactly these characters, whatever precedes
// and follows. Characters outside ASCII are written as \u without fallback (see \uc0); line
// breaks and U+2028 as \line, so that a text never ends its paragraph; other control
// characters are left out.
void appendEscaped(std::string &rtf, std::string_view text);

}  // namespace mellel::rtf
