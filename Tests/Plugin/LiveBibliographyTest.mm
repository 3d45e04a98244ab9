// The live bibliography, which is answered in the request's own reply.

#import "Support/AgentTest.h"

#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

const std::string warning =
    "KorvoMellelAgent.handleCreateBibliographyEvent: WARNING: expected a bibstyle, but got none";

std::string request(std::string_view style, std::vector<formats::CitationPair> citations,
                    bool wantsBibliography = false, uint32_t documentID = 7) {
  return formats::encodeLiveBibliographyRequest(documentID, wantsBibliography, style, citations);
}

class LiveBibliography : public AgentTest {
 protected:
  LiveBibliography() {
    style_ = [host_ addStyle:"APA"];
    style_->bibliographyRTF = "{\\rtf1 works}";
    hostScript().pidginRTF = [](NSAttributedString *text) { return [text string]; };
  }

  std::string replyTo(const std::string &payload) {
    const Answer answer = deliver("LVBQ", payload, true);
    EXPECT_EQ(answer.status, noErr);
    EXPECT_TRUE(answer.directObject());
    return answer.directObject().value_or("");
  }

  RecordingStyle *style_;
};

TEST_F(LiveBibliography, AnswerTravelsInTheReplyAndMellelIsActivated) {
  host_->matches["a"] = {"a"};
  const Answer answer = deliver("LVBQ", request("APA", {{"a", ""}}, true), true);
  ASSERT_EQ(answer.parameters.size(), 1u);
  EXPECT_EQ(answer.parameters[0].keyword, code("----"));
  EXPECT_EQ(answer.parameters[0].type, code("TEXT"));
  EXPECT_EQ(answer.directObject(),
            "\0\0\0\0\0\0\0\0\0\0\0\0\xFF\0APA\0\0\0\0\1[1]\0{\\rtf1 works}"s);
  EXPECT_THAT(eventsSent(), IsEmpty());
  EXPECT_THAT(
      calls(),
      ElementsAre("bibStyleNamed APA", "currentLibrary", "split a", "createCitationGroup",
                  "createCitation", "setSearchString a", "match a", "setReference a", "addCitation",
                  "citationArray of 1", "setPropertiesInCitationArray 1", "format 1",
                  "pidginRTF [1]", "bibliography of 1, attributes 1 mutable",
                  "RTFFromRange 0 5 " + str(NSRTFTextDocumentType) + ", margin of the style",
                  "pidginRTF [1]", "activate"));
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(LiveBibliography, DocumentIDIsZeroWhateverWasSent) {
  setDocumentID(99);
  EXPECT_EQ(replyTo(request("APA", {}, false, 0xFFFFFFFF)).substr(2, 4), "\0\0\0\0"s);
  EXPECT_EQ(documentID(), 0u);
}

TEST_F(LiveBibliography, WithoutCitationsOnlyTheFixedFieldsAndTheNameAreSent) {
  EXPECT_EQ(replyTo(request("APA", {})).size(), 18u + 4u);
  EXPECT_EQ(replyTo(request("APA", {}, true)).size(), 18u + 4u + 13u);
}

TEST_F(LiveBibliography, SizeCountsTheStyleNameInUTF8) {
  [host_ addStyle:"Zeitschrift für 漢字 😀"];
  EXPECT_EQ(replyTo(request("Zeitschrift für 漢字 😀", {})),
            "\0\0\0\0\0\0\0\0\0\0\0\0\0\0Zeitschrift für 漢字 😀\0\0\0\0\0"s);
  EXPECT_TRUE(assertions_->errors.empty());
}

TEST_F(LiveBibliography, NoNameOrAnUnknownOneMeansTheDefaultStyleWithAWarning) {
  RecordingStyle *standard = [host_ addStyle:"Standard"];
  host_->standardStyle = standard;
  for (const char *name : {"", "Unknown"}) {
    const std::string payload = replyTo(request(name, {}));
    EXPECT_EQ(formats::decodeScanReply(payload)->styleName, "Standard");
  }
  EXPECT_THAT(log_->lines(), ElementsAre(warning, warning));
  EXPECT_THAT(callsOf({"bibStyleNamed", "defaultStyle"}),
              ElementsAre("defaultStyle", "bibStyleNamed Unknown", "defaultStyle"));
}

TEST_F(LiveBibliography, NoStyleAnywhereCancelsAndLeavesTheReplyEmpty) {
  const Answer answer = deliver("LVBQ", request("", {{"a", ""}}), true);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_FALSE(answer.directObject());
  EXPECT_THAT(callsOf({"send", "activate"}), ElementsAre("send Rmcr", "activate", "activate"));
  EXPECT_THAT(log_->lines(), ElementsAre(warning));
  EXPECT_THAT(callsOf({"split"}), IsEmpty());
}

TEST_F(LiveBibliography, SecondStringStandsInForAVerifiedOrEmptyFirstAndNothingIsScrubbed) {
  replyTo(request("APA", {{"verified a", "b"},
                          {"verifiedly", "b2"},
                          {"", "verified c"},
                          {"a", "b"},
                          {"a verified", "b"}}));
  EXPECT_THAT(callsOf({"split"}), ElementsAre("split b", "split b2", "split verified c", "split a",
                                              "split a verified"));
}

TEST_F(LiveBibliography, OnlyTheByteFFWantsABibliographyAndItStaysWanted) {
  for (const int value : {0x01, 0x7F, 0xFE}) {
    std::string payload = request("APA", {});
    payload[6] = static_cast<char>(value);
    replyTo(payload);
    EXPECT_FALSE(generatesBibliography()) << value;
  }
  replyTo(request("APA", {}, true));
  const std::string later = replyTo(request("APA", {}, false));
  EXPECT_TRUE(formats::decodeScanReply(later)->bibliography);
}

TEST_F(LiveBibliography, NoDialogEverOpens) {
  const ScriptedDialog dialog(2, style_);
  deliver("LVBQ", request("Unknown", {}), true);
  EXPECT_THAT(callsOf({"openDialog", "runModal", "isHidden"}), IsEmpty());
}

TEST_F(LiveBibliography, SenderThatWantsNoReplyIsServedAllTheSame) {
  EXPECT_EQ(deliver("LVBQ", request("APA", {{"a", ""}}), false).status, noErr);
  EXPECT_THAT(callsOf({"format", "activate"}), ElementsAre("format 1", "activate"));
}

TEST_F(LiveBibliography, AbsentPayloadIsAnsweredAsAnEmptyOne) {
  host_->standardStyle = style_;
  setDocumentID(5);
  const Answer answer = deliver("LVBQ", std::nullopt, true);
  EXPECT_EQ(answer.directObject(), "\0\0\0\0\0\0\0\0\0\0\0\0\0\0APA\0\0\0\0\0"s);
  EXPECT_EQ(documentID(), 0u);
  EXPECT_THAT(log_->lines(), ElementsAre(warning));
}

TEST_F(LiveBibliography, EveryCutOfAPayloadIsAnswered) {
  host_->standardStyle = style_;
  const std::string whole = request("APA", {{"a", "x"}, {"", "b"}}, true);
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const std::string payload = replyTo(whole.substr(0, length));
    EXPECT_TRUE(formats::decodeScanReply(payload)) << length;
  }
}

