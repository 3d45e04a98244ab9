#include "Payloads.h"

#include <Formats/ScanReply.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace formats;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Reply {
  std::u16string styleName = u"APA";
  bool usesSuperscript = false;
  std::vector<std::u16string> groups = {};
  std::optional<std::string> bibliography = std::nullopt;
};

// Sizes, allocates and fills the buffer as a sender does.
std::string encode(const Reply &reply) {
  std::size_t size = scanReplyFixedSize + sizeOfString(reply.styleName);
  for (const auto &group : reply.groups) {
    size += sizeOfString(group);
  }
  size += reply.bibliography.value_or("").size();
  std::string payload(size, '?');
  PayloadWriter writer(payload);
  writeScanReplyHeader(writer, {.documentID = 0x80000007,
                                .usesSuperscript = reply.usesSuperscript,
                                .hasBibliography = reply.bibliography.has_value(),
                                .styleName = reply.styleName,
                                .groupCount = static_cast<std::uint32_t>(reply.groups.size())});
  for (const auto &group : reply.groups) {
    writer.writeString(group);
  }
  writer.writeBytes(reply.bibliography.value_or(""));
  EXPECT_EQ(writer.written(), size);
  return payload;
}

const Reply fullReply = {.styleName = u"Ästhetik",
                         .usesSuperscript = true,
                         .groups = {u"(Smith, 2001)", u"", u"{\\super 1}"},
                         .bibliography = "{\\rtf1 \0x}"s};

TEST(ScanReply, WithoutGroupsAndBibliographyItHasTwentyTwoBytes) {
  EXPECT_EQ(encode({}),
            fromHex("00 00 80 00 00 07 00 00 00 00 00 00 00 00 41 50 41 00 00 00 00 00"));
}

TEST(ScanReply, SuperscriptAndBibliographySetTheirFlagsAndTheBibliographyEndsTheBuffer) {
  EXPECT_EQ(encode({.usesSuperscript = true, .bibliography = "{rtf}"}),
            fromHex("00 00 80 00 00 07 00 00 00 00 00 FF FF 00 41 50 41 00 00 00 00 00") + "{rtf}");
}

TEST(ScanReply, EachFlagStandsAlone) {
  EXPECT_EQ(encode({.usesSuperscript = true}).substr(10, 4), fromHex("00 FF 00 00"));
  EXPECT_EQ(encode({.bibliography = "x"}).substr(10, 4), fromHex("00 00 FF 00"));
}

TEST(ScanReply, AnEmptyBibliographySetsTheFlagAndAddsNoBytes) {
  const std::string payload = encode({.bibliography = ""});
  EXPECT_EQ(payload.size(), 22u);
  EXPECT_EQ(payload.substr(10, 4), fromHex("00 00 FF 00"));
  EXPECT_EQ(decodeScanReply(payload).value().bibliography, "");
}

TEST(ScanReply, AnEmptyGroupIsASingleNUL) {
  EXPECT_EQ(encode({.groups = {u"", u"a"}}).substr(18), fromHex("00 00 00 02 00 61 00"));
}

TEST(ScanReply, AStyleNameIsCountedAndCopiedInUTF8) {
  EXPECT_EQ(encode({.styleName = u"Éa"}).substr(14), fromHex("C3 89 61 00 00 00 00 00"));
}

TEST(ScanReply, WhatIsEncodedIsDecoded) {
  for (const bool usesSuperscript : {false, true}) {
    for (const auto &bibliography :
         std::vector<std::optional<std::string>>{std::nullopt, "", "{\\rtf1 x}", "a\0b\0"s}) {
      for (const auto &groups : std::vector<std::vector<std::u16string>>{
               {}, {u""}, {u"(Smith)", u"", u"é"}, std::vector<std::u16string>(300, u"x")}) {
        const std::string payload = encode({u"Ästhetik", usesSuperscript, groups, bibliography});
        const auto reply = decodeScanReply(payload);
        ASSERT_TRUE(reply) << reply.error();
        EXPECT_EQ(reply->documentID, 0x80000007u);
        EXPECT_EQ(reply->usesSuperscript, usesSuperscript);
        EXPECT_EQ(reply->styleName, "Ästhetik");
        ASSERT_EQ(reply->groups.size(), groups.size());
        EXPECT_EQ(reply->bibliography, bibliography);
      }
    }
  }
  const std::string payload = encode(fullReply);
  EXPECT_THAT(decodeScanReply(payload).value().groups,
              ElementsAre("(Smith, 2001)", "", "{\\super 1}"));
}

TEST(ScanReply, CutShortBeforeItsEndItIsRefused) {
  Reply reply = fullReply;
  reply.bibliography.reset();
  forEachTruncation(encode(reply), [](std::string_view payload) {
    const auto decoded = decodeScanReply(payload);
    ASSERT_FALSE(decoded) << payload.size();
    EXPECT_THAT(decoded.error(), IsOneLine());
    EXPECT_THAT(decoded.error(), HasSubstr("scan reply"));
  });
}

// The bibliography has no length: only what precedes it can be seen to be missing.
TEST(ScanReply, CutShortBeforeItsBibliographyItIsRefused) {
  const std::string payload = encode(fullReply);
  const std::size_t start = payload.size() - fullReply.bibliography->size();
  forEachTruncation(payload, [&](std::string_view truncated) {
    EXPECT_EQ(decodeScanReply(truncated).has_value(), truncated.size() >= start)
        << truncated.size();
  });
}

TEST(ScanReply, TheErrorNamesTheFieldAndItsPlace) {
  EXPECT_EQ(decodeScanReply("").error(),
            "scan reply: cut short in the reserved word, which begins at byte 0 of 0");
  EXPECT_EQ(decodeScanReply(encode({}).substr(0, 17)).error(),
            "scan reply: cut short in the style name, which begins at byte 14 of 17");
  EXPECT_EQ(decodeScanReply(encode({.groups = {u"ab"}}).substr(0, 24)).error(),
            "scan reply: cut short in the text of a group, which begins at byte 22 of 24");
}

TEST(ScanReply, AGroupCountThatCannotBeTrueIsRefusedAtOnce) {
  std::string payload = encode({.groups = {u"a", u"b"}});
  payload.replace(18, 4, "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(decodeScanReply(payload).error(),
            "scan reply: announces 4294967295 groups, but only 4 bytes follow");
}

TEST(ScanReply, BytesThatNobodyAnnouncedAreRefused) {
  EXPECT_EQ(decodeScanReply(encode({.groups = {u"a"}}) + "xy").error(),
            "scan reply: ends at byte 24, but the data at byte 26");
}

TEST(ScanReply, NoBitFlipReadsOutsideThePayload) {
  std::size_t accepted = 0;
  forEachBitFlip(encode(fullReply), [&](std::string_view payload) {
    const auto reply = decodeScanReply(payload);
    if (!reply) {
      EXPECT_THAT(reply.error(), IsOneLine());
      return;
    }
    ++accepted;
    EXPECT_TRUE(liesWithin(reply->styleName, payload));
    for (const auto group : reply->groups) {
      EXPECT_TRUE(liesWithin(group, payload));
    }
    EXPECT_TRUE(liesWithin(reply->bibliography.value_or(""), payload) || !reply->bibliography);
  });
  EXPECT_GT(accepted, 0u);
}

TEST(ScanReply, AListOfGroupsTakesNoMoreMemoryThanItNeeds) {
  const auto reply = decodeScanReply(encode({.groups = {u"a", u"b", u"c"}}));
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->groups.capacity(), 3u);
}

}  // namespace
