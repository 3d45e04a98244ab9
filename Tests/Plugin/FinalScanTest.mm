// The final scan: from Mellel's request to its answer, by name of a style or by the dialog.

#import "Support/AgentTest.h"

#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>

#include <span>

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

constexpr int32_t generateCopy = 2;
constexpr int32_t reformat = 1;
constexpr int32_t noAction = 0;

std::string request(std::string_view style, std::vector<formats::CitationPair> citations,
                    bool wantsBibliography = false, uint32_t documentID = 7) {
  return formats::encodeFinalScanRequest(documentID, wantsBibliography, style, citations);
}

class FinalScan : public AgentTest {
 protected:
  FinalScan() {
    style_ = [host_ addStyle:"APA"];
    style_->bibliographyRTF = "{\\rtf1 works}";
    host_->matches["a"] = {"a"};
    host_->matches["b"] = {"b"};
    // A group's text tells which citations it was made of.
    hostScript().formatGroup = [](NSArray *citations) {
      std::string text;
      for (NSUInteger index = 0; index < [citations count]; ++index) {
        RecordingCitation *citation = [citations objectAtIndex:index];
        text += "(" + citation->options["SearchString"] + ")";
      }
      return (NSAttributedString *)[[[NSAttributedString alloc] initWithString:ns(text)]
          autorelease];
    };
  }

  std::vector<std::string> groupsSent(std::size_t index = 0) {
    const std::string payload = payloadSent(index);
    const auto reply = formats::decodeScanReply(payload);
    EXPECT_TRUE(reply) << reply.error();
    return reply ? std::vector<std::string>(reply->groups.begin(), reply->groups.end())
                 : std::vector<std::string>();
  }

  // The text of a group alternates between two each time it is asked for.
  void answerByTurns(NSString *first, NSString *second) {
    hostScript().pidginRTF = [=, this](NSAttributedString *) {
      return turn_++ % 2 == 0 ? first : second;
    };
  }

  RecordingStyle *style_;
  int turn_ = 0;
};

TEST_F(FinalScan, NamedStyleIsUsedWithoutTouchingTheApplication) {
  const Answer answer = deliver("SCNQ", request("APA", {{"a", ""}, {"b", ""}}), true);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_FALSE(answer.directObject());
  EXPECT_THAT(eventsSent(), ElementsAre("SCNR"));
  EXPECT_THAT(groupsSent(), ElementsAre("(a)", "(b)"));
  EXPECT_THAT(callsOf({"isHidden", "hide", "unhide", "activateIgnoring", "deactivate", "runModal"}),
              IsEmpty());
}

TEST_F(FinalScan, HostIsAskedInOrder) {
  deliver("SCNQ", request("APA", {{"a", ""}}, true));
  EXPECT_THAT(
      calls(),
      ElementsAre("bibStyleNamed APA", "currentLibrary", "split a", "createCitationGroup",
                  "createCitation", "setSearchString a", "match a", "setReference a", "addCitation",
                  "citationArray of 1", "setPropertiesInCitationArray 1", "format 1",
                  "pidginRTF (a)", "bibliography of 1, attributes 1 mutable",
                  "RTFFromRange 0 5 " + str(NSRTFTextDocumentType) + ", margin of the style",
                  "pidginRTF (a)", "send SCNR", "activate"));
}

TEST_F(FinalScan, AnswerIsLaidOutByteByByte) {
  style_->superscript = YES;
  deliver("SCNQ", request("APA", {{"a", ""}}, true, 0x01020304));
  EXPECT_EQ(carrier_.sent[0].eventClass, code("mLeL"));
  EXPECT_EQ(payloadSent(), "\0\0\1\2\3\4\0\0\0\0\0\xFF\xFF\0APA\0\0\0\0\1(a)\0{\\rtf1 works}"s);
  EXPECT_EQ(documentID(), 0x01020304u);
}

