// Reads RTF a second time: slowly, a character at a time, and apart from the word processor that it
// checks. It knows the few control words that the hosts of these tests write, and takes every
// other for one without a meaning.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace mellel_test {

struct SlowFormat {
  bool bold = false;
  bool italic = false;
  bool underlined = false;
  bool superscript = false;
  bool subscript = false;

  bool operator==(const SlowFormat &) const = default;
};

inline constexpr char32_t paragraphEnd = 0x110000;

struct SlowCharacter {
  char32_t character = 0;  // a character of Unicode's, or paragraphEnd
  SlowFormat format = {};
  // Twips, of the paragraph so far.
  int leftIndent = 0;
  int firstLineIndent = 0;

  bool operator==(const SlowCharacter &) const = default;
};

using SlowText = std::vector<SlowCharacter>;

// What the document shows; nothing when its groups do not begin and end as they have to.
std::optional<SlowText> slowText(const std::string &rtf);

// The characters alone, as UTF-8, with "¶" for the end of a paragraph.
std::string plainText(const SlowText &text);
void PrintTo(const SlowText &text, std::ostream *stream);

}  // namespace mellel_test
