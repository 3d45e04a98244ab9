// What the user reads comes from the plug-in's own bundle. The bundle loaded here is a copy with
// another table of texts: one that translates all of them but the request to select references.

#import "Support/AgentTest.h"

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::Pair;

class TranslatedTexts : public AgentTest {};

TEST_F(TranslatedTexts, NoticeOfACitationThatMatchesNothingIsTranslated) {
  [agent_ citationGroupsWithCitationStringArray:array({@"Müller"})];
  EXPECT_THAT(host_->notices,
              ElementsAre(Pair("Fragen zum Dokument", "\nZitat 1 (Müller) wurde nicht gefunden.\n\n"
                                                      "Ist die richtige Bibliothek gewählt?\n\n"
                                                      "\n\nBitte eindeutig machen.\n")));
}

// In the order of the language, which the table tells by positions.
TEST_F(TranslatedTexts, NoticeOfACitationThatMatchesSeveralIsTranslated) {
  host_->matches["Smith"] = {"r", "s"};
  [agent_ citationGroupsWithCitationStringArray:array({@"Smith"})];
  ASSERT_EQ(host_->notices.size(), 1u);
  EXPECT_EQ(host_->notices[0].first, "Fragen zum Dokument");
  EXPECT_TRUE(host_->notices[0].second.starts_with("\n\nSmith (Zitat 1) wurde 2 Mal gefunden.\n"))
      << host_->notices[0].second;
  EXPECT_TRUE(host_->notices[0].second.ends_with("\n\nBitte eindeutig machen.\n"))
      << host_->notices[0].second;
}

TEST_F(TranslatedTexts, NoticeOfAReferenceWithoutTagIsTranslated) {
  [agent_ postNullTagNotice];
  EXPECT_THAT(host_->notices, ElementsAre(Pair("Hinweis zu Mellel", "Nicht genug Angaben.\n")));
}

TEST_F(TranslatedTexts, TextWithoutATranslationIsShownInEnglish) {
  [agent_ postNoSelectionNotice];
  EXPECT_THAT(host_->notices,
              ElementsAre(Pair("Hinweis zu Mellel",
                               "Please select one or more references in your Korvo collections "
                               "before attempting to insert into Mellel.\n")));
}

}  // namespace
}  // namespace plugin_test