TEST_F(FinalScan, SizeCountsTheStyleNameInUTF8) {
  [host_ addStyle:"Zeitschrift für 漢字 😀"];
  deliver("SCNQ", request("Zeitschrift für 漢字 😀", {{"a", ""}}));
  EXPECT_TRUE(assertions_->errors.empty());
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\7\0\0\0\0\0\0\0\0Zeitschrift für 漢字 😀\0\0\0\0\1(a)\0"s);
}

TEST_F(FinalScan, WithoutBibliographyTheBufferEndsAfterTheLastGroup) {
  deliver("SCNQ", request("APA", {{"a", ""}}));
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\7\0\0\0\0\0\0\0\0APA\0\0\0\0\1(a)\0"s);
  EXPECT_THAT(callsOf({"bibliography", "RTF"}), IsEmpty());
}

TEST_F(FinalScan, OnceWantedEveryLaterReplyCarriesABibliography) {
  deliver("SCNQ", request("APA", {}, true));
  deliver("SCNQ", request("APA", {}, false));
  for (const std::size_t index : {0u, 1u}) {
    const std::string payload = payloadSent(index);
    EXPECT_EQ(formats::decodeScanReply(payload)->bibliography, "{\\rtf1 works}") << index;
  }
}

TEST_F(FinalScan, OnlyTheByteFFWantsABibliography) {
  for (int value = 0; value < 0xFF; ++value) {
    std::string payload = request("APA", {});
    payload[6] = static_cast<char>(value);
    deliver("SCNQ", payload);
    ASSERT_FALSE(generatesBibliography()) << value;
  }
  deliver("SCNQ", request("APA", {}, true));
  EXPECT_TRUE(generatesBibliography());
}

TEST_F(FinalScan, StyleWithoutBibliographySendsNone) {
  style_->hasNoBibliography = YES;
  deliver("SCNQ", request("APA", {{"a", ""}}, true));
  const std::string payload = payloadSent();
  EXPECT_FALSE(formats::decodeScanReply(payload)->bibliography);
  EXPECT_TRUE(assertions_->errors.empty());
}

TEST_F(FinalScan, SecondStringStandsInForAVerifiedOrEmptyFirst) {
  host_->matches["c"] = {"c"};
  deliver("SCNQ", request("APA", {{"verified a", "b"},
                                  {"verifiedly", "b"},
                                  {"", "verified c"},
                                  {"a", "b"},
                                  {"a verified", "b"}}));
  EXPECT_THAT(groupsSent(), ElementsAre("(b)", "(b)", "(c)", "(a)", "(a verified)"));
}

TEST_F(FinalScan, CountThatDisagreesIsNotReported) {
  std::string payload = request("APA", {{"a", ""}, {"b", ""}});
  payload[14 + 3] = 99;
  deliver("SCNQ", payload);
  EXPECT_TRUE(assertions_->errors.empty());
  EXPECT_EQ(groupsSent().size(), 2u);
}

TEST_F(FinalScan, GroupsWithoutCitationsKeepTheirPlaces) {
  deliver("SCNQ", request("APA", {{"a", ""}, {" ", ""}, {"b", ""}}));
  EXPECT_THAT(groupsSent(), ElementsAre("(a)", "", "(b)"));
}

TEST_F(FinalScan, EmptyStyleNameOpensTheDialog) {
  const ScriptedDialog dialog(generateCopy, style_);
  deliver("SCNQ", request("", {{"a", ""}}));
  const std::vector<std::string> expected = {"isHidden",
                                             "activateIgnoringOtherApps YES",
                                             "openDialog",
                                             "center",
                                             "makeKeyAndOrderFront",
                                             "orderFrontRegardless",
                                             "runModal",
                                             "chosenAction",
                                             "close",
                                             "deactivate",
                                             "selectedBibStyle"};
  EXPECT_THAT(std::span(calls()).first(expected.size()), testing::ElementsAreArray(expected));
  EXPECT_THAT(groupsSent(), ElementsAre("(a)"));
}

