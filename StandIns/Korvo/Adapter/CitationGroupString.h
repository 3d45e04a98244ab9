// The text that stands for one in-text citation, taken apart into its citations.
#pragma once

#include <string_view>
#include <vector>

namespace korvo::adapter {

// Without white space around it and one pair of enclosing braces, split at each ";". The
// pieces are views into the text, as they stand there: not trimmed, empty ones too. A text
// without a ";" is one piece.
std::vector<std::u16string_view> citationStrings(std::u16string_view groupString);

}  // namespace korvo::adapter
