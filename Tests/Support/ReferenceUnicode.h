// UTF-8 and UTF-16 by the book: the table of well-formed sequences, and the definition of
// a maximal subpart, tried byte by byte.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace reference {

using ByteRange = std::pair<int, int>;

// The Unicode Standard's table of well-formed UTF-8 byte sequences, row by row.
inline const std::vector<std::vector<ByteRange>> &wellFormedSequences() {
  static const std::vector<std::vector<ByteRange>> rows = {
      {{0x00, 0x7F}},
      {{0xC2, 0xDF}, {0x80, 0xBF}},
      {{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}},
      {{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}},
      {{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}},
      {{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}},
      {{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}},
      {{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}},
      {{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}}};
  return rows;
}

// How many bytes from the position on agree with the beginning of the row.
inline std::size_t agreeing(const std::string &bytes, std::size_t position,
                            const std::vector<ByteRange> &row) {
  std::size_t count = 0;
  while (count < row.size() && position + count < bytes.size()) {
    const int byte = static_cast<unsigned char>(bytes[position + count]);
    if (byte < row[count].first || byte > row[count].second) {
      break;
    }
    ++count;
  }
  return count;
}

inline void appendUTF16(std::u16string &text, std::uint32_t codePoint) {
  if (codePoint <= 0xFFFF) {
    text += static_cast<char16_t>(codePoint);
    return;
  }
  text += static_cast<char16_t>(0xD800 + (codePoint - 0x10000) / 0x400);
  text += static_cast<char16_t>(0xDC00 + (codePoint - 0x10000) % 0x400);
}

inline std::u16string decodeUTF8(const std::string &bytes) {
  std::u16string text;
  std::size_t position = 0;
  while (position < bytes.size()) {
    std::size_t longest = 1;  // an ill-formed subsequence has at least one byte
    bool wellFormed = false;
    for (const auto &row : wellFormedSequences()) {
      const std::size_t count = agreeing(bytes, position, row);
      if (count >= longest) {
        longest = count;
        wellFormed = wellFormed || count == row.size();
      }
    }
    std::uint32_t codePoint = 0xFFFD;
    if (wellFormed) {
      constexpr std::array<std::uint32_t, 5> leadOffset = {0, 0, 0xC0, 0xE0, 0xF0};
      codePoint = static_cast<unsigned char>(bytes[position]) - leadOffset[longest];
      for (std::size_t index = 1; index < longest; ++index) {
        codePoint = codePoint * 64 + static_cast<unsigned char>(bytes[position + index]) - 0x80;
      }
    }
    appendUTF16(text, codePoint);
    position += longest;
  }
  return text;
}

inline std::string encodeUTF8(const std::u16string &text) {
  std::string bytes;
  const auto add = [&](std::uint32_t byte) { bytes += static_cast<char>(byte); };
  for (std::size_t index = 0; index < text.size(); ++index) {
    std::uint32_t codePoint = text[index];
    const bool isHigh = codePoint >= 0xD800 && codePoint <= 0xDBFF;
    const bool isLow = codePoint >= 0xDC00 && codePoint <= 0xDFFF;
    if (isHigh && index + 1 < text.size() && text[index + 1] >= 0xDC00 &&
        text[index + 1] <= 0xDFFF) {
      codePoint = 0x10000 + (codePoint - 0xD800) * 0x400 + (text[index + 1] - 0xDC00u);
      ++index;
    } else if (isHigh || isLow) {
      codePoint = 0xFFFD;
    }
    if (codePoint < 0x80) {
      add(codePoint);
    } else if (codePoint < 0x800) {
      add(0xC0 + codePoint / 64);
      add(0x80 + codePoint % 64);
    } else if (codePoint < 0x10000) {
      add(0xE0 + codePoint / 4096);
      add(0x80 + codePoint / 64 % 64);
      add(0x80 + codePoint % 64);
    } else {
      add(0xF0 + codePoint / 262144);
      add(0x80 + codePoint / 4096 % 64);
      add(0x80 + codePoint / 64 % 64);
      add(0x80 + codePoint % 64);
    }
  }
  return bytes;
}

}  // namespace reference
