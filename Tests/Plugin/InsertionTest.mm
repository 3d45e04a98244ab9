// Inserting the host's selection, and opening the reference behind a citation.

#import "Support/AgentTest.h"

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::string_literals;

std::string markup(const std::string &citation) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><xml><records><record><korvo>" + citation +
         "</korvo><rec-number>" + citation + "</rec-number></record></records></xml>";
}

std::string insertion(const std::string &citation) {
  return citation + "\0"s + markup(citation) + "\0"s;
}

constexpr const char *nullTagNotice =
    "One or more of the selected Korvo references has neither a \"Citation identifier\" field nor "
    "sufficient information (author,year) to create one.\n";

class Insertion : public AgentTest {
 protected:
  std::string assembled() { return str([agent_ assembleSelectedCitations]); }
};

TEST_F(Insertion, OneReferenceIsItsTagAlone) {
  host_->selection = {{"r1", "A"}};
  EXPECT_EQ(assembled(), "A");
  EXPECT_THAT(log_->lines(), ElementsAre("Mellel: UUID of selected reference: uuid-r1"));
  EXPECT_THAT(host_->notices, IsEmpty());
}

TEST_F(Insertion, SeveralReferencesStandBetweenBraces) {
  host_->selection = {{"r1", "A"}, {"r2", "B"}};
  EXPECT_EQ(assembled(), "{A;B}");
  EXPECT_THAT(log_->lines(), ElementsAre("Mellel: UUID of selected reference: uuid-r1",
                                         "Mellel: UUID of selected reference: uuid-r2"));
}

TEST_F(Insertion, ReferencesWithoutTagLeaveAnEmptySlotAndANotice) {
  host_->selection = {{"r1", ""}, {"r2", "Jones1999"}};
  EXPECT_EQ(assembled(), "{;Jones1999}");
  EXPECT_THAT(host_->notices, ElementsAre(testing::Pair("Notice for Mellel Users", nullTagNotice)));
}

TEST_F(Insertion, MiddleReferenceWithoutTagIsInsertedWithItsEmptySlotAndOneNotice) {
  host_->selection = {{"r1", "A"}, {"r2", "(nil)"}, {"r3", "Z"}};
  deliver("FIND", ""s);
  EXPECT_EQ(payloadSent(), insertion("{A;;Z}"));
  EXPECT_THAT(host_->notices, SizeIs(1));
}

TEST_F(Insertion, SeveralMissingTagsGiveOneNotice) {
  host_->selection = {{"r1", "(nil)"}, {"r2", ""}};
  EXPECT_EQ(assembled(), "{;}");
  EXPECT_THAT(host_->notices, SizeIs(1));
}

TEST_F(Insertion, OneReferenceWithoutTagInsertsNothingAndGivesTheNotice) {
  host_->selection = {{"r1", "(nil)"}};
  deliver("FIND", ""s);
  EXPECT_THAT(eventsSent(), IsEmpty());
  EXPECT_THAT(host_->notices, SizeIs(1));
  EXPECT_EQ(carrier_.activated.size(), 1u);
}

