// The dialog that asks for a style, driven by real clicks and keys.
#include "Applications.h"
#include "Window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace endtoend;
using testing::HasSubstr;

constexpr const char *dialogTitle = "Format Citations for Mellel";

// A scan that leaves the choice of the style to the dialog.
class ScanWithDialog : public testing::Test {
 protected:
  static std::vector<std::string> favorites() {
    return {"--favorite", "apa", "--favorite", "ieee"};
  }

  std::filesystem::path copy() const { return directory_.path() / "copy.rtf"; }

  std::vector<std::string> command(const std::vector<std::string> &options = {}) const {
    std::vector<std::string> arguments = {
        program("mellel"), "scan", example("draft-textedit.rtf").string(), "-o", copy().string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return arguments;
  }

  // Whether the copy has the text; a failure that showed all of it would be hard to read.
  bool copyHas(const std::string &text) const {
    return readFile(copy()).find(text) != std::string::npos;
  }

  // The menu opens with the style that is shown under the pointer, and the next one below it.
  static constexpr int heightOfStyle = 26;
  static void takeSecondStyle(const Window &dialog) {
    dialog.clickAndDrag(230, -85, heightOfStyle);
  }
  static void openMenu(const Window &dialog) { dialog.click(230, -85); }
  static void clickButton(const Window &dialog) { dialog.click(320, -35); }
  static void clickCloseBox(const Window &dialog) { dialog.click(-12, 11); }

 private:
  TemporaryDirectory directory_;
};

TEST_F(ScanWithDialog, ReturnTakesTheFirstFavorite) {
  Host host(favorites());
  ChildProcess mellel(command());
  ASSERT_TRUE(host.process().waitForLine("dialog: open")) << mellel.standardError();
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  dialog.press("Return");
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_THAT(host.output(), HasSubstr("dialog: closed"));
  EXPECT_TRUE(copyHas("(Hoare, 1969)"));
}

TEST_F(ScanWithDialog, TheButtonTakesTheStyleThatIsShown) {
  Host host(favorites());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  clickButton(dialog);
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_TRUE(copyHas("(Hoare, 1969)"));
}

TEST_F(ScanWithDialog, AnotherStyleFromTheMenuIsTakenAndRememberedForTheNextScan) {
  Host host(favorites());
  {
    ChildProcess mellel(command());
    const Window dialog(dialogTitle);
    ASSERT_TRUE(dialog.isOpen());
    takeSecondStyle(dialog);
    clickButton(dialog);
    ASSERT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
    EXPECT_TRUE(copyHas("[1]"));
    EXPECT_FALSE(copyHas("(Hoare, 1969)"));
  }
  std::filesystem::remove(copy());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  clickButton(dialog);
  ASSERT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_TRUE(copyHas("[1]"));
}

// With keys alone: Return belongs to the open menu, and then to the button.
TEST_F(ScanWithDialog, ReturnInTheMenuThatKeysHaveOpenedTakesTheHighlightedStyle) {
  Host host(favorites());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  for (const char *key : {"space", "Down", "Return"}) {
    dialog.press(key);
  }
  EXPECT_FALSE(host.process().waitForLine("dialog: closed", 0, std::chrono::milliseconds(500)));
  dialog.press("Return");
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_TRUE(copyHas("[1]"));
}

TEST_F(ScanWithDialog, ReturnInTheMenuThatTheMouseHasOpenedTakesTheHighlightedStyle) {
  Host host(favorites());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  openMenu(dialog);
  dialog.press("Down");
  dialog.press("Return");
  EXPECT_FALSE(host.process().waitForLine("dialog: closed", 0, std::chrono::milliseconds(500)));
  dialog.press("Return");
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_TRUE(copyHas("[1]"));
}

TEST_F(ScanWithDialog, AClickOpensTheMenuAndAnotherOneTakesAStyle) {
  Host host(favorites());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  openMenu(dialog);
  dialog.click(230, -85 + heightOfStyle);
  clickButton(dialog);
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_TRUE(copyHas("[1]"));
}

TEST_F(ScanWithDialog, AClickOnTheStyleThatIsShownClosesTheMenuAndLeavesIt) {
  Host host(favorites());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  openMenu(dialog);
  dialog.click(230, -85);
  clickButton(dialog);
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_TRUE(copyHas("(Hoare, 1969)"));
}

TEST_F(ScanWithDialog, EscapeInTheOpenMenuLeavesTheStyleAndTheDialog) {
  Host host(favorites());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  openMenu(dialog);
  dialog.press("Down");
  dialog.press("Escape");
  for (const char *key : {"space", "Down", "Escape"}) {
    dialog.press(key);
  }
  EXPECT_FALSE(host.process().waitForLine("dialog: closed", 0, std::chrono::milliseconds(500)));
  dialog.press("Return");
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_TRUE(copyHas("(Hoare, 1969)"));
}

TEST_F(ScanWithDialog, EscapeCancelsAndWritesNothing) {
  Host host(favorites());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  dialog.press("Escape");
  EXPECT_EQ(mellel.waitForExit(), 1);
  EXPECT_FALSE(std::filesystem::exists(copy()));
  EXPECT_THAT(host.output(), HasSubstr("dialog: closed 0"));
}

TEST_F(ScanWithDialog, TheCloseBoxCancelsAndWritesNothing) {
  Host host(favorites());
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  clickCloseBox(dialog);
  EXPECT_EQ(mellel.waitForExit(), 1);
  EXPECT_FALSE(std::filesystem::exists(copy()));
  EXPECT_THAT(host.output(), HasSubstr("dialog: closed"));
}

TEST_F(ScanWithDialog, AStyleThatNobodyHasOpensIt) {
  Host host(favorites());
  ChildProcess mellel(command({"--style", "a-style-that-nobody-has"}));
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  dialog.press("Return");
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_TRUE(copyHas("(Hoare, 1969)"));
}

TEST_F(ScanWithDialog, OffersStylesAlsoToWhoNeverChoseAny) {
  Host host;
  ChildProcess mellel(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  dialog.press("Return");
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_FALSE(copyHas("Hoare 1969#hoare1969"));
}

TEST_F(ScanWithDialog, WhoAsksMeanwhileIsAnsweredAfterIt) {
  Host host(favorites());
  ChildProcess scanning(command());
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  ChildProcess opening({program("mellel"), "open", "Hoare 1969#hoare1969"});
  EXPECT_FALSE(host.process().waitForLine("editor: hoare1969", 0, std::chrono::milliseconds(700)));
  dialog.press("Return");
  EXPECT_EQ(scanning.waitForExit(), 0);
  EXPECT_TRUE(host.process().waitForLine("editor: hoare1969"));
  EXPECT_EQ(opening.waitForExit(), 0);
}

TEST_F(ScanWithDialog, TheHostCanBeEndedWhileItIsOpen) {
  Host host(favorites());
  ChildProcess mellel(command());
  ASSERT_TRUE(host.process().waitForLine("dialog: open"));
  host.process().send(SIGTERM);
  EXPECT_EQ(host.process().waitForExit(), 0);
  const auto status = mellel.waitForExit();
  EXPECT_THAT(status, testing::AnyOf(1, 3)) << mellel.standardError();
  EXPECT_FALSE(std::filesystem::exists(copy()));
}

TEST_F(ScanWithDialog, AHostThatDiesWhileItIsOpenIsNoticed) {
  Host host(favorites());
  ChildProcess mellel(command());
  ASSERT_TRUE(host.process().waitForLine("dialog: open"));
  host.kill();
  EXPECT_EQ(mellel.waitForExit(), 3);
  EXPECT_FALSE(std::filesystem::exists(copy()));
}

TEST_F(ScanWithDialog, AWordProcessorThatDiesMeanwhileLeavesTheHostAlive) {
  Host host(favorites());
  {
    ChildProcess mellel(command());
    ASSERT_TRUE(host.process().waitForLine("dialog: open"));
    mellel.send(SIGKILL);
    mellel.waitForExit();
  }
  const Window dialog(dialogTitle);
  ASSERT_TRUE(dialog.isOpen());
  dialog.press("Return");
  ASSERT_TRUE(host.process().waitForLine("dialog: closed"));
  EXPECT_EQ(scan("draft-textedit.rtf", {"--style", "apa"}).result.status, 0);
}

}  // namespace
