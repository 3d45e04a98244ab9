#include "Payloads.h"

#include <Formats/ScanRequest.h>
#include <Tests/Support/AllStrings.h>
#include <Tests/Support/ReferenceScanRequest.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace formats;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string emptyPreliminaryScan = fromHex("00 00 00 00 00 07 00 00 00 00");
const std::string finalScanStart = fromHex("00 00 00 00 00 07 FF 00 00 00") + "APA\0"s;

std::string finalScanOf(const std::string &pairs) {
  return finalScanStart + fromHex("00 00 00 01") + pairs;
}

TEST(PreliminaryScanRequest, TenBytesHoldNoCitations) {
  const std::string payload = emptyPreliminaryScan;
  const auto request = decodePreliminaryScanRequest(payload);
  EXPECT_EQ(request.documentID, 7u);
  EXPECT_EQ(request.announcedCount, 0u);
  EXPECT_THAT(request.citations, IsEmpty());
}

TEST(PreliminaryScanRequest, TheAnnouncedCountIsKeptBesideTheCitationsThatAreThere) {
  const std::string payload = fromHex("00 00 00 00 00 07 00 00 00 03") + "a\0x\0b\0y\0"s;
  const auto request = decodePreliminaryScanRequest(payload);
  EXPECT_EQ(request.announcedCount, 3u);
  EXPECT_THAT(request.citations, ElementsAre("a", "b"));
}

TEST(PreliminaryScanRequest, TheSecondStringsNeverMatter) {
  const std::string payload = emptyPreliminaryScan + "a\0\0b\0verified\0\0c\0"s;
  const auto request = decodePreliminaryScanRequest(payload);
  EXPECT_THAT(request.citations, ElementsAre("a", "b", ""));
}

TEST(PreliminaryScanRequest, VerifiedMarkersAreRemoved) {
  const std::string payload = emptyPreliminaryScan + "verified verified a\0\0verified\0b\0"s;
  const auto request = decodePreliminaryScanRequest(payload);
  EXPECT_THAT(request.citations, ElementsAre("a", "verified"));
}

TEST(PreliminaryScanRequest, TheDocumentIDIsUnsigned) {
  EXPECT_EQ(decodePreliminaryScanRequest(fromHex("00 00 FF FF FF FF 00 00 00 00")).documentID,
            4294967295u);
}

TEST(PreliminaryScanRequest, TheReservedWordIsIgnored) {
  const std::string payload = fromHex("AB CD 00 00 00 07 00 00 00 01") + "a\0b\0"s;
  const auto request = decodePreliminaryScanRequest(payload);
  EXPECT_EQ(request.documentID, 7u);
  EXPECT_THAT(request.citations, ElementsAre("a"));
}

TEST(PreliminaryScanRequest, AnEmptyPayloadReadsAsZeros) {
  const auto request = decodePreliminaryScanRequest({});
  EXPECT_EQ(request.documentID, 0u);
  EXPECT_EQ(request.announcedCount, 0u);
  EXPECT_THAT(request.citations, IsEmpty());
}

TEST(PreliminaryScanRequest, AHeaderCutShortReadsAsIfNULsFollowed) {
  EXPECT_EQ(decodePreliminaryScanRequest("\0\0\x01\x02"sv).documentID, 0x01020000u);
}

TEST(PreliminaryScanRequest, APairCutShortIsReadWhole) {
  EXPECT_THAT(decodePreliminaryScanRequest(emptyPreliminaryScan + "a").citations, ElementsAre("a"));
  EXPECT_THAT(decodePreliminaryScanRequest(emptyPreliminaryScan + "a\0"s).citations,
              ElementsAre("a"));
  EXPECT_THAT(decodePreliminaryScanRequest(emptyPreliminaryScan + "a\0b"s).citations,
              ElementsAre("a"));
}

TEST(PreliminaryScanRequest, InvalidUTF8ShiftsNoEntry) {
  const std::string payload = emptyPreliminaryScan + "\xFF\xC3\0x\0b\0\xE6\0c\0\0"s;
  const auto request = decodePreliminaryScanRequest(payload);
  EXPECT_THAT(request.citations, ElementsAre("\xFF\xC3", "b", "c"));
}

