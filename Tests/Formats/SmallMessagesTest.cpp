#include "Payloads.h"

#include <Formats/SmallMessages.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace formats;

template <std::size_t size>
std::string bytesOf(const std::array<char, size> &payload) {
  return {payload.begin(), payload.end()};
}

TEST(Preferences, HaveTheseFourteenBytes) {
  EXPECT_EQ(bytesOf(encodePreferences()), fromHex("00 00 00 05 00 00 FF FF 00 00 00 00 00 01"));
}

TEST(Preferences, WhatIsEncodedIsDecoded) {
  EXPECT_EQ(decodePreferences(bytesOf(encodePreferences())), preferenceFields);
}

TEST(Preferences, OfAnotherLengthTheyAreRefused) {
  const std::string payload = bytesOf(encodePreferences());
  forEachTruncation(payload, [](std::string_view truncated) {
    const auto fields = decodePreferences(truncated);
    ASSERT_FALSE(fields);
    EXPECT_THAT(fields.error(), IsOneLine());
  });
  EXPECT_EQ(decodePreferences(payload + "x").error(),
            "preferences: ends at byte 14, but the data at byte 15");
}

TEST(Cancel, CarriesTheLowHalfOfTheDocumentID) {
  EXPECT_EQ(bytesOf(encodeCancel(0x1'0000'0007)), fromHex("00 00 00 00 00 07"));
  EXPECT_EQ(bytesOf(encodeCancel(0xFEDCBA98)), fromHex("00 00 FE DC BA 98"));
}

TEST(Cancel, WhatIsEncodedIsDecoded) {
  EXPECT_EQ(decodeCancel(bytesOf(encodeCancel(0xFEDCBA98))), 0xFEDCBA98u);
}

TEST(Cancel, OfAnotherLengthItIsRefused) {
  const std::string payload = bytesOf(encodeCancel(7));
  forEachTruncation(payload, [](std::string_view truncated) {
    const auto documentID = decodeCancel(truncated);
    ASSERT_FALSE(documentID);
    EXPECT_THAT(documentID.error(), IsOneLine());
  });
  EXPECT_EQ(decodeCancel(payload + "x").error(), "cancel: ends at byte 6, but the data at byte 7");
}

TEST(Handshake, IsTwoBigEndianWords) {
  EXPECT_EQ(bytesOf(encodeHandshake({.first = 0x0102, .second = 0xFFFE})), fromHex("01 02 FF FE"));
  const Handshake handshake = decodeHandshake(fromHex("01 02 FF FE"));
  EXPECT_EQ(handshake.first, 0x0102);
  EXPECT_EQ(handshake.second, 0xFFFE);
}

TEST(Handshake, CutShortItReadsAsIfNULsFollowed) {
  GuardedBytes memory(4);
  const Handshake handshake = decodeHandshake(memory.hold(fromHex("01 02 03")));
  EXPECT_EQ(handshake.first, 0x0102);
  EXPECT_EQ(handshake.second, 0x0300);
  EXPECT_EQ(decodeHandshake(memory.hold("")).first, 0);
}

}  // namespace
