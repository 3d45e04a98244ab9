// Four-character codes: 32-bit values made of four ASCII characters, the first one in
// the most significant byte. Event classes, event IDs, keywords, descriptor types and
// application signatures are such codes.
#pragma once

#include <cstdint>

namespace formats {

using FourCharacterCode = std::uint32_t;

consteval FourCharacterCode fourCharacterCode(const char (&characters)[5]) {
  FourCharacterCode code = 0;
  for (int index = 0; index < 4; ++index) {
    code = code << 8 | static_cast<unsigned char>(characters[index]);
  }
  return code;
}

}  // namespace formats
