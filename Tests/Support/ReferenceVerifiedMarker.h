// The rule of the marker, character by character.
#pragma once

#include <string>

namespace reference {

template <typename Unit>
std::basic_string<Unit> withoutVerifiedMarkers(std::basic_string<Unit> text) {
  const std::string marker = "verified ";
  for (;;) {
    if (text.size() < marker.size()) {
      return text;
    }
    for (std::size_t index = 0; index < marker.size(); ++index) {
      if (text[index] != static_cast<Unit>(marker[index])) {
        return text;
      }
    }
    text = text.substr(marker.size());
  }
}

}  // namespace reference