TEST(PreliminaryScanRequest, AnAnnouncementThatCannotBeTrueClaimsNoMemory) {
  const std::string payload = fromHex("00 00 00 00 00 07 FF FF FF FF") + "a\0b\0"s;
  const auto request = decodePreliminaryScanRequest(payload);
  EXPECT_EQ(request.announcedCount, 0xFFFFFFFFu);
  EXPECT_LE(request.citations.capacity(), 2u);
}

TEST(FinalScanRequest, TheHeaderIsRead) {
  const std::string payload = finalScanStart + fromHex("00 00 00 05");
  const auto request = decodeFinalScanRequest(payload);
  EXPECT_EQ(request.documentID, 7u);
  EXPECT_TRUE(request.wantsBibliography);
  EXPECT_EQ(request.styleName, "APA");
  EXPECT_EQ(request.announcedCount, 5u);
  EXPECT_THAT(request.citations, IsEmpty());
}

TEST(FinalScanRequest, OnlyTheByteFFAsksForABibliography) {
  for (int byte = 0; byte <= 0xFF; ++byte) {
    std::string payload = finalScanOf("");
    payload[6] = static_cast<char>(byte);
    EXPECT_EQ(decodeFinalScanRequest(payload).wantsBibliography, byte == 0xFF) << byte;
    EXPECT_EQ(decodeLiveBibliographyRequest(payload).wantsBibliography, byte == 0xFF) << byte;
  }
}

TEST(FinalScanRequest, TheUnusedBytesAreIgnored) {
  std::string payload = finalScanOf("a\0b\0"s);
  payload.replace(0, 2, "\xFF\xFF");
  payload.replace(7, 3, "\xFF\xFF\xFF");
  const auto request = decodeFinalScanRequest(payload);
  EXPECT_EQ(request.documentID, 7u);
  EXPECT_EQ(request.styleName, "APA");
  EXPECT_THAT(request.citations, ElementsAre("a"));
}

TEST(FinalScanRequest, AnEmptyStyleNameNamesNoStyle) {
  const std::string payload = fromHex("00 00 00 00 00 07 00 00 00 00 00 00 00 00 01") + "a\0b\0"s;
  const auto request = decodeFinalScanRequest(payload);
  EXPECT_EQ(request.styleName, "");
  EXPECT_THAT(request.citations, ElementsAre("a"));
}

TEST(FinalScanRequest, TheFirstStringIsTakenAndTheSecondIgnored) {
  EXPECT_THAT(decodeFinalScanRequest(finalScanOf("a\0b\0"s)).citations, ElementsAre("a"));
}

TEST(FinalScanRequest, TheSecondStringIsTakenWhereTheFirstIsEmpty) {
  EXPECT_THAT(decodeFinalScanRequest(finalScanOf("\0b\0"s)).citations, ElementsAre("b"));
}

TEST(FinalScanRequest, TheSecondStringIsTakenWhereTheFirstBeginsWithVerified) {
  EXPECT_THAT(
      decodeFinalScanRequest(finalScanOf("verified a\0b\0verified\0c\0verifiedX\0d\0"s)).citations,
      ElementsAre("b", "c", "d"));
}

TEST(FinalScanRequest, VerifiedElsewhereOrInCapitalsDoesNotMatter) {
  EXPECT_THAT(decodeFinalScanRequest(finalScanOf("a verified\0b\0Verified a\0c\0"s)).citations,
              ElementsAre("a verified", "Verified a"));
}

TEST(FinalScanRequest, TheMarkersOfTheChosenStringAreStillThere) {
  EXPECT_THAT(decodeFinalScanRequest(finalScanOf("\0verified b\0"s)).citations,
              ElementsAre("verified b"));
}

TEST(FinalScanRequest, ACountThatDisagreesIsJustKept) {
  const std::string payload = finalScanOf("a\0\0b\0\0"s);
  const auto request = decodeFinalScanRequest(payload);
  EXPECT_EQ(request.announcedCount, 1u);
  EXPECT_THAT(request.citations, ElementsAre("a", "b"));
}

