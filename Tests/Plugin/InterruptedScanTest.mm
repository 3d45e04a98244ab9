// Events that come while a scan waits, as AppKit on macOS may dispatch them inside the modal loop
// of the dialog. The carrier of these tests does so: it hands an event to its handler at once.

#import "Support/AgentTest.h"

#include <Formats/CitationResolution.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>

namespace plugin_test {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

constexpr int32_t generateCopy = 2;
constexpr int32_t noAction = 0;
const std::vector<formats::CitationPair> one = {{"a", ""}};

std::string preliminaryScan(uint32_t documentID) {
  return formats::encodePreliminaryScanRequest(documentID, one);
}
std::string finalScan(uint32_t documentID, std::string_view style = "",
                      bool wantsBibliography = false) {
  return formats::encodeFinalScanRequest(documentID, wantsBibliography, style, one);
}
std::string liveBibliography(bool wantsBibliography) {
  return formats::encodeLiveBibliographyRequest(8, wantsBibliography, "APA", one);
}

class InterruptedScan : public AgentTest {
 protected:
  InterruptedScan() {
    style_ = [host_ addStyle:"APA"];
    style_->bibliographyRTF = "{\\rtf1 works}";
    host_->matches["a"] = {"a"};
  }

  formats::ScanReply scanReplySent(std::size_t index) {
    payload_ = payloadSent(index);
    const auto reply = formats::decodeScanReply(payload_);
    EXPECT_TRUE(reply);
    return reply.value_or(formats::ScanReply());
  }

  RecordingStyle *style_ = nil;
  std::string payload_;
};

TEST_F(InterruptedScan, PreliminaryScanMeanwhileIsAnsweredForItsDocumentAndTheScanForItsOwn) {
  const ScriptedDialog dialog(generateCopy, style_);
  duringModalLoop() = [&] { deliver("PRSQ", preliminaryScan(9)); };
  deliver("SCNQ", finalScan(7));
  ASSERT_THAT(eventsSent(), ElementsAre("PRSR", "SCNR"));
  EXPECT_EQ(formats::decodeCitationResolution(payloadSent(0))->documentID, 9u);
  EXPECT_EQ(scanReplySent(1).documentID, 7u);
  // As if one had come after the other.
  EXPECT_EQ(documentID(), 9u);
}

TEST_F(InterruptedScan, LiveBibliographyMeanwhileGetsItsOwnAndGivesTheScanNone) {
  const ScriptedDialog dialog(generateCopy, style_);
  Answer live;
  duringModalLoop() = [&] { live = deliver("LVBQ", liveBibliography(true), true); };
  deliver("SCNQ", finalScan(7));
  const std::string payload = live.directObject().value_or("");
  const auto reply = formats::decodeScanReply(payload);
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->documentID, 0u);
  EXPECT_TRUE(reply->bibliography);
  ASSERT_THAT(eventsSent(), ElementsAre("SCNR"));
  EXPECT_EQ(scanReplySent(0).documentID, 7u);
  EXPECT_FALSE(scanReplySent(0).bibliography);
  EXPECT_TRUE(generatesBibliography());
  EXPECT_EQ(documentID(), 0u);
}

TEST_F(InterruptedScan, WishForABibliographyIsKeptFromOneEventMeanwhileToTheNext) {
  const ScriptedDialog dialog(generateCopy, style_);
  Answer second;
  duringModalLoop() = [&] {
    deliver("LVBQ", liveBibliography(true), true);
    second = deliver("LVBQ", liveBibliography(false), true);
  };
  deliver("SCNQ", finalScan(7));
  const std::string payload = second.directObject().value_or("");
  const auto reply = formats::decodeScanReply(payload);
  ASSERT_TRUE(reply);
  EXPECT_TRUE(reply->bibliography);
}

