// Requests that ask for more than a host should give: refused as a whole, told in the log and to
// Mellel, and nothing of them left behind.

#import "Support/AgentTest.h"

#include <Formats/CitationResolution.h>
#include <Formats/RequestLimits.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>

namespace plugin_test {
namespace {

using formats::longestText;
using formats::mostCitations;
using testing::ElementsAre;
using testing::HasSubstr;
using namespace std::string_literals;

const std::string cancelOfDocument7 = "\0\0\0\0\0\7"s;

class RequestLimits : public AgentTest {
 protected:
  RequestLimits() { [host_ addStyle:"APA"]; }

  static std::string preliminary(std::vector<formats::CitationPair> citations) {
    return formats::encodePreliminaryScanRequest(7, citations);
  }
  static std::string final(std::vector<formats::CitationPair> citations) {
    return formats::encodeFinalScanRequest(7, true, "APA", citations);
  }

  void expectRefused(const char (&eventID)[5], const std::string &payload, const std::string &line,
                     const std::string &cancel = cancelOfDocument7) {
    const Answer answer = deliver(eventID, payload, true);
    EXPECT_EQ(answer.status, noErr);
    EXPECT_FALSE(answer.directObject());
    EXPECT_THAT(calls(), ElementsAre("send Rmcr", "activate"));
    EXPECT_EQ(payloadSent(), cancel);
    EXPECT_THAT(log_->lines(), ElementsAre(HasSubstr(line)));
    // Whoever was refused asked for nothing.
    EXPECT_FALSE(generatesBibliography());
  }
};

TEST_F(RequestLimits, ALongestCitationIsAnsweredAndALongerOneRefused) {
  const std::string longest(longestText, 'a');
  deliver("PRSQ", preliminary({{longest, ""}}));
  deliver("SCNQ", final({{longest, ""}}));
  EXPECT_THAT(eventsSent(), ElementsAre("PRSR", "SCNR"));
  EXPECT_TRUE(deliver("LVBQ", final({{longest, ""}}), true).directObject());
}

TEST_F(RequestLimits, ATooLongCitationRefusesAPreliminaryScan) {
  expectRefused(
      "PRSQ", preliminary({{std::string(longestText + 1, 'a'), ""}}),
      "KorvoMellelAgent.handlePreliminaryScanEvent: the request is refused: a citation or "
      "the style's name in it has more than 65536 bytes");
}

TEST_F(RequestLimits, ATooLongCitationRefusesAFinalScan) {
  expectRefused("SCNQ", final({{"a", ""}, {"", std::string(longestText + 1, 'a')}}),
                "KorvoMellelAgent.handleFinalScanEvent: the request is refused: a citation or ");
}

TEST_F(RequestLimits, ATooLongCitationRefusesALiveBibliography) {
  expectRefused(
      "LVBQ", final({{std::string(longestText + 1, 'a'), ""}}),
      "KorvoMellelAgent.handleCreateBibliographyEvent: the request is refused: ", "\0\0\0\0\0\0"s);
}

TEST_F(RequestLimits, AsManyCitationsAsThereMayBeAreAnswered) {
  const std::vector<formats::CitationPair> citations(mostCitations);
  deliver("PRSQ", preliminary(citations));
  const std::string payload = payloadSent();
  const auto resolution = formats::decodeCitationResolution(payload);
  ASSERT_TRUE(resolution) << resolution.error();
  EXPECT_EQ(resolution->citations.size(), mostCitations);
}

TEST_F(RequestLimits, OneCitationMoreIsRefused) {
  const std::vector<formats::CitationPair> citations(mostCitations + 1);
  expectRefused("PRSQ", preliminary(citations), "it has more than 1048576 citations");
}

TEST_F(RequestLimits, OnePartOfAGroupMoreIsRefused) {
  std::vector<formats::CitationPair> citations(mostCitations - 2);
  citations.push_back({"a;b;c", ""});
  expectRefused("SCNQ", final(citations), "it has more than 1048576 citations");
}

TEST_F(RequestLimits, MoreBytesAreRefused) {
  std::string payload = preliminary({{"a", ""}});
  // The second text of the pair, which is not looked at.
  payload.pop_back();
  payload.resize(formats::largestRequest, 'b');
  deliver("PRSQ", payload);
  EXPECT_THAT(eventsSent(), ElementsAre("PRSR"));
  calls() = std::vector<std::string>();
  carrier_.sent.clear();
  payload += 'b';
  expectRefused("PRSQ", payload, "it has more than 134217728 bytes");
}

TEST_F(RequestLimits, ALookupOfALongestCitationIsMadeAndOneOfALongerIsNot) {
  deliver("FNDN", std::string(longestText, 'a'));
  EXPECT_THAT(callsOf({"match"}), testing::SizeIs(1));
  calls() = std::vector<std::string>();
  deliver("FNDN", std::string(longestText + 1, 'a'));
  EXPECT_THAT(calls(), ElementsAre("activate"));
  EXPECT_THAT(log_->lines(),
              testing::Contains(HasSubstr("handleFindCitationEvent: the request is refused")));
}

TEST_F(RequestLimits, TheNextRequestIsAnsweredAsIfNothingHadBeen) {
  deliver("SCNQ", final({{std::string(longestText + 1, 'a'), ""}}));
  deliver("SCNQ", formats::encodeFinalScanRequest(8, false, "APA",
                                                  std::vector<formats::CitationPair>{{"a", ""}}));
  EXPECT_THAT(eventsSent(), ElementsAre("Rmcr", "SCNR"));
  const std::string payload = payloadSent(1);
  const auto reply = formats::decodeScanReply(payload);
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->documentID, 8U);
  EXPECT_FALSE(reply->bibliography);
}

}  // namespace
}  // namespace plugin_test
