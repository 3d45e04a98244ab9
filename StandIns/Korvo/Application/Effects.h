// What the user would see, as lines for scripts that watch. Each is written out at once.
#pragma once

#include <string_view>

namespace korvo::application {

// Texts are UTF-8. What could command a terminal, line breaks too, becomes blanks.

// To standard output.
void announce(std::string_view line);
// The text's lines follow, each after one blank; empty lines around the text are left out.
void announceNotice(std::string_view header, std::string_view text);

// What went wrong, behind the program's name: to standard error.
void complain(std::string_view line);

}  // namespace korvo::application