TEST_F(FinalScan, UnknownStyleNameOpensTheDialog) {
  const ScriptedDialog dialog(generateCopy, style_);
  deliver("SCNQ", request("Unknown", {}));
  EXPECT_EQ(calls().front(), "bibStyleNamed Unknown");
  EXPECT_THAT(callsOf({"openDialog"}), ElementsAre("openDialog"));
  EXPECT_THAT(eventsSent(), ElementsAre("SCNR"));
}

TEST_F(FinalScan, HiddenHostIsShownForTheDialogAndHiddenAgain) {
  application_->hidden = YES;
  const ScriptedDialog dialog(generateCopy, style_);
  deliver("SCNQ", request("", {}));
  EXPECT_THAT(
      callsOf({"isHidden", "hide", "unhide", "activateIgnoring", "deactivate", "makeKey",
               "runModal", "close"}),
      ElementsAre("isHidden", "unhide", "makeKeyAndOrderFront", "runModal", "close", "hide"));
}

// macOS may refuse to make the host the active application. The dialog would then stay behind the
// windows of Mellel, and the user wait for nothing.
TEST_F(FinalScan, DialogComesToTheFrontEvenIfTheHostDoesNot) {
  for (const BOOL hidden : {NO, YES}) {
    calls().clear();
    application_->hidden = hidden;
    const ScriptedDialog dialog(generateCopy, style_);
    deliver("SCNQ", request("", {}));
    EXPECT_THAT(callsOf({"orderFrontRegardless", "runModal"}),
                ElementsAre("orderFrontRegardless", "runModal"));
  }
}

TEST_F(FinalScan, StuckWindowsAreFreedAfterTheDialogClosedAndBeforeTheHostStepsBack) {
  RecordingWindow *window = [[[RecordingWindow alloc] init] autorelease];
  window->windowDelegate = [[[KOMainWindowController alloc] init] autorelease];
  [application_->allWindows addObject:window];
  duringModalLoop() = [window] { window->windowLevel = 8; };
  const ScriptedDialog dialog(generateCopy, style_);
  deliver("SCNQ", request("", {}));
  EXPECT_THAT(callsOf({"close", "setLevel", "deactivate"}),
              ElementsAre("close", "setLevel 0", "deactivate"));
}

TEST_F(FinalScan, WithoutSelectedStyleTheDefaultStyleIsUsed) {
  host_->standardStyle = style_;
  const ScriptedDialog dialog(generateCopy, nil);
  deliver("SCNQ", request("", {{"a", ""}}));
  EXPECT_THAT(callsOf({"selectedBibStyle", "defaultStyle"}),
              ElementsAre("selectedBibStyle", "defaultStyle"));
  EXPECT_THAT(groupsSent(), ElementsAre("(a)"));
}

void expectOnlyACancel(const std::vector<std::string> &events) {
  EXPECT_THAT(events, ElementsAre("Rmcr"));
}

TEST_F(FinalScan, EveryOtherOutcomeOfTheDialogCancels) {
  for (const int32_t action : {noAction, reformat, -1}) {
    carrier_.sent.clear();
    carrier_.activated.clear();
    host_->standardStyle = style_;
    const ScriptedDialog dialog(action, style_);
    deliver("SCNQ", request("", {{"a", ""}}));
    expectOnlyACancel(eventsSent());
    EXPECT_EQ(payloadSent(), "\0\0\0\0\0\7"s);
    EXPECT_FALSE(carrier_.activated.empty());
  }
  // Nothing was looked up or formatted for an answer that nobody wants.
  EXPECT_THAT(callsOf({"split", "format", "defaultStyle"}), IsEmpty());
}

