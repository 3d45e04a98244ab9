// What the user reads about citations that could not be resolved.

#import "Support/AgentTest.h"

namespace plugin_test {
namespace {

using testing::SizeIs;

const std::string advice =
    "This problem is often due to having the wrong library (or no library) selected in the Korvo "
    "main window.  Select the library to which this reference belongs, and try the scan again.";
const std::string notes =
    "\n\nReconcile any discrepancies by assigning a unique \"Citation identifier\" field to the "
    "Korvo reference. Then re-insert this reference into the Mellel document.\n";

class SummaryNotices : public AgentTest {
 protected:
  SummaryNotices() : summary_([[[NSMutableAttributedString alloc] init] autorelease]) {}

  std::string text() const { return str([summary_ string]); }
  std::string roleAt(NSUInteger index) const {
    return str([summary_ attribute:@"role" atIndex:index effectiveRange:nullptr]);
  }
  void notFound(int32_t number, NSString *tag) {
    [agent_ appendNotFoundNoticeToSummary:summary_ atIndex:number forTag:tag];
  }
  void duplicates(int count) {
    NSMutableSet *references = [NSMutableSet set];
    for (int index = 0; index < count; ++index) {
      [references addObject:[host_ referenceNamed:"r" + std::to_string(index)]];
    }
    [agent_ appendDuplicateNoticeToSummary:summary_
                                   atIndex:4
                                    forTag:@"Smith"
                             referenceUsed:nil
                           referencesFound:references];
  }
  std::size_t referencesListed() const {
    const std::string all = text();
    return static_cast<std::size_t>(std::count(all.begin(), all.end(), '<'));
  }

  NSMutableAttributedString *summary_;
};

TEST_F(SummaryNotices, FirstNotFoundNoticeCarriesTheLibraryAdviceAndTheNextDoesNot) {
  notFound(1, @"Smith 2001");
  EXPECT_EQ(text(), "\nCitation 1 Smith 2001: No matches were found.\n\n" + advice + "\n\n");
  EXPECT_TRUE(hasGivenLibraryAdvice());
  [summary_ deleteCharactersInRange:NSMakeRange(0, [summary_ length])];
  notFound(2, @"Jones");
  EXPECT_EQ(text(), "\nCitation 2 Jones: No matches were found.\n");
}

TEST_F(SummaryNotices, LibraryAdviceIsGivenOncePerAgentNotOncePerScan) {
  [agent_ citationGroupsWithCitationStringArray:array({@"a"})];
  [agent_ citationGroupsWithCitationStringArray:array({@"b"})];
  ASSERT_THAT(host_->notices, SizeIs(2));
  EXPECT_NE(host_->notices[0].second.find(advice), std::string::npos);
  EXPECT_EQ(host_->notices[1].second.find(advice), std::string::npos);
}

TEST_F(SummaryNotices, DuplicateNoticeDoesNotUseTheLibraryAdviceUp) {
  duplicates(2);
  EXPECT_FALSE(hasGivenLibraryAdvice());
  notFound(1, @"Smith");
  EXPECT_NE(text().find(advice), std::string::npos);
}

TEST_F(SummaryNotices, SmallestSummaryHasItsClosingNotesToo) {
  [agent_ citationGroupsWithCitationStringArray:array({@"a"})];
  [agent_ citationGroupsWithCitationStringArray:array({@"b"})];
  ASSERT_THAT(host_->notices, SizeIs(2));
  EXPECT_EQ(host_->notices[1].second, "\nCitation 1 b: No matches were found.\n" + notes);
}

TEST_F(SummaryNotices, TextsOfTheUserAreNoFormats) {
  notFound(1, @"100%@ %d %n \\");
  EXPECT_EQ(text().substr(0, 56), "\nCitation 1 100%@ %d %n \\: No matches were found.\n\nThis ");
}

TEST_F(SummaryNotices, NotFoundNoticeHasTheSubtitleAttributes) {
  notFound(1, @"Smith");
  EXPECT_EQ(roleAt(0), "subtitle");
  EXPECT_EQ(roleAt([summary_ length] - 1), "subtitle");
}

TEST_F(SummaryNotices, DuplicateNoticeListsTheReferencesWithoutElision) {
  duplicates(3);
  const std::string head = "\n\nCitation 4 Smith: 3 matches were found.\n";
  EXPECT_EQ(text().substr(0, head.size()), head);
  EXPECT_EQ(referencesListed(), 3u);
  EXPECT_EQ(text().find("..."), std::string::npos);
  EXPECT_EQ(text().substr(text().size() - 2), ">\n");
  EXPECT_EQ(roleAt(0), "subtitle");
  EXPECT_EQ(roleAt(head.size()), "description");
  EXPECT_EQ(roleAt([summary_ length] - 2), "description");
  // The separators between references carry no attributes.
  EXPECT_EQ(roleAt([summary_ length] - 1), "(nil)");
}

TEST_F(SummaryNotices, NineReferencesAreListedWithoutElision) {
  duplicates(9);
  EXPECT_EQ(referencesListed(), 9u);
  EXPECT_EQ(text().find("..."), std::string::npos);
}

TEST_F(SummaryNotices, TenReferencesAreListedAndThenElided) {
  duplicates(10);
  EXPECT_EQ(referencesListed(), 10u);
  EXPECT_EQ(text().substr(text().size() - 6), ">\n...\n");
  EXPECT_EQ(roleAt([summary_ length] - 2), "subtitle");
}

TEST_F(SummaryNotices, OfTwentyFiveReferencesTenAreListed) {
  duplicates(25);
  EXPECT_EQ(referencesListed(), 10u);
  EXPECT_NE(text().find("25 matches were found."), std::string::npos);
  EXPECT_EQ(text().substr(text().size() - 6), ">\n...\n");
}

TEST_F(SummaryNotices, ClosingNotesHaveTheNotesAttributes) {
  [agent_ appendNotesToSummary:summary_];
  EXPECT_EQ(text(), notes);
  EXPECT_EQ(roleAt(0), "notes");
  EXPECT_EQ(roleAt([summary_ length] - 1), "notes");
}

TEST_F(SummaryNotices, SummaryOfNotFoundNoticesAloneEndsWithTheClosingNotes) {
  [agent_ citationGroupsWithCitationStringArray:array({@"a", @"b"})];
  ASSERT_THAT(host_->notices, SizeIs(1));
  EXPECT_EQ(host_->notices[0].first, "Mellel Refresh Issues");
  const std::string &all = host_->notices[0].second;
  EXPECT_EQ(all.substr(all.size() - notes.size()), notes);
  EXPECT_EQ(all.find(notes), all.size() - notes.size());
}

TEST_F(SummaryNotices, NoticesStandInTheOrderOfTheCitations) {
  host_->matches["two"] = {"x", "y"};
  [agent_ citationGroupsWithCitationStringArray:array({@"one", @"two;three"})];
  const std::string &all = host_->notices.at(0).second;
  EXPECT_LT(all.find("Citation 1 one"), all.find("Citation 2 two"));
  EXPECT_LT(all.find("Citation 2 two"), all.find("Citation 3 three"));
  EXPECT_NE(all.find("Citation 3 three"), std::string::npos);
}

}  // namespace
}  // namespace plugin_test
