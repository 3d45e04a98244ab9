// Formatted texts that look the same: RTF writes every line break in one way, and leaves out the
// control characters, which no text shows.
#pragma once

#include <StandIns/Mellel/RTF/RichText.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace fuzzing {

inline std::string normalText(std::string_view text) {
  constexpr std::string_view lineSeparator = "\xE2\x80\xA8";
  constexpr std::string_view paragraphSeparator = "\xE2\x80\xA9";
  std::string normal;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    if (byte == '\n') {
      normal += lineSeparator;
    } else if (text.substr(index).starts_with(paragraphSeparator)) {
      normal += lineSeparator;
      index += paragraphSeparator.size() - 1;
    } else if ((byte >= 0x20 && byte != 0x7F) || byte == '\t') {
      normal += text[index];
    }
  }
  return normal;
}

inline mellel::rtf::RichText normalText(const mellel::rtf::RichText &formatted) {
  mellel::rtf::RichText normal;
  for (const mellel::rtf::TextRun &run : formatted) {
    mellel::rtf::appendText(normal, normalText(run.text), run.looks);
  }
  return normal;
}

inline bool isSameText(const mellel::rtf::RichText &left, const mellel::rtf::RichText &right) {
  const auto normalLeft = normalText(left);
  const auto normalRight = normalText(right);
  const auto isSameRun = [](const mellel::rtf::TextRun &one, const mellel::rtf::TextRun &other) {
    return one.text == other.text && one.looks == other.looks;
  };
  return std::equal(normalLeft.begin(), normalLeft.end(), normalRight.begin(), normalRight.end(),
                    isSameRun);
}

}  // namespace fuzzing