TEST_F(FinalScan, NoStyleAnywhereCancels) {
  const ScriptedDialog dialog(generateCopy, nil);
  deliver("SCNQ", request("", {{"a", ""}}));
  expectOnlyACancel(eventsSent());
  // With the cancel, and last of all, once the host has stepped back.
  EXPECT_THAT(std::vector<std::string>(calls().end() - 3, calls().end()),
              ElementsAre("send Rmcr", "activate", "activate"));
}

TEST_F(FinalScan, DialogThatCannotBeLoadedCancelsWithOneLine) {
  const ScriptedDialog dialog(generateCopy, style_, false);
  deliver("SCNQ", request("", {{"a", ""}}));
  expectOnlyACancel(eventsSent());
  EXPECT_EQ(log_->lines().size(), 1u);
  EXPECT_THAT(callsOf({"runModal"}), IsEmpty());
  EXPECT_THAT(callsOf({"deactivate"}), ElementsAre("deactivate"));
}

TEST_F(FinalScan, AbsentPayloadCancelsWithoutADialog) {
  setDocumentID(5);
  const ScriptedDialog dialog(generateCopy, style_);
  EXPECT_EQ(deliver("SCNQ", std::nullopt).status, noErr);
  EXPECT_THAT(calls(), ElementsAre("send Rmcr", "activate"));
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\5"s);
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(FinalScan, EveryCutOfAPayloadIsAnswered) {
  const ScriptedDialog dialog(generateCopy, style_);
  const std::string whole = request("APA", {{"a", "x"}, {"", "b"}}, true);
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    carrier_.sent.clear();
    EXPECT_EQ(deliver("SCNQ", whole.substr(0, length)).status, noErr);
    ASSERT_THAT(eventsSent(), ElementsAre("SCNR")) << length;
    EXPECT_TRUE(formats::decodeScanReply(payloadSent())) << length;
  }
}

TEST_F(FinalScan, WithoutMemoryTheScanIsCancelledAndMellelActivated) {
  const NoMemory noMemory(agentClass_);
  deliver("SCNQ", request("APA", {{"a", ""}}));
  EXPECT_THAT(log_->lines(), ElementsAre("KorvoMellelAgent.scanCitations: out of memory"));
  EXPECT_THAT(callsOf({"send", "activate"}), ElementsAre("send Rmcr", "activate", "activate"));
}

TEST_F(FinalScan, TextThatGrowsBetweenTheConversionsIsReportedAndNeverLeavesTheBuffer) {
  answerByTurns(@"ab", @"abcdefgh");
  deliver("SCNQ", request("APA", {{"a", ""}}));
  ASSERT_EQ(assertions_->errors.size(), 1u);
  const ReportedError &error = assertions_->errors[0];
  EXPECT_EQ(error.method, "sendScanReplyForCitations:withStyle:");
  EXPECT_EQ(error.object, agent_);
  EXPECT_EQ(error.file, "Plugin/KorvoMellelPlugin/KorvoMellelAgent");
  EXPECT_EQ(error.lineNumber, 597);
  EXPECT_EQ(error.description,
            "Programming error - buffer size mismatch in sendScanReplyForCitations()");
  // The size computed in advance, filled as far as it goes.
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\7\0\0\0\0\0\0\0\0APA\0\0\0\0\1abc"s);
}

TEST_F(FinalScan, TextThatShrinksBetweenTheConversionsIsReportedAndPaddedWithNULs) {
  answerByTurns(@"abcdefgh", @"ab");
  deliver("SCNQ", request("APA", {{"a", ""}}));
  ASSERT_EQ(assertions_->errors.size(), 1u);
  EXPECT_EQ(assertions_->errors[0].lineNumber, 597);
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\7\0\0\0\0\0\0\0\0APA\0\0\0\0\1ab\0\0\0\0\0\0\0"s);
}

