// The scan dialog as a user meets it: the real nib in a real window, with real clicks and keys.
//
// The program runs on a desktop of its own (see its main function), where no window manager draws
// title bars: GNUstep draws them itself.

#import "Support/DialogTest.h"
#import "Support/ReplacedMethod.h"
#import "Support/ScriptedUser.h"

#include <Formats/EventTable.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Tests/Support/CallLog.h>
#include <Tests/Support/RecordingCarrier.h>

#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#import <KOMellelScanController.h>
#import <KorvoMellelAgent+Private.h>

#include <optional>
#include <string>
#include <vector>

// Refuses what macOS refuses and GNUstep passes over.
@interface StrictMenu : NSPopUpButton
@end

@implementation StrictMenu
- (void)selectItemAtIndex:(NSInteger)index {
  if (index >= [self numberOfItems]) {
    [NSException raise:NSRangeException format:@"There is no item %ld", static_cast<long>(index)];
  }
  [super selectItemAtIndex:index];
}
@end

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ScanDialog : public DialogTest {};

TEST_F(ScanDialog, FavoritesStandInTheMenuInTheHostsOrder) {
  offer({"Vancouver", "APA", "IEEE"});
  open();
  EXPECT_EQ([[menu() itemTitles] count], 3u);
  EXPECT_EQ(str([[menu() itemTitles] componentsJoinedByString:@","]), "Vancouver,APA,IEEE");
  EXPECT_EQ([controller_ chosenAction], -1);
}

TEST_F(ScanDialog, WithoutStoredStyleTheFirstIsSelectedAndStored) {
  offer({"APA", "IEEE"});
  open();
  EXPECT_EQ(selectedTitle(), "APA");
  EXPECT_EQ(selectedStyle(), "APA");
  EXPECT_EQ(lastStyle(), "APA");
}

TEST_F(ScanDialog, StoredStyleIsSelectedAgain) {
  offer({"APA", "IEEE", "Nature"});
  setLastStyle(@"Nature");
  open();
  EXPECT_EQ(selectedTitle(), "Nature");
  EXPECT_EQ(selectedStyle(), "Nature");
  EXPECT_EQ(lastStyle(), "Nature");
}

TEST_F(ScanDialog, StoredStyleThatIsNoFavoriteAnyMoreGivesWayToTheFirst) {
  offer({"APA", "IEEE"});
  setLastStyle(@"Gone");
  open();
  EXPECT_EQ(selectedTitle(), "APA");
  EXPECT_EQ(lastStyle(), "APA");
}

TEST_F(ScanDialog, StoredValueThatIsNoStringIsNoStyle) {
  offer({"APA"});
  setLastStyle([NSArray arrayWithObject:@"x"]);
  open();
  EXPECT_EQ(selectedTitle(), "APA");
  EXPECT_EQ(lastStyle(), "APA");
}

NSArray *raiseForFavorites(id, SEL) {
  [NSException raise:@"HostException" format:@"no favorites"];
  return nil;
}

id raiseForStyle(id, SEL, NSString *) {
  [NSException raise:@"HostException" format:@"no style"];
  return nil;
}

// GNUstep's loader of nibs ends exceptions by itself.
TEST_F(ScanDialog, WhatTheHostThrowsWhileItOpensReachesTheCaller) {
  offer({"APA"});
  {
    const ReplacedMethod favorites([RecordingHost class], @selector(favoriteBibStyleNames),
                                   asMethod(raiseForFavorites));
    EXPECT_EQ(thrownByOpening(), "no favorites");
  }
  {
    const ReplacedMethod style([RecordingHost class], @selector(bibStyleNamed:),
                               asMethod(raiseForStyle));
    EXPECT_EQ(thrownByOpening(), "no style");
  }
  open();
  EXPECT_EQ(selectedStyle(), "APA");
}

TEST_F(ScanDialog, NoFavoritesSelectNothingStoreNothingAndTheButtonDoesNothing) {
  // First nil, then an empty array.
  for (int turn = 0; turn < 2; ++turn) {
    host_->favorites = turn == 0 ? nil : [NSArray array];
    open();
    EXPECT_EQ([menu() numberOfItems], 0);
    EXPECT_EQ(selectedStyle(), "(nil)");
    EXPECT_EQ(lastStyle(), "(nil)");
    [controller_ buttonClicked:button()];
    [controller_ formatSelectionChanged:menu()];
    EXPECT_EQ([controller_ chosenAction], -1);
    EXPECT_EQ(lastStyle(), "(nil)");
    EXPECT_THAT(log_->lines(), IsEmpty());
    [window() close];
  }
}

