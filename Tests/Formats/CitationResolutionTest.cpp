#include "Payloads.h"

#include <Formats/CitationResolution.h>
#include <Formats/RecordMarkup.h>
#include <Formats/Unicode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace formats;
using testing::HasSubstr;

// Sizes, allocates and fills the buffer as a sender does.
std::string encode(std::uint32_t documentID, const std::vector<std::u16string> &citations) {
  std::size_t size = citationResolutionFixedSize;
  for (const auto &citation : citations) {
    size += sizeOfString(citation) + sizeOfString(recordMarkupForComponents(citation));
  }
  std::string payload(size, '?');
  PayloadWriter writer(payload);
  writeCitationResolutionHeader(writer, documentID, static_cast<std::uint32_t>(citations.size()));
  for (const auto &citation : citations) {
    writer.writeString(citation);
    writer.writeString(recordMarkupForComponents(citation));
  }
  EXPECT_EQ(writer.written(), size);
  return payload;
}

const std::vector<std::u16string> threeCitations = {u"Müller 1999;b", u"", u"a;"};

TEST(CitationResolution, WithoutCitationsItHasTenBytes) {
  EXPECT_EQ(encode(7, {}), fromHex("00 00 00 00 00 07 00 00 00 00"));
}

TEST(CitationResolution, ADocumentIDAboveTheSignedRangeIsSentUnchanged) {
  EXPECT_EQ(encode(0xFEDCBA98, {}), fromHex("00 00 FE DC BA 98 00 00 00 00"));
  EXPECT_EQ(decodeCitationResolution(encode(0xFEDCBA98, {})).value().documentID, 0xFEDCBA98u);
}

TEST(CitationResolution, AnEmptyCitationIsTwoNULs) {
  EXPECT_EQ(encode(7, {u""}), fromHex("00 00 00 00 00 07 00 00 00 01 00 00"));
}

TEST(CitationResolution, ACitationIsFollowedByItsRecords) {
  EXPECT_EQ(encode(7, {u"é"}),
            fromHex("00 00 00 00 00 07 00 00 00 01") + "é\0"s +
                "<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records><record><korvo>é</korvo>"
                "<rec-number>é</rec-number></record></records></xml>\0"s);
}

TEST(CitationResolution, WhatIsEncodedIsDecoded) {
  const std::string payload = encode(7, threeCitations);
  const auto resolution = decodeCitationResolution(payload);
  ASSERT_TRUE(resolution) << resolution.error();
  EXPECT_EQ(resolution->documentID, 7u);
  ASSERT_EQ(resolution->citations.size(), threeCitations.size());
  for (std::size_t index = 0; index < threeCitations.size(); ++index) {
    EXPECT_EQ(resolution->citations[index].citation, encodeUTF8(threeCitations[index]));
    EXPECT_EQ(resolution->citations[index].markup,
              encodeUTF8(recordMarkupForComponents(threeCitations[index])));
  }
}

TEST(CitationResolution, CutShortAnywhereItIsRefused) {
  forEachTruncation(encode(7, threeCitations), [](std::string_view payload) {
    const auto resolution = decodeCitationResolution(payload);
    ASSERT_FALSE(resolution) << payload.size();
    EXPECT_THAT(resolution.error(), IsOneLine());
    EXPECT_THAT(resolution.error(), HasSubstr("citation resolution"));
  });
}

TEST(CitationResolution, TheErrorNamesTheFieldAndItsPlace) {
  EXPECT_EQ(decodeCitationResolution(fromHex("00 00 00 00 00 07 00 00 00 01 61 00 62")).error(),
            "citation resolution: cut short in the records of a citation, which begins at byte 12 "
            "of 13");
}

TEST(CitationResolution, ACountThatCannotBeTrueIsRefusedAtOnce) {
  EXPECT_EQ(decodeCitationResolution(fromHex("00 00 00 00 00 07 FF FF FF FF 00 00")).error(),
            "citation resolution: announces 4294967295 citations, but only 2 bytes follow");
}

TEST(CitationResolution, MoreEntriesThanAnnouncedAreRefused) {
  EXPECT_EQ(decodeCitationResolution(fromHex("00 00 00 00 00 07 00 00 00 01 00 00 00 00")).error(),
            "citation resolution: ends at byte 12, but the data at byte 14");
}

TEST(CitationResolution, NoBitFlipReadsOutsideThePayload) {
  std::size_t accepted = 0;
  forEachBitFlip(encode(7, threeCitations), [&](std::string_view payload) {
    const auto resolution = decodeCitationResolution(payload);
    if (!resolution) {
      EXPECT_THAT(resolution.error(), IsOneLine());
      return;
    }
    ++accepted;
    for (const auto &entry : resolution->citations) {
      EXPECT_TRUE(liesWithin(entry.citation, payload));
      EXPECT_TRUE(liesWithin(entry.markup, payload));
    }
  });
  EXPECT_GT(accepted, 0u);
}

TEST(CitationResolution, AListOfCitationsTakesNoMoreMemoryThanItNeeds) {
  const auto resolution = decodeCitationResolution(encode(7, threeCitations));
  ASSERT_TRUE(resolution);
  EXPECT_EQ(resolution->citations.capacity(), threeCitations.size());
}

}  // namespace
