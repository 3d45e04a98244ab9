// The messages of a few fixed bytes: handshake, preferences and cancel.
#pragma once

#include <array>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace formats {

// Seven big-endian 16-bit fields; fixed constants of this version.
inline constexpr std::array<std::uint16_t, 7> preferenceFields = {0, 5, 0, 0xFFFF, 0, 0, 1};

std::array<char, 14> encodePreferences();
std::expected<std::array<std::uint16_t, 7>, std::string> decodePreferences(
    std::string_view payload);

// The low 32 bits of the document ID travel.
std::array<char, 6> encodeCancel(std::uint64_t documentID);
std::expected<std::uint32_t, std::string> decodeCancel(std::string_view payload);

// Two 16-bit values whose meaning is the word processor's.
struct Handshake {
  std::uint16_t first = 0;
  std::uint16_t second = 0;
};
Handshake decodeHandshake(std::string_view payload);
std::array<char, 4> encodeHandshake(const Handshake &handshake);

}  // namespace formats
