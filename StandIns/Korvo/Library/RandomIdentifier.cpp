#include "RandomIdentifier.h"

#include <sqlite3.h>

#include <array>
#include <cstdint>

namespace korvo::library {

std::string randomIdentifier() {
  std::array<std::uint8_t, 16> bytes{};
  sqlite3_randomness(static_cast<int>(bytes.size()), bytes.data());
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // RFC 4122's variant

  constexpr char digits[] = "0123456789ABCDEF";
  std::string text;
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    if (index == 4 || index == 6 || index == 8 || index == 10) {
      text.push_back('-');
    }
    text.push_back(digits[bytes[index] >> 4]);
    text.push_back(digits[bytes[index] & 0x0F]);
  }
  return text;
}

}  // namespace korvo::library
