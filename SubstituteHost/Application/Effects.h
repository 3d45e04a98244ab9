// What the user would see, as lines on standard output for scripts that watch. Each is
// written out at once.
#pragma once

#include <string_view>

namespace application {

// Texts are UTF-8. Line breaks inside a line become blanks.
void announce(std::string_view line);
// The text's lines follow, each after one blank; empty lines around the text are left out.
void announceNotice(std::string_view header, std::string_view text);

}  // namespace application