TEST_F(InterruptedScan, SecondScanMeanwhileOpensNoDialogAndIsCancelledForItsDocument) {
  for (const char *style : {"", "APA"}) {
    carrier_.sent.clear();
    calls().clear();
    const ScriptedDialog dialog(generateCopy, style_);
    duringModalLoop() = [&] { deliver("SCNQ", finalScan(9, style)); };
    deliver("SCNQ", finalScan(7));
    ASSERT_THAT(eventsSent(), ElementsAre("Rmcr", "SCNR"));
    EXPECT_EQ(payloadSent(0), "\0\0\0\0\0\11"s);
    EXPECT_EQ(scanReplySent(1).documentID, 7u);
    EXPECT_THAT(callsOf({"openDialog"}), ElementsAre("openDialog"));
  }
}

TEST_F(InterruptedScan, DialogOpensAgainForTheNextScan) {
  const ScriptedDialog dialog(noAction, style_);
  deliver("SCNQ", finalScan(7));
  deliver("SCNQ", finalScan(9));
  EXPECT_THAT(callsOf({"openDialog"}), ElementsAre("openDialog", "openDialog"));
  duringModalLoop() = [] { throw 42; };
  deliver("SCNQ", finalScan(7));
  duringModalLoop() = {};
  calls().clear();
  deliver("SCNQ", finalScan(9));
  EXPECT_THAT(callsOf({"openDialog"}), ElementsAre("openDialog"));
}

TEST_F(InterruptedScan, CancelOfTheScanNamesItsOwnDocument) {
  const ScriptedDialog dialog(noAction, style_);
  duringModalLoop() = [&] { deliver("PRSQ", preliminaryScan(9)); };
  deliver("SCNQ", finalScan(7));
  ASSERT_THAT(eventsSent(), ElementsAre("PRSR", "Rmcr"));
  EXPECT_EQ(payloadSent(1), "\0\0\0\0\0\7"s);
}

TEST_F(InterruptedScan, CancelAfterAnExceptionNamesItsOwnDocument) {
  const ScriptedDialog dialog(generateCopy, style_);
  duringModalLoop() = [&] {
    deliver("PRSQ", preliminaryScan(9));
    throw 42;
  };
  deliver("SCNQ", finalScan(7));
  ASSERT_THAT(eventsSent(), ElementsAre("PRSR", "Rmcr"));
  EXPECT_EQ(payloadSent(1), "\0\0\0\0\0\7"s);
  EXPECT_EQ(documentID(), 9u);
}

TEST_F(InterruptedScan, EventsWithoutADocumentAreServedMeanwhile) {
  const ScriptedDialog dialog(generateCopy, style_);
  host_->selection = {{"a", "A"}};
  duringModalLoop() = [&] {
    deliver("FIND", ""s);
    deliver("IMHR", ""s);
    deliver("FNDN", "a\0"s);
  };
  deliver("SCNQ", finalScan(7));
  EXPECT_THAT(eventsSent(), ElementsAre("cite", "PREF", "SCNR"));
  EXPECT_THAT(callsOf({"editor", "displayEditor"}).size(), 1u);
  EXPECT_EQ(documentID(), 7u);
}

// A host may run a modal loop of its own inside of a call, for an alert.
TEST_F(InterruptedScan, EventsDuringACallToTheHostChangeNothingForTheScan) {
  bool isFirst = true;
  hostScript().split = [&](NSString *group) {
    if (std::exchange(isFirst, false)) {
      deliver("PRSQ", preliminaryScan(9));
      deliver("LVBQ", liveBibliography(true), true);
    }
    return [group componentsSeparatedByString:@";"];
  };
  deliver("SCNQ", finalScan(7, "APA"));
  ASSERT_THAT(eventsSent(), ElementsAre("PRSR", "SCNR"));
  EXPECT_EQ(scanReplySent(1).documentID, 7u);
  EXPECT_FALSE(scanReplySent(1).bibliography);
}

}  // namespace
}  // namespace plugin_test
