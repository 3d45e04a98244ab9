// What the user reads, in the language of the environment: CTest runs these tests once for each.
// KORVO_LANGUAGE names the folder in the bundle that it has to come from.

#import "Support/DialogTest.h"

#import <KorvoMellelAgent+Private.h>

#include <cstdlib>

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

TEST_F(Languages, NoticesAreInTheUsers) {
  NSDictionary *expected = texts(@"Plugin");
  ASSERT_EQ([expected count], 8u);
  KorvoMellelAgent *agent = [NSClassFromString(@"KorvoMellelAgent") defaultInstance];
  NSEnumerator *keys = [expected keyEnumerator];
  while (NSString *key = [keys nextObject]) {
    EXPECT_EQ(str([agent localizedText:key]), str([expected objectForKey:key]));
  }
}

}  // namespace
}  // namespace plugin_test
