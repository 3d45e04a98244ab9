// What a request leaves behind for the next one: the document and the wish for a bibliography.

#import "Support/AgentTest.h"

#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>

namespace plugin_test {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

constexpr bool wanted = true;
constexpr bool notWanted = false;

class RequestAfterRequest : public AgentTest {
 protected:
  RequestAfterRequest() { [host_ addStyle:"APA"]->bibliographyRTF = "{\\rtf1 works}"; }

  void finalScan(uint32_t documentID, bool wantsBibliography) {
    deliver("SCNQ",
            formats::encodeFinalScanRequest(documentID, wantsBibliography, "APA", noCitations_));
  }
  std::string liveBibliography(uint32_t documentID, bool wantsBibliography) {
    return deliver("LVBQ",
                   formats::encodeLiveBibliographyRequest(documentID, wantsBibliography, "APA",
                                                          noCitations_),
                   true)
        .directObject()
        .value_or("");
  }
  static bool hasBibliography(const std::string &payload) {
    const auto reply = formats::decodeScanReply(payload);
    EXPECT_TRUE(reply) << reply.error();
    return reply && reply->bibliography.has_value();
  }

  const std::vector<formats::CitationPair> noCitations_;
};

TEST_F(RequestAfterRequest, LiveBibliographyKeepsTheWishOfAFinalScan) {
  finalScan(7, wanted);
  EXPECT_TRUE(hasBibliography(liveBibliography(7, notWanted)));
  EXPECT_TRUE(generatesBibliography());
  finalScan(7, notWanted);
  EXPECT_TRUE(hasBibliography(payloadSent(1)));
}

TEST_F(RequestAfterRequest, FinalScanKeepsTheWishOfALiveBibliography) {
  liveBibliography(7, wanted);
  finalScan(7, notWanted);
  EXPECT_TRUE(hasBibliography(payloadSent()));
}

TEST_F(RequestAfterRequest, PreliminaryScanKeepsTheWishOfAFinalScan) {
  finalScan(7, wanted);
  deliver("PRSQ", formats::encodePreliminaryScanRequest(7, noCitations_));
  finalScan(7, notWanted);
  EXPECT_TRUE(hasBibliography(payloadSent(2)));
}

TEST_F(RequestAfterRequest, WishOutlivesTheScanThatTheUserBrokeOff) {
  {
    const ScriptedDialog closedByTheUser(0, nil);
    deliver("SCNQ", formats::encodeFinalScanRequest(7, wanted, "", noCitations_));
  }
  finalScan(7, notWanted);
  EXPECT_THAT(eventsSent(), ElementsAre("Rmcr", "SCNR"));
  EXPECT_TRUE(hasBibliography(payloadSent(1)));
}

TEST_F(RequestAfterRequest, LiveBibliographyForgetsTheDocumentOfTheScanBefore) {
  finalScan(0x01020304, notWanted);
  EXPECT_EQ(documentID(), 0x01020304u);
  EXPECT_EQ(liveBibliography(0x05060708, notWanted).substr(0, 6), "\0\0\0\0\0\0"s);
  EXPECT_EQ(documentID(), 0u);
  // So a cancel that follows is about no document either.
  deliver("SCNQ", std::nullopt);
  EXPECT_THAT(eventsSent(), ElementsAre("SCNR", "Rmcr"));
  EXPECT_EQ(payloadSent(1), "\0\0\0\0\0\0"s);
}

TEST_F(RequestAfterRequest, EachScanIsAboutItsOwnDocument) {
  deliver("PRSQ", formats::encodePreliminaryScanRequest(1, noCitations_));
  finalScan(2, notWanted);
  deliver("PRSQ", formats::encodePreliminaryScanRequest(3, noCitations_));
  EXPECT_EQ(payloadSent(0).substr(2, 4), "\0\0\0\1"s);
  EXPECT_EQ(payloadSent(1).substr(2, 4), "\0\0\0\2"s);
  EXPECT_EQ(payloadSent(2).substr(2, 4), "\0\0\0\3"s);
  EXPECT_EQ(documentID(), 3u);
}

}  // namespace
}  // namespace plugin_test
