#include "Payloads.h"

#include <Formats/Insertion.h>
#include <Formats/RecordMarkup.h>
#include <Formats/Unicode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace formats;
using testing::HasSubstr;

std::string encode(std::u16string_view citation) {
  const std::u16string markup = recordMarkupForInsertion(citation);
  std::string payload(sizeOfInsertion(citation, markup), '?');
  PayloadWriter writer(payload);
  writeInsertion(writer, citation, markup);
  EXPECT_EQ(writer.written(), payload.size());
  return payload;
}

TEST(Insertion, IsTheTextAndItsRecordEachWithANUL) {
  EXPECT_EQ(encode(u"A"),
            "A\0<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records><record><korvo>A</korvo>"
            "<rec-number>A</rec-number></record></records></xml>\0"s);
}

TEST(Insertion, SeveralReferencesStandInOneRecord) {
  EXPECT_EQ(encode(u"{A;;Z}"),
            "{A;;Z}\0<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records><record><korvo>{A;;Z}"
            "</korvo><rec-number>{A;;Z}</rec-number></record></records></xml>\0"s);
}

TEST(Insertion, WhatIsEncodedIsDecoded) {
  for (const std::u16string citation : {u"A", u"", u"{Müller 1999;水}", u"<&>"}) {
    const std::string payload = encode(citation);
    const auto insertion = decodeInsertion(payload);
    ASSERT_TRUE(insertion) << insertion.error();
    EXPECT_EQ(insertion->citation, encodeUTF8(citation));
    EXPECT_EQ(insertion->markup, encodeUTF8(recordMarkupForInsertion(citation)));
    EXPECT_TRUE(liesWithin(insertion->citation, payload));
  }
}

TEST(Insertion, CutShortAnywhereItIsRefused) {
  forEachTruncation(encode(u"{A;Müller}"), [](std::string_view payload) {
    const auto insertion = decodeInsertion(payload);
    ASSERT_FALSE(insertion) << payload.size();
    EXPECT_THAT(insertion.error(), IsOneLine());
    EXPECT_THAT(insertion.error(), HasSubstr("insertion: cut short in the "));
  });
}

TEST(Insertion, BytesBehindTheRecordAreRefused) {
  EXPECT_EQ(decodeInsertion("A\0B\0C"sv).error(),
            "insertion: ends at byte 4, but the data at byte 5");
}

TEST(Insertion, NoBitFlipReadsOutsideThePayload) {
  std::size_t accepted = 0;
  forEachBitFlip(encode(u"{A;Müller}"), [&](std::string_view payload) {
    const auto insertion = decodeInsertion(payload);
    if (!insertion) {
      EXPECT_THAT(insertion.error(), IsOneLine());
      return;
    }
    ++accepted;
    EXPECT_TRUE(liesWithin(insertion->citation, payload));
    EXPECT_TRUE(liesWithin(insertion->markup, payload));
  });
  EXPECT_GT(accepted, 0u);
}

}  // namespace
