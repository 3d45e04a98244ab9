// What the tests of every payload share: writing bytes down, and the two ways to damage
// a payload that are tried on all of them.
#pragma once

#include "GuardedBytes.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <string>
#include <string_view>

using namespace std::string_literals;
using namespace std::string_view_literals;

// "00 FF 41" as three bytes.
inline std::string fromHex(std::string_view text) {
  std::string bytes;
  for (std::size_t index = 0; index < text.size(); index += 3) {
    bytes.push_back(static_cast<char>(std::stoi(std::string(text.substr(index, 2)), nullptr, 16)));
  }
  return bytes;
}

// Calls visit(payload) for every proper prefix of the payload, each against a guard page.
template <typename Visit>
void forEachTruncation(std::string_view payload, Visit visit) {
  GuardedBytes memory(payload.size());
  for (std::size_t size = 0; size < payload.size(); ++size) {
    visit(memory.hold(payload.substr(0, size)));
  }
}

// Calls visit(payload) for every payload that differs in one bit, each against a guard page.
template <typename Visit>
void forEachBitFlip(std::string_view payload, Visit visit) {
  GuardedBytes memory(payload.size());
  for (std::size_t bit = 0; bit < payload.size() * 8; ++bit) {
    std::string damaged(payload);
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    visit(memory.hold(damaged));
  }
}

// Whether the view is a part of the payload's own bytes: nothing copied, nothing outside.
inline bool liesWithin(std::string_view part, std::string_view payload) {
  return part.empty() || (part.data() >= payload.data() &&
                          part.data() + part.size() <= payload.data() + payload.size());
}

MATCHER(IsOneLine, "") { return !arg.empty() && arg.find('\n') == std::string::npos; }