TEST(FinalScanRequest, AnEmptyPayloadReadsAsZeros) {
  const auto request = decodeFinalScanRequest({});
  EXPECT_EQ(request.documentID, 0u);
  EXPECT_FALSE(request.wantsBibliography);
  EXPECT_EQ(request.styleName, "");
  EXPECT_THAT(request.citations, IsEmpty());
}

TEST(FinalScanRequest, AStyleNameWithoutItsNULEndsWithTheData) {
  const std::string payload = fromHex("00 00 00 00 00 07 00 00 00 00") + "APA";
  const auto request = decodeFinalScanRequest(payload);
  EXPECT_EQ(request.styleName, "APA");
  EXPECT_THAT(request.citations, IsEmpty());
}

TEST(FinalScanRequest, APairCutShortIsReadWhole) {
  EXPECT_THAT(decodeFinalScanRequest(finalScanOf("a\0b\0verified x"s)).citations,
              ElementsAre("a", ""));
}

const std::vector<CitationPair> twoCitations = {{"Smith 2001", "x"}, {"", "Müller 1999"}};

TEST(ScanRequestEncoding, APreliminaryScanHasTheseBytes) {
  EXPECT_EQ(encodePreliminaryScanRequest(0x80000001, twoCitations),
            fromHex("00 00 80 00 00 01 00 00 00 02") + "Smith 2001\0x\0\0M\xC3\xBCller 1999\0"s);
}

TEST(ScanRequestEncoding, AFinalScanHasTheseBytes) {
  const std::string pairs = "Smith 2001\0x\0\0M\xC3\xBCller 1999\0"s;
  EXPECT_EQ(encodeFinalScanRequest(0x80000001, true, "APA", twoCitations),
            fromHex("00 00 80 00 00 01 FF 00 00 00 41 50 41 00 00 00 00 02") + pairs);
  EXPECT_EQ(encodeFinalScanRequest(0x80000001, false, "", twoCitations),
            fromHex("00 00 80 00 00 01 00 00 00 00 00 00 00 00 02") + pairs);
}

TEST(ScanRequestEncoding, ALiveBibliographyRequestIsLaidOutLikeAFinalScan) {
  EXPECT_EQ(encodeLiveBibliographyRequest(7, true, "APA", twoCitations),
            encodeFinalScanRequest(7, true, "APA", twoCitations));
}

TEST(ScanRequestEncoding, ANULInsideATextEndsItAndShiftsNothing) {
  const std::vector<CitationPair> citations = {{"a\0b"sv, "c"}, {"d", "e"}};
  EXPECT_EQ(encodePreliminaryScanRequest(7, citations),
            fromHex("00 00 00 00 00 07 00 00 00 02") + "a\0c\0d\0e\0"s);
  EXPECT_EQ(encodeFinalScanRequest(7, false, "A\0B"sv, citations),
            fromHex("00 00 00 00 00 07 00 00 00 00") + "A\0\0\0\0\x02"s + "a\0c\0d\0e\0"s);
}

std::string withoutMarker(const std::string &text) {
  return text.starts_with("verified ") ? text.substr(9) : text;
}

std::string chosen(const std::string &first, const std::string &second) {
  return first.empty() || first.starts_with("verified") ? second : first;
}

TEST(ScanRequestEncoding, WhatIsEncodedIsDecoded) {
  const std::vector<std::string> texts = {"", "a", "verified a", "Müller"};
  for (const std::string &first : texts) {
    for (const std::string &second : texts) {
      const std::vector<CitationPair> citations = {{first, second}, {second, first}};
      const std::string preliminaryPayload = encodePreliminaryScanRequest(9, citations);
      const auto preliminary = decodePreliminaryScanRequest(preliminaryPayload);
      EXPECT_EQ(preliminary.documentID, 9u);
      EXPECT_EQ(preliminary.announcedCount, 2u);
      EXPECT_THAT(preliminary.citations, ElementsAre(withoutMarker(first), withoutMarker(second)));
      for (const std::string &style : texts) {
        const std::string payload = encodeFinalScanRequest(9, true, style, citations);
        const auto request = decodeFinalScanRequest(payload);
        EXPECT_EQ(request.documentID, 9u);
        EXPECT_TRUE(request.wantsBibliography);
        EXPECT_EQ(request.styleName, style);
        EXPECT_EQ(request.announcedCount, 2u);
        EXPECT_THAT(request.citations, ElementsAre(chosen(first, second), chosen(second, first)));
      }
    }
  }
}

