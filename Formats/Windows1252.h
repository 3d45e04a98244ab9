// windows-1252, the code page that text without any other mark of its encoding is in.
#pragma once

#include <array>
#include <cstdint>

namespace formats {

// What a byte stands for. Latin-1 but for 0x80 to 0x9F; the five bytes there that the code page
// leaves undefined are the control characters of the same number.
constexpr char16_t characterOfWindows1252(std::uint8_t byte) {
  constexpr std::array<char16_t, 32> from80To9F = {
      0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  return byte >= 0x80 && byte < 0xA0 ? from80To9F[byte - 0x80u] : static_cast<char16_t>(byte);
}

}  // namespace formats