TEST_F(FinalScan, SizeMismatchThatRaisesCancelsSoThatMellelDoesNotWait) {
  assertions_->raises = YES;
  answerByTurns(@"ab", @"abcdefgh");
  EXPECT_EQ(deliver("SCNQ", request("APA", {{"a", ""}})).status, noErr);
  expectOnlyACancel(eventsSent());
}

TEST_F(FinalScan, StyleWithoutAnswerForAGroupLeavesItsPlaceEmpty) {
  hostScript().formatGroup = [](NSArray *) -> NSAttributedString * { return nil; };
  deliver("SCNQ", request("APA", {{"a", ""}, {"b", ""}}));
  EXPECT_THAT(groupsSent(), ElementsAre("", ""));
}

TEST_F(FinalScan, HostWithoutPidginRTFGivesEmptyGroups) {
  hostScript().pidginRTF = [](NSAttributedString *) -> NSString * { return nil; };
  deliver("SCNQ", request("APA", {{"a", ""}}));
  EXPECT_THAT(groupsSent(), ElementsAre(""));
  EXPECT_TRUE(assertions_->errors.empty());
}

TEST_F(FinalScan, HostWithoutCitationArrayGivesTheStyleAnEmptyOne) {
  host_->knowsNoCitationArray = YES;
  deliver("SCNQ", request("APA", {{"a", ""}}, true));
  EXPECT_THAT(
      callsOf({"setProperties", "bibliography"}),
      ElementsAre("setPropertiesInCitationArray 0", "bibliography of 0, attributes 1 mutable"));
  EXPECT_THAT(groupsSent(), ElementsAre("(a)"));
}

TEST_F(FinalScan, HostThatCreatesNoGroupsOrCitationsGetsACancel) {
  host_->createsNoGroups = YES;
  EXPECT_EQ(deliver("SCNQ", request("APA", {{"a", ""}})).status, noErr);
  expectOnlyACancel(eventsSent());
  carrier_.sent.clear();
  host_->createsNoGroups = NO;
  host_->createsNoCitations = YES;
  EXPECT_EQ(deliver("SCNQ", request("APA", {{"a", ""}})).status, noErr);
  expectOnlyACancel(eventsSent());
}

TEST_F(FinalScan, HostThatRaisesLeavesMellelWithACancel) {
  hostScript().split = [](NSString *) -> NSArray * {
    [NSException raise:@"HostFailure" format:@"no library"];
    return nil;
  };
  EXPECT_EQ(deliver("SCNQ", request("APA", {{"a", ""}})).status, noErr);
  expectOnlyACancel(eventsSent());
  ASSERT_EQ(log_->lines().size(), 1u);
  EXPECT_NE(log_->lines()[0].find("HostFailure: no library"), std::string::npos);
}

TEST_F(FinalScan, SendThatFailsIsIgnored) {
  carrier_.sendResult = std::unexpected(OSStatus{procNotFound});
  EXPECT_EQ(deliver("SCNQ", request("APA", {{"a", ""}})).status, noErr);
  EXPECT_THAT(eventsSent(), ElementsAre("SCNR"));
  EXPECT_THAT(log_->lines(), IsEmpty());
  EXPECT_EQ(carrier_.activated.size(), 1u);
}

TEST_F(FinalScan, ThousandsOfCitationsAreAnsweredInOrder) {
  std::vector<std::string> texts;
  for (int index = 0; index < 5000; ++index) {
    texts.push_back("Müller " + std::to_string(index));
    host_->matches[texts.back()] = {"r"};
  }
  std::vector<formats::CitationPair> citations;
  for (const std::string &text : texts) {
    citations.push_back({text, ""});
  }
  deliver("SCNQ", request("APA", citations));
  const std::vector<std::string> groups = groupsSent();
  ASSERT_EQ(groups.size(), texts.size());
  for (std::size_t index = 0; index < texts.size(); ++index) {
    ASSERT_EQ(groups[index], "(" + texts[index] + ")");
  }
}

}  // namespace
}  // namespace plugin_test
