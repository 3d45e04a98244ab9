// Text of others, as it can stand in a line that people and scripts read.
#pragma once

#include <string>
#include <string_view>

namespace formats {

// Control characters and line and paragraph separators, which could end the line or command the
// terminal, become blanks; so do the characters that turn the direction of all that stands behind
// them, by which a name could look like another one. (Marks for one place, which Hebrew and Arabic
// names have, stay.) Ill-formed bytes become U+FFFD. UTF-8.
std::string inOneLine(std::string_view text);

// Whether the code unit stays as it is.
bool isOfOneLine(char16_t unit);

}  // namespace formats
