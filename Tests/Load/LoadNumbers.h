// The numbers by which every event of every sender is known, and what is sent under each.
#pragma once

#include <cstdint>
#include <string>

namespace load_test {

inline constexpr std::uint32_t senderCount = 16;
inline constexpr std::uint32_t indexBits = 24;

inline std::uint32_t numberOf(std::uint32_t sender, std::uint32_t index) {
  return sender << indexBits | index;
}
inline std::uint32_t senderOf(std::uint32_t number) { return number >> indexBits; }
inline std::uint32_t indexOf(std::uint32_t number) { return number & ((1u << indexBits) - 1); }

enum class Kind { liveBibliography, preliminaryScan, handshake };

inline Kind kindOf(std::uint32_t number) {
  switch (indexOf(number) % 10) {
    case 0:
      return Kind::preliminaryScan;
    case 5:
      return Kind::handshake;
    default:
      return Kind::liveBibliography;
  }
}

inline std::string citationText(std::uint32_t number) { return "Number " + std::to_string(number); }

}  // namespace load_test
