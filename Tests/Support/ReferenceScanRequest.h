// The scan requests read byte by byte from a payload that endless NUL bytes follow.
#pragma once

#include "ReferenceVerifiedMarker.h"

#include <cstdint>
#include <string>
#include <vector>

namespace reference {

struct ScanRequest {
  std::uint32_t documentID = 0;
  bool wantsBibliography = false;
  std::string styleName;
  std::uint32_t announcedCount = 0;
  std::vector<std::string> citations;
};

inline int byteAt(const std::string &payload, std::size_t position) {
  return position < payload.size() ? static_cast<unsigned char>(payload[position]) : 0;
}

inline std::uint32_t integerAt(const std::string &payload, std::size_t position) {
  std::uint32_t value = 0;
  for (std::size_t index = 0; index < 4; ++index) {
    value = value * 256 + static_cast<std::uint32_t>(byteAt(payload, position + index));
  }
  return value;
}

inline std::string stringAt(const std::string &payload, std::size_t position) {
  std::string text;
  while (byteAt(payload, position) != 0) {
    text += static_cast<char>(byteAt(payload, position));
    position += 1;
  }
  return text;
}

inline ScanRequest decodePreliminaryScanRequest(const std::string &payload) {
  ScanRequest request;
  request.documentID = integerAt(payload, 2);
  request.announcedCount = integerAt(payload, 6);
  std::size_t position = 10;
  while (position < payload.size()) {
    const std::string first = stringAt(payload, position);
    position += first.size() + 1;
    const std::string second = stringAt(payload, position);
    position += second.size() + 1;
    request.citations.push_back(withoutVerifiedMarkers(first));
  }
  return request;
}

inline ScanRequest decodeFinalScanRequest(const std::string &payload) {
  ScanRequest request;
  request.documentID = integerAt(payload, 2);
  request.wantsBibliography = byteAt(payload, 6) == 0xFF;
  request.styleName = stringAt(payload, 10);
  std::size_t position = 10 + request.styleName.size() + 1;
  request.announcedCount = integerAt(payload, position);
  position += 4;
  while (position < payload.size()) {
    const std::string first = stringAt(payload, position);
    position += first.size() + 1;
    const std::string second = stringAt(payload, position);
    position += second.size() + 1;
    const bool useSecond = first.empty() || first.substr(0, 8) == "verified";
    request.citations.push_back(useSecond ? second : first);
  }
  return request;
}

}  // namespace reference
