// What a test knows about RTF, on its own: these few functions share nothing with the word
// processor that they check. They suit the drafts in Examples/, not every RTF file there is.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace endtoend {

// The text of a piece of RTF as UTF-8: paragraphs and lines end with a newline, table cells with a
// tab; footnotes stand where they are anchored. Tables of fonts, styles and the like have no text.
std::string textOf(std::string_view rtf);

// A document cut at the braces that can be seen in it: literals[0] spans[0] literals[1] …
// spans[n-1] literals[n], all of it RTF as it stands in the file. Spans include their braces.
struct Cut {
  std::vector<std::string> literals;
  std::vector<std::string> spans;
};

Cut cutAtBraces(const std::string &rtf);

// What stands in a copy where the spans of the original stood, when every literal of the original
// is in the copy byte for byte and in order, from the first byte to the last; nothing otherwise.
std::optional<std::vector<std::string>> whatReplaced(const Cut &original, const std::string &copy);

}  // namespace endtoend
