// A style sees the citations of a document in their order, at each of its three questions: the
// numbers of a numeric style, "ibid." and the order of the bibliography depend on it.

#import "Support/AgentTest.h"

#include <Formats/ScanRequest.h>

// Notes the search strings of the citations that it is asked about.
@interface OrderNotingStyle : RecordingStyle
@end

namespace plugin_test {
namespace {

using testing::ElementsAre;

std::string searchStrings(NSArray *citations) {
  std::string text;
  for (NSUInteger index = 0; index < [citations count]; ++index) {
    RecordingCitation *citation = [citations objectAtIndex:index];
    text += " " + citation->options["SearchString"];
  }
  return text;
}

class CitationOrder : public AgentTest {
 protected:
  CitationOrder() {
    OrderNotingStyle *style = [[OrderNotingStyle alloc] init];
    style->styleName = "APA";
    style->bibliographyRTF = "{\\rtf1 works}";
    host_->styles["APA"] = style;
  }

  const std::vector<formats::CitationPair> citations_ = {{"c;a", ""}, {" ", ""}, {"b", ""}};
};

TEST_F(CitationOrder, OfTheDocumentIsKeptByAFinalScan) {
  deliver("SCNQ", formats::encodeFinalScanRequest(7, true, "APA", citations_));
  EXPECT_THAT(callsOf({"ordered"}),
              ElementsAre("ordered properties c a b", "ordered group c a", "ordered group",
                          "ordered group b", "ordered bibliography c a b"));
}

TEST_F(CitationOrder, OfTheDocumentIsKeptByALiveBibliography) {
  deliver("LVBQ", formats::encodeLiveBibliographyRequest(7, true, "APA", citations_), true);
  EXPECT_THAT(callsOf({"ordered"}),
              ElementsAre("ordered properties c a b", "ordered group c a", "ordered group",
                          "ordered group b", "ordered bibliography c a b"));
}

}  // namespace
}  // namespace plugin_test

@implementation OrderNotingStyle
- (void)setPropertiesInCitationArray:(NSArray *)citationArray {
  plugin_test::logCall("ordered properties" + plugin_test::searchStrings(citationArray));
}
- (NSAttributedString *)attributedBibliographyStringForCitationArray:(NSArray *)citationArray
                                                          attributes:
                                                              (NSMutableDictionary *)attributes {
  plugin_test::logCall("ordered bibliography" + plugin_test::searchStrings(citationArray));
  return [super attributedBibliographyStringForCitationArray:citationArray attributes:attributes];
}
- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citationArray {
  plugin_test::logCall("ordered group" + plugin_test::searchStrings(citationArray));
  return [super attributedGroupStringForCitationArray:citationArray];
}
@end