void expectDecodedAsTheReference(std::string_view payload) {
  const std::string copy(payload);
  const auto preliminary = decodePreliminaryScanRequest(payload);
  const auto expectedPreliminary = reference::decodePreliminaryScanRequest(copy);
  ASSERT_EQ(preliminary.documentID, expectedPreliminary.documentID);
  ASSERT_EQ(preliminary.announcedCount, expectedPreliminary.announcedCount);
  ASSERT_TRUE(std::equal(preliminary.citations.begin(), preliminary.citations.end(),
                         expectedPreliminary.citations.begin(),
                         expectedPreliminary.citations.end()))
      << testing::PrintToString(copy);
  const auto final = decodeFinalScanRequest(payload);
  const auto expectedFinal = reference::decodeFinalScanRequest(copy);
  ASSERT_EQ(final.documentID, expectedFinal.documentID);
  ASSERT_EQ(final.wantsBibliography, expectedFinal.wantsBibliography);
  ASSERT_EQ(final.styleName, expectedFinal.styleName);
  ASSERT_EQ(final.announcedCount, expectedFinal.announcedCount);
  ASSERT_TRUE(std::equal(final.citations.begin(), final.citations.end(),
                         expectedFinal.citations.begin(), expectedFinal.citations.end()))
      << testing::PrintToString(copy);
  for (const std::string_view citation : final.citations) {
    ASSERT_TRUE(liesWithin(citation, payload));
  }
}

TEST(ScanRequest, EveryShortListOfPairsIsDecodedAsByTheReference) {
  GuardedBytes memory(128);
  const std::string style = finalScanOf("");
  forEachString<char>({"\0"s, "a", "verified", " ", "V", "\xFF"}, 6, [&](const std::string &pairs) {
    expectDecodedAsTheReference(memory.hold(emptyPreliminaryScan + pairs));
    expectDecodedAsTheReference(memory.hold(style + pairs));
  });
}

TEST(ScanRequest, TheDocumentIDIsReadAloneAsWithAllTheRest) {
  EXPECT_EQ(documentIDOfScanRequest(encodePreliminaryScanRequest(0x81020304, {})), 0x81020304);
  EXPECT_EQ(documentIDOfScanRequest(encodeFinalScanRequest(0x81020304, true, "APA", {})),
            0x81020304);
  forEachTruncation(encodePreliminaryScanRequest(0x81020304, {}), [](std::string_view payload) {
    EXPECT_EQ(documentIDOfScanRequest(payload), decodePreliminaryScanRequest(payload).documentID);
  });
}

TEST(ScanRequest, EveryShortPayloadIsDecodedAsByTheReference) {
  GuardedBytes memory(16);
  forEachString<char>({"\0"s, "a", "\xFF"}, 10, [&](const std::string &payload) {
    expectDecodedAsTheReference(memory.hold(payload));
  });
}

TEST(ScanRequest, DamagedPayloadsAreDecodedAsByTheReference) {
  for (const std::string &payload : {encodePreliminaryScanRequest(7, twoCitations),
                                     encodeFinalScanRequest(7, true, "APA", twoCitations)}) {
    forEachTruncation(payload, expectDecodedAsTheReference);
    forEachBitFlip(payload, expectDecodedAsTheReference);
  }
}

TEST(ScanRequest, AMillionCitationsAreViewsOfThePayload) {
  const std::vector<CitationPair> citations(1'000'000, {"Smith 2001#SMI2001@45", "verified x"});
  const std::string payload = encodeFinalScanRequest(7, true, "APA", citations);
  const auto request = decodeFinalScanRequest(payload);
  ASSERT_EQ(request.citations.size(), citations.size());
  EXPECT_EQ(request.citations.back(), "Smith 2001#SMI2001@45");
  EXPECT_TRUE(liesWithin(request.citations.back(), payload));
  EXPECT_EQ(request.citations.capacity(), citations.size());  // allocated once
}

}  // namespace