TEST_F(Insertion, EmptySelectionOnlyActivatesMellel) {
  const Answer answer = deliver("FIND", "payload is not read", true);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_FALSE(answer.directObject());
  EXPECT_THAT(calls(), ElementsAre("selectedReferences", "activate"));
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(Insertion, AbsentSelectionOnlyActivatesMellel) {
  host_->selectionIsNil = YES;
  EXPECT_EQ(deliver("FIND", std::nullopt).status, noErr);
  EXPECT_THAT(calls(), ElementsAre("selectedReferences", "activate"));
}

TEST_F(Insertion, AbsentReferenceInTheSelectionIsAnEmptySlot) {
  host_->selection = {{"r1", "A"}, {"(null)", ""}};
  EXPECT_EQ(assembled(), "{A;}");
  EXPECT_THAT(host_->notices, SizeIs(1));
}

TEST_F(Insertion, InsertionEventCarriesTextAndRecordInABuffer) {
  host_->selection = {{"r1", "A"}};
  deliver("FIND", ""s);
  ASSERT_EQ(carrier_.sent.size(), 1u);
  const platform::OutgoingEvent &event = carrier_.sent[0];
  EXPECT_EQ(event.eventClass, code("BERB"));
  EXPECT_EQ(event.eventID, code("cite"));
  EXPECT_EQ(event.targetSignature, code("mLeL"));
  EXPECT_EQ(event.returnID, -1);
  EXPECT_EQ(event.transactionID, 0);
  EXPECT_FALSE(event.wantsReply);
  EXPECT_EQ(event.timeOutInTicks, -2);
  ASSERT_EQ(event.parameters.size(), 1u);
  EXPECT_EQ(event.parameters[0].keyword, code("----"));
  EXPECT_EQ(event.parameters[0].type, code("BUFF"));
  EXPECT_EQ(payloadSent(), insertion("A"));
  EXPECT_THAT(calls(),
              ElementsAre("selectedReferences", "inTextCitationTag r1", "send cite", "activate"));
}

TEST_F(Insertion, TagsAreWrittenInUTF8AndNotEscaped) {
  host_->selection = {{"r1", "Müller<&2001 😀"}};
  deliver("FIND", ""s);
  EXPECT_EQ(payloadSent(), insertion("Müller<&2001 😀"));
}

TEST_F(Insertion, FailedSendIsNotLogged) {
  carrier_.sendResult = std::unexpected(OSStatus{procNotFound});
  [agent_ insertCitation:@"A"];
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(Insertion, WithoutMemoryAProgrammingErrorIsReportedAndNothingSent) {
  const NoMemory noMemory(agentClass_);
  [agent_ insertCitation:@"A"];
  ASSERT_EQ(assertions_->errors.size(), 1u);
  const ReportedError &error = assertions_->errors[0];
  EXPECT_EQ(error.method, "insertCitation:");
  EXPECT_EQ(error.object, agent_);
  EXPECT_EQ(error.file, "Plugin/KorvoMellelPlugin/KorvoMellelAgent");
  EXPECT_EQ(error.lineNumber, 1082);
  EXPECT_EQ(error.description, "KOKorvoMellelAgent.insertCitation out of memory");
  EXPECT_THAT(eventsSent(), IsEmpty());
}

TEST_F(Insertion, NoticesHaveTheBodyAttributesAndEndWithANewline) {
  [agent_ postNullTagNotice];
  EXPECT_EQ(str([host_->lastSummary attribute:@"role" atIndex:0 effectiveRange:nullptr]), "body");
  EXPECT_EQ(str([host_->lastSummary string]), nullTagNotice);
}

TEST_F(Insertion, NoSelectionNoticeExistsButNothingSendsIt) {
  [agent_ postNoSelectionNotice];
  EXPECT_THAT(host_->notices,
              ElementsAre(testing::Pair("Notice for Mellel Users",
                                        "Please select one or more references in your Korvo "
                                        "collections before attempting to insert into Mellel.\n")));
}

class Lookup : public AgentTest {};

TEST_F(Lookup, KnownReferenceIsOpenedAndMellelActivated) {
  host_->matches["SMI2001"] = {"smith"};
  const Answer answer = deliver("FNDN", "Smith 2001#SMI2001\0trailing bytes"s, true);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_FALSE(answer.directObject());
  EXPECT_THAT(callsOf({"split", "displayEditor", "activate", "send"}),
              ElementsAre("split Smith 2001#SMI2001", "displayEditor smith", "activate"));
}

TEST_F(Lookup, FirstCitationOfAGroupCounts) {
  host_->matches["a"] = {"a"};
  host_->matches["b"] = {"b"};
  deliver("FNDN", "a;b");
  EXPECT_THAT(callsOf({"displayEditor"}), ElementsAre("displayEditor a"));
}

TEST_F(Lookup, CitationWithoutReferenceOpensNothingButActivatesMellel) {
  deliver("FNDN", "unknown"s);
  EXPECT_THAT(callsOf({"displayEditor", "activate"}), ElementsAre("activate"));
  EXPECT_THAT(host_->notices, SizeIs(1));
}

TEST_F(Lookup, GroupWithoutCitationsDoesNothing) {
  for (const std::string &payload : {""s, "\0"s, " "s, "#SMI2001"s}) {
    EXPECT_EQ(deliver("FNDN", payload).status, noErr);
  }
  EXPECT_THAT(callsOf({"displayEditor", "activate", "notice"}), IsEmpty());
}

TEST_F(Lookup, AbsentPayloadDoesNothingAtAll) {
  EXPECT_EQ(deliver("FNDN", std::nullopt).status, noErr);
  EXPECT_THAT(calls(), IsEmpty());
}

int groupsParsed = 0;
NSArray *parseToGroups(id, SEL, NSArray *) {
  NSMutableArray *groups = [NSMutableArray array];
  for (int index = 0; index < groupsParsed; ++index) {
    RecordingGroup *group = [[[RecordingGroup alloc] init] autorelease];
    [group addCitation:[[[RecordingCitation alloc] init] autorelease]];
    [groups addObject:group];
  }
  return groups;
}

TEST_F(Lookup, NoGroupOrSeveralDoNothing) {
  const ReplacedMethod parser(agentClass_, @selector(citationGroupsWithCitationStringArray:),
                              asMethod(parseToGroups));
  for (const int count : {0, 2}) {
    groupsParsed = count;
    deliver("FNDN", "text"s);
  }
  EXPECT_THAT(callsOf({"displayEditor", "activate"}), IsEmpty());
  groupsParsed = 1;
  deliver("FNDN", "text"s);
  EXPECT_THAT(callsOf({"activate"}), ElementsAre("activate"));
}

}  // namespace
}  // namespace plugin_test
