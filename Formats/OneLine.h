// Text of others, as it can stand in a line that people and scripts read.
#pragma once

#include <string>
#include <string_view>

namespace formats {

// Control characters, which could end the line or command the terminal, become blanks, and
// ill-formed bytes U+FFFD. UTF-8.
std::string inOneLine(std::string_view text);

}  // namespace formats