TEST_F(ScanDialog, MenuThatHasBecomeEmptyChangesNeitherStyleNorWhatIsStored) {
  offer({"APA"});
  open();
  [menu() removeAllItems];
  [controller_ formatSelectionChanged:menu()];
  EXPECT_EQ(selectedStyle(), "APA");
  EXPECT_EQ(lastStyle(), "APA");
}

TEST_F(ScanDialog, OddElementsAmongTheFavoritesAreLeftOut) {
  [host_ addStyle:"APA"];
  host_->favorites = array({[NSNull null], @"APA"});
  open();
  EXPECT_EQ(str([[menu() itemTitles] componentsJoinedByString:@","]), "APA");
}

TEST_F(ScanDialog, StyleThatTheHostDoesNotKnowIsStoredButNotTaken) {
  host_->favorites = array({@"Unknown"});
  open();
  EXPECT_EQ(selectedStyle(), "(nil)");
  EXPECT_EQ(lastStyle(), "Unknown");
  [controller_ buttonClicked:button()];
  EXPECT_EQ([controller_ chosenAction], -1);
  EXPECT_THAT(log_->lines(),
              ElementsAre("KOMellelScanController.buttonClicked:  Can't find style named Unknown"));
}

TEST_F(ScanDialog, UnexpectedButtonIsLoggedAndLeavesTheDialogOpen) {
  offer({"APA"});
  open();
  [controller_ buttonClicked:menu()];
  EXPECT_EQ([controller_ chosenAction], -1);
  EXPECT_THAT(log_->lines(),
              ElementsAre("KOMellelScanController.buttonClicked:  Heard from an unexpected "
                          "button"));
}

TEST_F(ScanDialog, ButtonDoesNotChangeTheSelectedStyle) {
  offer({"APA", "IEEE"});
  open();
  [menu() selectItemAtIndex:1];
  ScriptedUser user;
  user.clickOn(button());
  EXPECT_EQ(user.runModal(window()), 2);
  EXPECT_EQ(selectedStyle(), "APA");
}

TEST_F(ScanDialog, ClickOnTheButtonEndsTheSessionWithItsAction) {
  offer({"APA"});
  open();
  ScriptedUser user;
  user.clickOn(button());
  EXPECT_EQ(user.runModal(window()), 2);
  EXPECT_EQ([controller_ chosenAction], 2);
  EXPECT_EQ(selectedStyle(), "APA");
  EXPECT_TRUE([window() isVisible]) << "the caller closes the window";
}

TEST_F(ScanDialog, ReturnPressesTheButton) {
  offer({"APA"});
  open();
  ScriptedUser user;
  user.press(window(), "Return");
  EXPECT_EQ(user.runModal(window()), 2);
  EXPECT_EQ([controller_ chosenAction], 2);
}

TEST_F(ScanDialog, TabLeadsFromTheMenuToEachButton) {
  offer({"APA"});
  const auto outcomeAfterTabs = [this](int tabs) {
    open();
    ScriptedUser user;
    for (int tab = 0; tab < tabs; ++tab) {
      user.press(window(), "Tab");
    }
    user.press(window(), "space");
    const NSInteger outcome = user.runModal(window());
    [window() close];
    return outcome;
  };
  EXPECT_EQ(outcomeAfterTabs(1), 2);
  EXPECT_EQ(outcomeAfterTabs(2), 0);
}

TEST_F(ScanDialog, CloseBoxEndsTheSessionWithoutActionAndLeavesTheWindowToTheCaller) {
  offer({"APA"});
  open();
  ScriptedUser user;
  user.clickOnCloseBoxOf(window());
  EXPECT_EQ(user.runModal(window()), 0);
  EXPECT_EQ([controller_ chosenAction], 0);
  EXPECT_TRUE([window() isVisible]);
}

