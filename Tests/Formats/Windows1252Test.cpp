#include <Formats/Windows1252.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace {

using formats::characterOfWindows1252;

TEST(Windows1252, IsLatin1WithTypographicMarksInPlaceOfControls) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (byte < 0x80 || byte >= 0xA0) {
      EXPECT_EQ(characterOfWindows1252(static_cast<std::uint8_t>(byte)), byte);
    }
  }
  EXPECT_EQ(characterOfWindows1252(0x80), u'€');
  EXPECT_EQ(characterOfWindows1252(0x92), u'’');
  EXPECT_EQ(characterOfWindows1252(0x9F), u'Ÿ');
}

TEST(Windows1252, WhatItLeavesUndefinedAreControls) {
  for (const std::uint8_t byte : std::to_array<std::uint8_t>({0x81, 0x8D, 0x8F, 0x90, 0x9D})) {
    EXPECT_EQ(characterOfWindows1252(byte), byte);
  }
}

}  // namespace
