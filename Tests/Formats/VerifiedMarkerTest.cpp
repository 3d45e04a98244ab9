#include <Formats/VerifiedMarker.h>
#include <Tests/Support/AllStrings.h>
#include <Tests/Support/ReferenceVerifiedMarker.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using formats::withoutVerifiedMarkers;

TEST(VerifiedMarker, OneLeadingMarkerIsRemoved) {
  EXPECT_EQ(withoutVerifiedMarkers(u"verified Smith 2001"), u"Smith 2001");
  EXPECT_EQ(withoutVerifiedMarkers("verified Smith 2001"), "Smith 2001");
}

TEST(VerifiedMarker, RepeatedMarkersAreAllRemoved) {
  EXPECT_EQ(withoutVerifiedMarkers(u"verified verified X"), u"X");
}

TEST(VerifiedMarker, AMarkerAloneBecomesTheEmptyString) {
  EXPECT_EQ(withoutVerifiedMarkers(u"verified "), u"");
  EXPECT_EQ(withoutVerifiedMarkers(u"verified verified "), u"");
}

TEST(VerifiedMarker, OtherSpellingsAreNoMarkers) {
  EXPECT_EQ(withoutVerifiedMarkers(u"Verified Smith"), u"Verified Smith");
  EXPECT_EQ(withoutVerifiedMarkers(u"verifiedSmith"), u"verifiedSmith");
  EXPECT_EQ(withoutVerifiedMarkers(u"verified"), u"verified");
  EXPECT_EQ(withoutVerifiedMarkers(u"verified\u00A0Smith"), u"verified\u00A0Smith");
  EXPECT_EQ(withoutVerifiedMarkers(u" verified Smith"), u" verified Smith");
}

TEST(VerifiedMarker, AMarkerLaterInTheTextStays) {
  EXPECT_EQ(withoutVerifiedMarkers(u"Smith verified 2001"), u"Smith verified 2001");
}

TEST(VerifiedMarker, WhitespaceBehindTheMarkerIsNotTrimmed) {
  EXPECT_EQ(withoutVerifiedMarkers(u"verified  Smith "), u" Smith ");
}

TEST(VerifiedMarker, ATextWithoutMarkersAndTheEmptyTextAreUnchanged) {
  EXPECT_EQ(withoutVerifiedMarkers(u"Smith"), u"Smith");
  EXPECT_EQ(withoutVerifiedMarkers(u""), u"");
  EXPECT_EQ(withoutVerifiedMarkers(""), "");
}

TEST(VerifiedMarker, TheResultIsAViewOfTheText) {
  const std::u16string text = u"verified Smith";
  EXPECT_EQ(withoutVerifiedMarkers(std::u16string_view(text)).data(), text.data() + 9);
}

TEST(VerifiedMarker, EveryShortTextIsTreatedAsByTheReference) {
  forEachString<char16_t>({u"verified ", u"verified", u"verifie", u"d", u" ", u"V", u"x"}, 6,
                          [](const std::u16string &text) {
                            ASSERT_EQ(withoutVerifiedMarkers(std::u16string_view(text)),
                                      reference::withoutVerifiedMarkers(text));
                          });
  forEachString<char>({"verified ", "verified", "verifie", "d", " ", "V", "\xC3"}, 6,
                      [](const std::string &text) {
                        ASSERT_EQ(withoutVerifiedMarkers(std::string_view(text)),
                                  reference::withoutVerifiedMarkers(text));
                      });
}

}  // namespace