TEST_F(ScanDialog, EscapeClosesItAsTheCloseBoxDoes) {
  offer({"APA"});
  open();
  ScriptedUser user;
  user.press(window(), "Escape");
  EXPECT_EQ(user.runModal(window()), 0);
  EXPECT_EQ([controller_ chosenAction], 0);
  EXPECT_TRUE([window() isVisible]);
}

TEST_F(ScanDialog, WithoutFavoritesItSaysWhereToAddSome) {
  offer({"APA"});
  open();
  EXPECT_EQ(str([label() stringValue]), "Format the citations and the bibliography in this style:");
  [window() close];
  offer({});
  open();
  EXPECT_EQ(str([label() stringValue]),
            "There are no favorite styles yet. Add some in Korvo's citation styles.");
  expectRoomForEverything();
}

TEST_F(ScanDialog, StyleIsChosenFromTheMenuWithTheMouse) {
  offer({"APA", "IEEE", "Nature"});
  open();
  ScriptedUser user;
  user.drawToNextItemOf(menu());
  user.clickOn(button());
  const NSInteger code = user.runModal(window());
  EXPECT_EQ(code, 2);
  EXPECT_EQ(selectedTitle(), "IEEE");
  EXPECT_EQ(selectedStyle(), "IEEE");
  EXPECT_EQ(lastStyle(), "IEEE");
}

TEST_F(ScanDialog, ButtonKeepsTheDialogOpenForAStyleThatTheHostDoesNotKnow) {
  host_->favorites = array({@"Unknown"});
  open();
  ScriptedUser user;
  user.clickOn(button());
  user.pause();
  user.clickOnCloseBoxOf(window());
  EXPECT_EQ(user.runModal(window()), 0);
  EXPECT_EQ(log_->lines().size(), 1u);
}

TEST_F(ScanDialog, WithoutFavoritesNoItemIsSelected) {
  setLastStyle(@"Gone");
  open();
  StrictMenu *strict = [[[StrictMenu alloc] init] autorelease];
  [controller_ setValue:strict forKey:@"formatSelectorPopUpButton"];
  [controller_ awakeFromNib];
  EXPECT_EQ([menu() numberOfItems], 0);
  EXPECT_EQ(selectedStyle(), "(nil)");
}

TEST_F(ScanDialog, NibConnectsTheWindowToItsOwner) {
  offer({"APA"});
  open();
  ASSERT_NE(window(), nil);
  EXPECT_EQ((id)[window() delegate], controller_);
  EXPECT_EQ((id)[menu() target], controller_);
  EXPECT_EQ(str(NSStringFromSelector([menu() action])), "formatSelectionChanged:");
  EXPECT_EQ((id)[button() target], controller_);
  EXPECT_EQ(str(NSStringFromSelector([button() action])), "buttonClicked:");
  EXPECT_EQ(str([button() keyEquivalent]), "\r");
  EXPECT_TRUE([window() styleMask] & NSClosableWindowMask);
  EXPECT_FALSE([window() styleMask] & NSResizableWindowMask);
  EXPECT_EQ([controller_ windowShouldClose:window()], NO);
}

TEST_F(ScanDialog, NoTextIsCutOffAndNothingOverlaps) {
  offer({"American Psychological Association 7th edition"});
  open();
  expectRoomForEverything();
}

// A language with longer words than any of ours: the dialog becomes wider, the button stays at its
// margin, and the menu goes along.
TEST_F(ScanDialog, BecomesAsWideAsItsTextsNeed) {
  offer({"APA"});
  open();
  const CGFloat width = NSWidth([[window() contentView] frame]);
  const CGFloat menuWidth = NSWidth([menu() frame]);
  const std::string longWord(60, 'W');
  [label() setStringValue:ns(longWord)];
  [button() setTitle:ns(longWord)];
  [controller_ awakeFromNib];
  EXPECT_GT(NSWidth([[window() contentView] frame]), width);
  EXPECT_GT(NSWidth([menu() frame]), menuWidth);
  expectRoomForEverything();
}

// AppKit's beep, counted: the drawing context's table of functions is exchanged for a copy.
int beeps = 0;
void countBeep(NSGraphicsContext *, SEL) { ++beeps; }