TEST_F(LiveBibliography, WithoutMemoryItCancelsAndLeavesTheReplyEmpty) {
  const NoMemory noMemory(agentClass_);
  const Answer answer = deliver("LVBQ", request("APA", {{"a", ""}}), true);
  EXPECT_FALSE(answer.directObject());
  EXPECT_THAT(log_->lines(),
              ElementsAre("KorvoMellelAgent.sendLiveBiblioReplyEvent: out of memory"));
  EXPECT_THAT(callsOf({"send", "activate"}), ElementsAre("send Rmcr", "activate", "activate"));
}

TEST_F(LiveBibliography, TextThatGrowsBetweenTheConversionsNeverLeavesTheBuffer) {
  int turn = 0;
  hostScript().pidginRTF = [&turn](NSAttributedString *) {
    return turn++ == 0 ? @"ab" : @"abcdefgh";
  };
  const std::string payload = replyTo(request("APA", {{"a", ""}}));
  ASSERT_EQ(assertions_->errors.size(), 1u);
  const ReportedError &error = assertions_->errors[0];
  EXPECT_EQ(error.method, "sendLiveBiblioReplyEvent:forCitations:withStyle:");
  EXPECT_EQ(error.object, agent_);
  EXPECT_EQ(error.file, "Plugin/KorvoMellelPlugin/KorvoMellelAgent");
  EXPECT_EQ(error.lineNumber, 635);
  EXPECT_EQ(error.description,
            "Programming error - buffer size mismatch in sendLiveBiblioReplyEvent()");
  EXPECT_EQ(payload.size(), 18u + 4u + 3u);
}

TEST_F(LiveBibliography, TextThatShrinksLeavesTheBytesReallyWritten) {
  int turn = 0;
  hostScript().pidginRTF = [&turn](NSAttributedString *) {
    return turn++ == 0 ? @"abcdefgh" : @"ab";
  };
  const std::string payload = replyTo(request("APA", {{"a", ""}}));
  ASSERT_EQ(assertions_->errors.size(), 1u);
  EXPECT_EQ(payload, "\0\0\0\0\0\0\0\0\0\0\0\0\0\0APA\0\0\0\0\1ab\0"s);
}

TEST_F(LiveBibliography, HostThatRaisesGivesTheSenderAnErrorNumberInTheReply) {
  hostScript().split = [](NSString *) -> NSArray * {
    [NSException raise:@"HostFailure" format:@"no library"];
    return nil;
  };
  const Answer answer = deliver("LVBQ", request("APA", {{"a", ""}}), true);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_EQ(answer.errorNumber(), errAEEventFailed);
  EXPECT_EQ(answer.directObject(), std::nullopt);
  EXPECT_THAT(eventsSent(), testing::IsEmpty());
}

}  // namespace
}  // namespace plugin_test
