// What the user reads, in the language of the environment: CTest runs these tests once for each.
// KORVO_LANGUAGE names the folder in the bundle that it has to come from.

#import "Support/DialogTest.h"

#import <KorvoMellelAgent+Private.h>

#include <cstdlib>
#include <iterator>

namespace plugin_test {
namespace {

class Languages : public DialogTest {
 protected:
  static NSDictionary *texts(NSString *table) {
    const char *language = std::getenv("KORVO_LANGUAGE");
    return [NSDictionary
        dictionaryWithContentsOfFile:[NSString stringWithFormat:@"%s/Resources/%s.lproj/%@.strings",
                                                                PLUGIN_BUNDLE,
                                                                language ? language : "en", table]];
  }
};

TEST_F(Languages, DialogIsShownInTheUsersAndHasRoomForIt) {
  offer({"American Psychological Association 7th edition"});
  open();
  NSDictionary *expected = texts(@"ScanDialog");
  const auto text = [&](NSString *english) { return str([expected objectForKey:english]); };
  EXPECT_EQ(str([window() title]), text(@"Format Citations for Mellel"));
  EXPECT_EQ(str([button() title]), text(@"Generate Formatted Copy"));
  EXPECT_EQ(str([label() stringValue]),
            text(@"Format the citations and the bibliography in this style:"));
  EXPECT_EQ(selectedTitle(), "American Psychological Association 7th edition");
  expectRoomForEverything();
}

// The English texts as other tests see the plug-in use them: a table has each by exactly that key.
TEST_F(Languages, NoticesAreInTheUsers) {
  NSString *const keys[] = {
      @"Mellel Refresh Issues",
      @"Citation %d %@: No matches were found.",
      @"This problem is often due to having the wrong library (or no library) selected in the "
      @"Korvo main window.  Select the library to which this reference belongs, and try the scan "
      @"again.",
      @"Citation %d %@: %d matches were found.",
      @"Reconcile any discrepancies by assigning a unique \"Citation identifier\" field to the "
      @"Korvo reference. Then re-insert this reference into the Mellel document.",
      @"Notice for Mellel Users",
      @"One or more of the selected Korvo references has neither a \"Citation identifier\" field "
      @"nor sufficient information (author,year) to create one.",
      @"Please select one or more references in your Korvo collections before attempting to insert "
      @"into Mellel."};
  NSDictionary *expected = texts(@"Plugin");
  EXPECT_EQ([expected count], std::size(keys));
  KorvoMellelAgent *agent = [NSClassFromString(@"KorvoMellelAgent") defaultInstance];
  for (NSString *key : keys) {
    ASSERT_NE([expected objectForKey:key], nil) << str(key);
    EXPECT_EQ(str([agent localizedText:key]), str([expected objectForKey:key]));
  }
}

}  // namespace
}  // namespace plugin_test
