// The scan dialog's controller by itself, without its nib and without a display: what its actions
// do with a choice, and how it is laid out.

#import "Support/AgentTest.h"
#import "Support/ScanControllerInside.h"

// A menu in which one title is selected. It is its own item.
@interface MenuOfOneTitle : NSObject {
 @public
  NSString *selectedTitle;
}
@end

@implementation MenuOfOneTitle
- (id)selectedItem {
  return selectedTitle == nil ? nil : self;
}
- (NSString *)title {
  return selectedTitle;
}
@end

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

NSString *const lastStyleKey = @"Last Style Used For Mellel Scan";

class ScanDialogChoice : public AgentTest {
 protected:
  ScanDialogChoice()
      : menu_([[[MenuOfOneTitle alloc] init] autorelease]),
        button_([[[NSObject alloc] init] autorelease]),
        controller_([[[NSClassFromString(@"KOMellelScanController") alloc] initWithAdapter:host_]
            autorelease]) {
    [controller_ setFormatSelectorPopUpButton:menu_];
    [controller_ setGenerateCopyWithBibInStyleButton:button_];
  }
  ~ScanDialogChoice() override {
    [[NSUserDefaults standardUserDefaults] removeObjectForKey:lastStyleKey];
  }

  void select(NSString *title) {
    menu_->selectedTitle = title;
    [controller_ formatSelectionChanged:menu_];
  }
  static std::string lastStyle() {
    return str([[NSUserDefaults standardUserDefaults] stringForKey:lastStyleKey]);
  }

  MenuOfOneTitle *menu_;
  id button_;
  KOMellelScanController *controller_;
};

// Else the copy would be formatted in another style than the one that is shown.
TEST_F(ScanDialogChoice, StyleThatTheHostKnowsNoLongerTakesTheFormerChoiceAway) {
  [host_ addStyle:"APA"];
  select(@"APA");
  ASSERT_EQ((id)[controller_ selectedBibStyle], host_->styles["APA"]);
  select(@"Gone");
  EXPECT_EQ((id)[controller_ selectedBibStyle], nil);
  EXPECT_EQ(lastStyle(), "Gone");
}

TEST_F(ScanDialogChoice, UnknownStyleIsWhatIsLoggedEvenWhereTheButtonIsUnexpectedToo) {
  menu_->selectedTitle = @"Gone";
  [controller_ buttonClicked:menu_];
  EXPECT_THAT(log_->lines(),
              ElementsAre("KOMellelScanController.buttonClicked:  Can't find style named Gone"));
  EXPECT_EQ([controller_ chosenAction], -1);
}

TEST_F(ScanDialogChoice, UnexpectedButtonIsNotHeardWhileNothingIsSelected) {
  [controller_ buttonClicked:menu_];
  EXPECT_THAT(log_->lines(), IsEmpty());
  EXPECT_THAT(callsOf({"bibStyleNamed"}), IsEmpty());
}

// Nibs and debuggers know them by name, and other code by their places.
TEST_F(ScanDialogChoice, InstanceVariablesOfTheControllerStandInTheirOrder) {
  unsigned count = 0;
  Ivar *variables = class_copyIvarList([controller_ class], &count);
  std::vector<std::pair<std::string, std::string>> namesAndTypes;
  for (unsigned index = 0; index < count; ++index) {
    namesAndTypes.emplace_back(ivar_getName(variables[index]),
                               std::string(ivar_getTypeEncoding(variables[index]), 1));
  }
  free(variables);
  EXPECT_THAT(namesAndTypes,
              ElementsAre(Pair("formatSelectorPopUpButton", "@"),
                          Pair("generateCopyWithBibInStyleButton", "@"), Pair("chosenAction", "i"),
                          Pair("adapter", "@"), Pair("selectedBibStyle", "@")));
}

}  // namespace
}  // namespace plugin_test
