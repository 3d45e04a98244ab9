// The numbers by which every event of every sender is known, and what is sent under each.
#pragma once

#include "LoadEvents.h"

#include <cstdint>
#include <string>
#include <string_view>

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

// Who is asked: a host that makes "(X)" of X, or the real one with the example library. Either
// shows in its answer which request it is to.
enum class Asked { echo, korvo };

inline const char *styleOf(Asked host) { return host == Asked::echo ? styleName : "apa"; }

inline std::string citationText(Asked host, std::uint32_t number) {
  return (host == Asked::echo ? "Number " : "Hoare 1969#hoare1969@") + std::to_string(number);
}

inline bool isFormatted(Asked host, std::uint32_t number, std::string_view group) {
  return host == Asked::echo
             ? group == "(" + citationText(host, number) + ")"
             : group.starts_with("(Hoare, 1969") && group.ends_with(std::to_string(number) + ")");
}

}  // namespace load_test
