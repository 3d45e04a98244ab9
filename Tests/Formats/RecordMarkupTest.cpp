#include <Formats/PayloadWriter.h>
#include <Formats/RecordMarkup.h>
#include <Formats/Unicode.h>
#include <Tests/Support/AllStrings.h>
#include <Tests/Support/ReferenceRecordMarkup.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using formats::citationComponents;
using formats::recordMarkupForComponents;
using formats::recordMarkupForInsertion;
using formats::tagsInRecordMarkup;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(RecordMarkup, ComponentsAreSplitAtEverySemicolonAndEmptyOnesAreKept) {
  EXPECT_THAT(citationComponents(u"a;b"), ElementsAre(u"a", u"b"));
  EXPECT_THAT(citationComponents(u"a"), ElementsAre(u"a"));
  EXPECT_THAT(citationComponents(u"a;"), ElementsAre(u"a", u""));
  EXPECT_THAT(citationComponents(u";;"), ElementsAre(u"", u"", u""));
  EXPECT_THAT(citationComponents(u""), ElementsAre(u""));
}

TEST(RecordMarkup, TwoComponentsMakeTwoRecordsOnOneLine) {
  EXPECT_EQ(recordMarkupForComponents(u"a;b"),
            u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records>"
            u"<record><korvo>a</korvo><rec-number>a</rec-number></record>"
            u"<record><korvo>b</korvo><rec-number>b</rec-number></record>"
            u"</records></xml>");
}

TEST(RecordMarkup, ATrailingSemicolonMakesAnEmptyRecord) {
  EXPECT_EQ(recordMarkupForComponents(u"a;"),
            u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records>"
            u"<record><korvo>a</korvo><rec-number>a</rec-number></record>"
            u"<record><korvo></korvo><rec-number></rec-number></record>"
            u"</records></xml>");
}

TEST(RecordMarkup, AnEmptyCitationHasNoMarkupAtAll) {
  EXPECT_EQ(recordMarkupForComponents(u""), u"");
}

TEST(RecordMarkup, EachComponentLosesItsVerifiedMarkers) {
  EXPECT_EQ(recordMarkupForComponents(u"verified a;verified verified b"),
            recordMarkupForComponents(u"a;b"));
  EXPECT_NE(recordMarkupForComponents(u"a; verified b"), recordMarkupForComponents(u"a;b"));
}

TEST(RecordMarkup, NothingIsEscaped) {
  EXPECT_EQ(recordMarkupForInsertion(u"a<&>\"'"),
            u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records>"
            u"<record><korvo>a<&>\"'</korvo><rec-number>a<&>\"'</rec-number></record>"
            u"</records></xml>");
}

TEST(RecordMarkup, AnInsertionMakesOneRecordOfItsWholeText) {
  EXPECT_EQ(recordMarkupForInsertion(u"{a;verified b}"),
            u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records>"
            u"<record><korvo>{a;verified b}</korvo><rec-number>{a;verified b}</rec-number></record>"
            u"</records></xml>");
  EXPECT_EQ(recordMarkupForInsertion(u""),
            u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records>"
            u"<record><korvo></korvo><rec-number></rec-number></record>"
            u"</records></xml>");
}

TEST(RecordMarkup, TagsAreReadInOrder) {
  EXPECT_THAT(tagsInRecordMarkup(formats::encodeUTF8(recordMarkupForComponents(u"é;;b"))),
              ElementsAre("é", "", "b"));
  EXPECT_THAT(tagsInRecordMarkup(""), IsEmpty());
}

TEST(RecordMarkup, ATagThatDoesNotEndIsPassedOver) {
  EXPECT_THAT(tagsInRecordMarkup("<korvo>a</korvo>x<korvo>b"), ElementsAre("a"));
  EXPECT_THAT(tagsInRecordMarkup("a</korvo><korvo>b</korvo></korvo>"), ElementsAre("b"));
}

TEST(RecordMarkup, EveryShortCitationIsTreatedAsByTheReference) {
  forEachString<char16_t>({u";", u"a", u" ", u"<", u"verified ", u"verified", u"</korvo>"}, 6,
                          [](const std::u16string &citation) {
                            const auto components = citationComponents(citation);
                            const auto expected = reference::citationComponents(citation);
                            ASSERT_TRUE(std::equal(components.begin(), components.end(),
                                                   expected.begin(), expected.end()));
                            ASSERT_EQ(recordMarkupForComponents(citation),
                                      reference::recordMarkupForComponents(citation));
                          });
}

// Half surrogate pairs on both sides of a separator, text of two and three bytes a unit, and NUL.
TEST(RecordMarkup, ItsSizeIsKnownBeforeItIsMade) {
  const std::u16string nul(1, u'\0');
  forEachString<char16_t>({u";", u"a", u"\u00e9", u"\u4e00", std::u16string(1, char16_t{0xD83D}),
                           std::u16string(1, char16_t{0xDE00}), u"verified ", nul},
                          5, [](const std::u16string &citation) {
                            ASSERT_EQ(formats::sizeOfRecordMarkupForComponents(citation),
                                      formats::sizeOfString(recordMarkupForComponents(citation)));
                          });
}

TEST(RecordMarkup, TagsOfEveryShortMarkupAreReadAsByTheReference) {
  forEachString<char>(
      {"<korvo>", "</korvo>", "<", "korvo>", "/", "a"}, 6, [](const std::string &markup) {
        const auto tags = tagsInRecordMarkup(markup);
        const auto expected = reference::tagsInRecordMarkup(markup);
        ASSERT_TRUE(std::equal(tags.begin(), tags.end(), expected.begin(), expected.end()))
            << markup;
      });
}

// A word processor gets back what it sent, as long as the text does not look like a tag.
TEST(RecordMarkup, TagsAreTheComponentsWithoutMarkers) {
  forEachString<char16_t>(
      {u";", u"a", u"é", u"<", u"verified "}, 6, [](const std::u16string &citation) {
        if (citation.empty()) {
          return;
        }
        const std::string markup = formats::encodeUTF8(recordMarkupForComponents(citation));
        std::vector<std::string> expected;
        for (const auto &component : reference::citationComponents(citation)) {
          expected.push_back(formats::encodeUTF8(reference::withoutVerifiedMarkers(component)));
        }
        const auto tags = tagsInRecordMarkup(markup);
        ASSERT_TRUE(std::equal(tags.begin(), tags.end(), expected.begin(), expected.end()));
      });
}

// Memory is asked for once: what grows takes up to twice as much as it needs.
TEST(RecordMarkup, TakesNoMoreMemoryThanItNeeds) {
  constexpr std::size_t roundedUp = 16;  // as some libraries do
  for (std::size_t length = 1; length < 1000; length += 37) {
    const std::u16string citation(length, u'a');
    const std::u16string ofComponents = recordMarkupForComponents(citation);
    EXPECT_LT(ofComponents.capacity(), ofComponents.size() + roundedUp) << length;
    const std::u16string ofInsertion = recordMarkupForInsertion(citation);
    EXPECT_LT(ofInsertion.capacity(), ofInsertion.size() + roundedUp) << length;
  }
  const std::u16string ofTwo = recordMarkupForComponents(u"a;b");
  EXPECT_LT(ofTwo.capacity(), ofTwo.size() + roundedUp);
}

}  // namespace
