// Who keeps what, and for how long: nothing of the host's is kept once the plug-in is done with it,
// and nothing goes while it is still needed.

#import "Support/AgentTest.h"
#import "Support/ScanControllerInside.h"

#include <Formats/ScanRequest.h>
#include <Platform/CatchObjectiveCException.h>
#include <Tests/Support/LiveBytes.h>

// A menu that holds one title, and is its own item.
@interface OneTitle : NSObject {
 @public
  NSString *title;
}
@end

@implementation OneTitle
- (id)selectedItem {
  return self;
}
- (NSString *)title {
  return title;
}
@end

static int endedObjects = 0;

@interface CountedEnd : NSObject
@end

@implementation CountedEnd
- (void)dealloc {
  ++endedObjects;
  [super dealloc];
}
@end

namespace plugin_test {
namespace {

class Ownership : public AgentTest {
 protected:
  KOMellelScanController *newController() {
    return [[NSClassFromString(@"KOMellelScanController") alloc] initWithAdapter:host_];
  }
};

TEST_F(Ownership, DialogKeepsTheAdapterAsLongAsItLives) {
  const NSUInteger before = [host_ retainCount];
  KOMellelScanController *controller = newController();
  EXPECT_EQ([host_ retainCount], before + 1);
  [controller setAdapter:host_];
  EXPECT_EQ([host_ retainCount], before + 1);
  [controller release];
  EXPECT_EQ([host_ retainCount], before);
}

TEST_F(Ownership, DialogThatIsLetGoIsGone) { EXPECT_TRUE(endsWithItsRelease(newController())); }

// It may be the only one that still keeps it.
TEST_F(Ownership, WhatIsSetAgainIsNotLetGoInBetween) {
  KOMellelScanController *controller = [newController() autorelease];
  const std::pair<id, SEL> setters[] = {
      {agentClass_, @selector(setAdapter:)},
      {controller, @selector(setAdapter:)},
      {controller, @selector(setFormatSelectorPopUpButton:)},
      {controller, @selector(setGenerateCopyWithBibInStyleButton:)}};
  for (const auto &[receiver, setter] : setters) {
    endedObjects = 0;
    CountedEnd *object = [[CountedEnd alloc] init];
    [receiver performSelector:setter withObject:object];
    [object release];
    [receiver performSelector:setter withObject:object];
    ASSERT_EQ(endedObjects, 0);
    [receiver performSelector:setter withObject:nil];
    EXPECT_EQ(endedObjects, 1);
  }
}

TEST_F(Ownership, DialogKeepsItsMenuAndItsButtonUntilItGetsOthers) {
  for (const SEL setter : {
         @selector(setFormatSelectorPopUpButton:), @selector(setGenerateCopyWithBibInStyleButton:)
       }) {
    NSObject *first = [[NSObject alloc] init];
    NSObject *second = [[NSObject alloc] init];
    KOMellelScanController *controller = newController();
    [controller performSelector:setter withObject:first];
    [controller performSelector:setter withObject:first];
    EXPECT_EQ([first retainCount], 2u);
    [controller performSelector:setter withObject:second];
    EXPECT_EQ([first retainCount], 1u);
    EXPECT_EQ([second retainCount], 2u);
    [controller release];
    EXPECT_EQ([second retainCount], 1u);
    [first release];
    [second release];
  }
}

TEST_F(Ownership, DialogKeepsTheSelectedStyleUntilAnotherIsSelected) {
  RecordingStyle *first = [host_ addStyle:"first"];
  RecordingStyle *second = [host_ addStyle:"second"];
  const NSUInteger firstBefore = [first retainCount];
  const NSUInteger secondBefore = [second retainCount];
  OneTitle *menu = [[[OneTitle alloc] init] autorelease];
  KOMellelScanController *controller = newController();
  [controller setFormatSelectorPopUpButton:menu];
  menu->title = @"first";
  [controller formatSelectionChanged:nil];
  [controller formatSelectionChanged:nil];
  EXPECT_EQ([controller selectedBibStyle], first);
  EXPECT_EQ([first retainCount], firstBefore + 1);
  menu->title = @"second";
  [controller formatSelectionChanged:nil];
  EXPECT_EQ([first retainCount], firstBefore);
  EXPECT_EQ([second retainCount], secondBefore + 1);
  [controller release];
  EXPECT_EQ([second retainCount], secondBefore);
}

const std::vector<formats::CitationPair> twoCitations = {{"first", ""}, {"second", ""}};

// Keeps a request's citations, as an agent's method gets them, beyond the event.
NSArray *keptCitations = nil;
void keepCitations(id, SEL, NSArray *citations) { keptCitations = [citations retain]; }

TEST_F(Ownership, CitationsOfARequestKeepItsPayloadAndLetItGoWithThemselves) {
  NSData *payload = nil;
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  {
    const ReplacedMethod report(agentClass_, @selector(reportCitationResolution:),
                                asMethod(keepCitations));
    deliver("PRSQ", formats::encodePreliminaryScanRequest(7, twoCitations));
  }
  ASSERT_EQ([keptCitations count], 2u);
  payload = [object_getIvar(keptCitations,
                            class_getInstanceVariable([keptCitations class], "payload")) retain];
  [pool drain];
  EXPECT_EQ([keptCitations retainCount], 1u);
  EXPECT_EQ([payload retainCount], 2u);
  pool = [[NSAutoreleasePool alloc] init];
  EXPECT_EQ(str([keptCitations objectAtIndex:1]), "second");
  [pool drain];
  EXPECT_TRUE(endsWithItsRelease(keptCitations));
  EXPECT_EQ([payload retainCount], 1u);
  [payload release];
}

TEST_F(Ownership, CitationsOfARequestEndWithTheLast) {
  const ReplacedMethod report(agentClass_, @selector(reportCitationResolution:),
                              asMethod(keepCitations));
  deliver("PRSQ", formats::encodePreliminaryScanRequest(7, twoCitations));
  NSException *raised =
      KorvoCatchObjectiveCException([](void *) { [keptCitations objectAtIndex:2]; }, nullptr);
  EXPECT_EQ(str([raised name]), str(NSRangeException));
  [keptCitations release];
}

// The same of the records that answer them.
NSArray *keptRecords = nil;
int64_t keepRecords(id, SEL, formats::PayloadWriter &, NSArray *, NSArray *records) {
  keptRecords = [records retain];
  return 0;
}

TEST_F(Ownership, RecordsOfAnAnswerAreAsManyAsTheCitationsAndEndWithTheAnswer) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  {
    const ReplacedMethod assemble(
        agentClass_, @selector(assembleCitationResolutionBuffer:citationArray:xmlArray:),
        asMethod(keepRecords));
    deliver("PRSQ", formats::encodePreliminaryScanRequest(7, twoCitations));
  }
  EXPECT_EQ([keptRecords count], 2u);
  EXPECT_NE(str([keptRecords objectAtIndex:1]).find("<korvo>second</korvo>"), std::string::npos);
  NSException *raised =
      KorvoCatchObjectiveCException([](void *) { [keptRecords objectAtIndex:2]; }, nullptr);
  EXPECT_EQ(str([raised name]), str(NSRangeException));
  [pool drain];
  EXPECT_TRUE(endsWithItsRelease(keptRecords));
}

TEST_F(Ownership, OutgoingBytesAreGivenBackOnceTheyAreSent) {
  const std::string citation(50'000, 'a');
  const std::vector<formats::CitationPair> pairs(20, {citation, ""});
  const std::string request = formats::encodePreliminaryScanRequest(7, pairs);
  std::size_t before = 0;
  for (int turn = 0; turn < 6; ++turn) {
    NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
    deliver("PRSQ", request);
    ASSERT_THAT(eventsSent(), testing::ElementsAre("PRSR"));
    [pool drain];
    carrier_.sent.clear();
    carrier_.sent.shrink_to_fit();
    calls().clear();
    calls().shrink_to_fit();
    if (turn == 0) {
      before = test_support::liveBytes();
    }
  }
  EXPECT_LT(test_support::liveBytes(), before + 1'000'000);
}

}  // namespace
}  // namespace plugin_test