class BeepCounter {
 public:
  BeepCounter() : context_(GSCurrentContext()), original_(context_->methods), table_(*original_) {
    beeps = 0;
    table_.NSBeep = countBeep;
    context_->methods = &table_;
  }
  ~BeepCounter() { context_->methods = original_; }
  BeepCounter(const BeepCounter &) = delete;
  BeepCounter &operator=(const BeepCounter &) = delete;

 private:
  NSGraphicsContext *context_;
  const gsMethodTable *original_;
  gsMethodTable table_;
};

TEST_F(ScanDialog, InsertionThatCannotBeSentBeepsOnceAndOneThatCanDoesNot) {
  test_support::RecordingCarrier carrier;
  const BeepCounter counter;
  id agent = [NSClassFromString(@"KorvoMellelAgent") defaultInstance];
  [agent insertCitation:@"A"];
  EXPECT_EQ(beeps, 0);
  carrier.sendResult = std::unexpected(OSStatus{procNotFound});
  [agent insertCitation:@"A"];
  EXPECT_EQ(beeps, 1);
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(ScanDialog, FinalScanIsCancelledWhereTheHostFailsWhileItOpens) {
  test_support::RecordingCarrier carrier;
  const ReplacedMethod favorites([RecordingHost class], @selector(favoriteBibStyleNames),
                                 asMethod(raiseForFavorites));
  Class agent = NSClassFromString(@"KorvoMellelAgent");
  [agent setAdapter:host_];
  EXPECT_EQ(carrier
                .deliver(formats::mellelSignature, formats::request::finalScan,
                         formats::encodeFinalScanRequest(7, true, "", {}))
                .status,
            noErr);
  ASSERT_EQ(carrier.sent.size(), 1u);
  EXPECT_EQ(carrier.sent[0].eventID, formats::answer::cancel);
  // GNUstep's loader has lines of its own about it.
  std::vector<std::string> own = log_->lines();
  std::erase_if(own, [](const std::string &line) { return !line.starts_with("KorvoMellel"); });
  EXPECT_THAT(own, ElementsAre("KorvoMellelAgent.handleFinalScanEvent: event 'SCNQ' was ended by "
                               "an exception: HostException: no favorites"));
  [agent setAdapter:nil];
}

// The whole way of a final scan with the application, the dialog and the RTF conversion real.
TEST_F(ScanDialog, FinalScanGoesThroughTheDialogToAnAnswerWithRealRTF) {
  offer({"APA"});
  host_->matches["Smith"] = {"smith"};
  test_support::RecordingCarrier carrier;
  Class agent = NSClassFromString(@"KorvoMellelAgent");
  [agent setAdapter:host_];
  hostScript().formatBibliography = [] {
    return (NSAttributedString *)[[[NSAttributedString alloc]
        initWithString:@"Smith (2001)"
            attributes:[NSDictionary dictionaryWithObject:[NSFont boldSystemFontOfSize:12]
                                                   forKey:NSFontAttributeName]] autorelease];
  };
  const formats::CitationPair citation = {"Smith", ""};
  const std::string request = formats::encodeFinalScanRequest(7, true, "", {&citation, 1});
  // The dialog opens inside the handler: Return reaches it by its title.
  open();
  NSWindow *likeIt = window();
  ScriptedUser user;
  user.press(likeIt, "Return");
  [likeIt orderOut:nil];
  controller_ = nil;
  user.start();
  constexpr OSType mellel = 0x6D4C654C;
  constexpr OSType finalScan = 0x53434E51;
  EXPECT_EQ(carrier.deliver(mellel, finalScan, request).status, noErr);
  ASSERT_EQ(carrier.sent.size(), 1u);
  const std::string payload =
      test_support::RecordingCarrier::directObject(carrier.sent[0]).value_or("");
  const auto reply = formats::decodeScanReply(payload);
  ASSERT_TRUE(reply) << reply.error();
  EXPECT_EQ(reply->styleName, "APA");
  ASSERT_TRUE(reply->bibliography);
  EXPECT_TRUE(reply->bibliography->starts_with("{\\rtf1")) << *reply->bibliography;
  EXPECT_NE(reply->bibliography->find("Smith (2001)"), std::string_view::npos);
  [agent setAdapter:nil];
}

}  // namespace
}  // namespace plugin_test
