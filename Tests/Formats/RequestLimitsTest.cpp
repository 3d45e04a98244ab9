// Each limit at its edge: at it everything is as ever, one above nothing is taken.
#include "Payloads.h"

#include <Formats/RequestLimits.h>
#include <Formats/ScanRequest.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace formats;

const std::string preliminaryStart = fromHex("00 00 00 00 00 07 00 00 00 01");
const std::string finalStart = fromHex("00 00 00 00 00 07 FF 00 00 00") + "APA\0"s + "\0\0\0\1"s;

// The same limits for all three requests.
template <typename Check>
void forEachRequest(Check check) {
  check("preliminary scan", preliminaryStart, [](const std::string &payload) {
    const auto request = decodePreliminaryScanRequest(payload);
    return std::pair(request.exceeded, request.citations.size());
  });
  check("final scan", finalStart, [](const std::string &payload) {
    const auto request = decodeFinalScanRequest(payload);
    return std::pair(request.exceeded, request.citations.size());
  });
  check("live bibliography", finalStart, [](const std::string &payload) {
    const auto request = decodeLiveBibliographyRequest(payload);
    return std::pair(request.exceeded, request.citations.size());
  });
}

using Decoded = std::pair<std::optional<RequestLimit>, std::size_t>;

TEST(RequestLimits, AreFarAboveAnyDocumentAndStandOnThePages) {
  EXPECT_EQ(largestRequest, 134'217'728U);
  EXPECT_EQ(mostCitations, 1'048'576U);
  EXPECT_EQ(longestText, 65'536U);
}

TEST(RequestLimits, BytesCountUpToTheLast) {
  forEachRequest([](const char *name, const std::string &start, auto decode) {
    // The second string of a pair is not looked at, whatever its length.
    std::string payload = start + "a\0"s;
    payload.resize(largestRequest, 'b');
    EXPECT_EQ(decode(payload), Decoded(std::nullopt, 1)) << name;
    payload += 'b';
    EXPECT_EQ(decode(payload), Decoded(RequestLimit::bytes, 0)) << name;
  });
}

TEST(RequestLimits, CitationsCountUpToTheLast) {
  forEachRequest([](const char *name, const std::string &start, auto decode) {
    std::string payload = start + std::string(2 * mostCitations, '\0');
    EXPECT_EQ(decode(payload), Decoded(std::nullopt, mostCitations)) << name;
    payload += "\0\0"s;
    EXPECT_EQ(decode(payload), Decoded(RequestLimit::citations, 0)) << name;
  });
}

TEST(RequestLimits, EachPartOfAGroupCounts) {
  forEachRequest([](const char *name, const std::string &start, auto decode) {
    // 1,024 parts a group.
    const std::string group = std::string(1023, ';') + "\0\0"s;
    std::string payload = start;
    for (std::size_t index = 0; index < mostCitations / 1024; ++index) {
      payload += group;
    }
    EXPECT_EQ(decode(payload), Decoded(std::nullopt, mostCitations / 1024)) << name;
    payload += "a\0\0"s;
    EXPECT_EQ(decode(payload), Decoded(RequestLimit::citations, 0)) << name;
  });
}

TEST(RequestLimits, ACitationHasALength) {
  forEachRequest([](const char *name, const std::string &start, auto decode) {
    EXPECT_EQ(decode(start + std::string(longestText, 'a') + "\0\0"s), Decoded(std::nullopt, 1))
        << name;
    EXPECT_EQ(decode(start + "b\0\0"s + std::string(longestText + 1, 'a') + "\0\0"s),
              Decoded(RequestLimit::textLength, 0))
        << name;
  });
}

TEST(RequestLimits, AStyleNameHasOneToo) {
  const std::string head = fromHex("00 00 00 00 00 07 FF 00 00 00");
  const auto request = [&](std::size_t length) {
    return head + std::string(length, 's') + "\0\0\0\0\1a\0\0"s;
  };
  const std::string longest = request(longestText);
  EXPECT_EQ(decodeFinalScanRequest(longest).exceeded, std::nullopt);
  EXPECT_THAT(decodeFinalScanRequest(longest).citations, testing::ElementsAre("a"));
  const std::string tooLong = request(longestText + 1);
  EXPECT_EQ(decodeFinalScanRequest(tooLong).exceeded, RequestLimit::textLength);
  EXPECT_EQ(decodeFinalScanRequest(tooLong).documentID, 7U);
}

TEST(RequestLimits, WhatLiesBehindTheLimitClaimsNoMemory) {
  const std::string payload =
      fromHex("00 00 00 00 00 07 FF FF FF FF") + std::string(100'000'000, '\0');
  const auto request = decodePreliminaryScanRequest(payload);
  EXPECT_EQ(request.exceeded, RequestLimit::citations);
  EXPECT_EQ(request.citations.capacity(), 0U);
}

TEST(RequestLimits, AreToldInWords) {
  EXPECT_EQ(inWords(RequestLimit::bytes), "it has more than 134217728 bytes");
  EXPECT_EQ(inWords(RequestLimit::citations), "it has more than 1048576 citations");
  EXPECT_EQ(inWords(RequestLimit::textLength),
            "a citation or the style's name in it has more than 65536 bytes");
}

}  // namespace
