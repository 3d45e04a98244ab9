// A scan of a long document does not pile up what the host makes for each citation: every loop over
// the citations lets go of temporary objects while it runs.

#import "Support/AgentTest.h"

#include <Formats/ScanRequest.h>

namespace {
int livingObjects = 0;
int mostLivingObjects = 0;
}  // namespace

// Autoreleased once for each question; how many live at the same time is what the tests look at.
@interface CountedObject : NSObject
@end

@implementation CountedObject
- (id)init {
  self = [super init];
  mostLivingObjects = std::max(mostLivingObjects, ++livingObjects);
  return self;
}
- (void)dealloc {
  --livingObjects;
  [super dealloc];
}
@end

// An array of any length whose every element is made when it is asked for.
@interface CountingArray : NSArray
@end

@implementation CountingArray
- (id)init {
  return self;
}
- (NSUInteger)count {
  return 500;
}
- (id)objectAtIndex:(NSUInteger)__attribute__((unused)) index {
  [[[CountedObject alloc] init] autorelease];
  return @"x";
}
@end

namespace plugin_test {
namespace {

constexpr int citations = 500;
// A pool serves several turns of a loop.
constexpr int fewObjects = 50;

void makeTemporaryObject() { [[[CountedObject alloc] init] autorelease]; }

NSSet *makeTemporaryObjectAndMatchNothing(id, SEL, NSString *, id) {
  makeTemporaryObject();
  return nil;
}

class TemporaryObjects : public AgentTest {
 protected:
  TemporaryObjects() {
    livingObjects = 0;
    mostLivingObjects = 0;
    [host_ addStyle:"APA"];
  }

  void scan() {
    deliver("SCNQ", formats::encodeFinalScanRequest(7, false, "APA", citations_));
    EXPECT_THAT(eventsSent(), testing::ElementsAre("SCNR"));
  }

  void expectFewAtATime() {
    EXPECT_GT(mostLivingObjects, 0);
    EXPECT_LE(mostLivingObjects, fewObjects);
    EXPECT_EQ(livingObjects, 0) << "some outlived the event";
  }

  const std::vector<formats::CitationPair> citations_{citations, formats::CitationPair{"a", ""}};
};

TEST_F(TemporaryObjects, OfSplittingGroupsAreFreedWhileTheDocumentIsParsed) {
  hostScript().split = [](NSString *) {
    makeTemporaryObject();
    return (NSArray *)[NSArray array];
  };
  scan();
  expectFewAtATime();
}

TEST_F(TemporaryObjects, OfFormattingGroupsAreFreedWhileTheDocumentIsFormatted) {
  hostScript().formatGroup = [](NSArray *) {
    makeTemporaryObject();
    return (NSAttributedString *)nil;
  };
  scan();
  expectFewAtATime();
}

TEST_F(TemporaryObjects, OfPidginRTFAreFreedWhileItIsMeasuredAndWhileItIsWritten) {
  hostScript().pidginRTF = [](NSAttributedString *) {
    makeTemporaryObject();
    return (NSString *)@"x";
  };
  scan();
  expectFewAtATime();
}

TEST_F(TemporaryObjects, OfLookingUpCitationsAreFreedDuringAPreliminaryScan) {
  const ReplacedMethod match([RecordingHost class], @selector(referencesMatchingTag:inLibrary:),
                             asMethod(makeTemporaryObjectAndMatchNothing));
  deliver("PRSQ", formats::encodePreliminaryScanRequest(7, citations_));
  EXPECT_THAT(eventsSent(), testing::ElementsAre("PRSR"));
  expectFewAtATime();
}

TEST_F(TemporaryObjects, OfLookingUpTheManyPartsOfOneCitationAreFreedAsWell) {
  const ReplacedMethod match([RecordingHost class], @selector(referencesMatchingTag:inLibrary:),
                             asMethod(makeTemporaryObjectAndMatchNothing));
  deliver("PRSQ", formats::encodePreliminaryScanRequest(
                      7, std::vector<formats::CitationPair>{{std::string(citations, ';'), ""}}));
  EXPECT_THAT(eventsSent(), testing::ElementsAre("PRSR"));
  expectFewAtATime();
}

TEST_F(TemporaryObjects, OfWritingRecordsAreFreedWhileTheAnswerIsWritten) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  CountingArray *array = [[[CountingArray alloc] init] autorelease];
  std::vector<char> buffer(10);
  formats::PayloadWriter writer(buffer);
  [agent_ assembleCitationResolutionBuffer:writer citationArray:array xmlArray:array];
  [pool drain];
  expectFewAtATime();
}

// The notices of an unmatched citation and of an ambiguous one carry the host's attributes.
NSDictionary *countedAttributes(id, SEL) {
  return [NSDictionary dictionaryWithObject:[[[CountedObject alloc] init] autorelease]
                                     forKey:@"Counted"];
}

TEST_F(TemporaryObjects, OfANoticeAreFreedWithIt) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  {
    const ReplacedMethod attributes([RecordingHost class], @selector(subtitleTextAttributes),
                                    asMethod(countedAttributes));
    NSMutableAttributedString *summary = [[[NSMutableAttributedString alloc] init] autorelease];
    [agent_ appendNotFoundNoticeToSummary:summary atIndex:1 forTag:@"a"];
    EXPECT_EQ(livingObjects, 1);
  }
  [pool drain];
  EXPECT_EQ(livingObjects, 0);
}

}  // namespace
}  // namespace plugin_test
