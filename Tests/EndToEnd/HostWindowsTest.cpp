// The host's own windows, driven by real clicks and keys.
#include "Applications.h"
#include "Window.h"

#include <Tests/Support/WaitUntil.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <thread>

namespace {

using namespace endtoend;
using test_support::waitUntil;

constexpr auto aMoment = std::chrono::milliseconds(500);

class HostWindows : public testing::Test {
 protected:
  // A library in a file, with the example library's references.
  std::filesystem::path library() {
    std::filesystem::path file = directory_ / "mine.korvolib";
    if (!std::filesystem::exists(file)) {
      import(example("library.bib"));
    }
    return file;
  }

  void import(const std::filesystem::path &references) {
    const Result result = run({program("korvo"), "import", references.string(), "--into",
                               (directory_ / "mine.korvolib").string()});
    EXPECT_EQ(result.status, 0) << result.standardError;
  }

  // Has the host show the editor; the citation names one reference.
  static void open(Host &host, const std::string &citation, const std::string &identifier) {
    const std::size_t before = host.output().size();
    EXPECT_EQ(run({program("mellel"), "open", citation}).status, 0) << citation;
    EXPECT_TRUE(host.process().waitForLine("editor: " + identifier, before)) << citation;
  }

  static void close(const std::string &editor) {
    Window(editor).press("alt+w");
    std::this_thread::sleep_for(aMoment);
  }

  // The list begins with al-Khwārizmī, Alder, Ångström, …
  static void clickRow(const Window &window, int row) {
    window.click(200, firstRow + row * rowHeight);
  }
  static void doubleClickRow(const Window &window, int row) {
    window.doubleClick(200, firstRow + row * rowHeight);
  }
  static void clickYear(const Window &window) { window.click(270, titlesOfColumns); }

  static constexpr int titlesOfColumns = 82;
  static constexpr int firstRow = 102;
  static constexpr int rowHeight = 22;

  TemporaryDirectory directory_;
};

// The press and its end are both there when the host has time for them: in this order.
TEST_F(HostWindows, TheFirstClickAfterTheStartIsTakenWhileTheHostIsBusy) {
  Host host;
  const Window window("library.bib");
  ASSERT_TRUE(window.isOpen());
  host.stop();
  doubleClickRow(window, 0);
  host.process().send(SIGCONT);
  EXPECT_TRUE(host.process().waitForLine("editor: alkhwarizmi1831"));
}

TEST_F(HostWindows, ADoubleClickOpensTheEditorAndSaysSo) {
  Host host;
  const Window window("library.bib");
  ASSERT_TRUE(window.isOpen());
  doubleClickRow(window, 1);
  EXPECT_TRUE(host.process().waitForLine("editor: alder2002"));
  EXPECT_TRUE(Window("alder2002").isOpen());
}

TEST_F(HostWindows, AClickOnAColumnsTitleSortsAndKeepsTheSelection) {
  Host host;
  const Window window("library.bib");
  ASSERT_TRUE(window.isOpen());
  clickRow(window, 0);
  clickYear(window);
  window.press("alt+e");
  ASSERT_TRUE(host.process().waitForLine("editor: alkhwarizmi1831"));
  close("alkhwarizmi1831");
  // The oldest is the first now.
  doubleClickRow(window, 0);
  EXPECT_TRUE(host.process().waitForLine("editor: galilei1632"));
}

TEST_F(HostWindows, SeveralReferencesAreOpenedTogetherAndNoEditorHidesAnother) {
  Host host;
  const Window window("library.bib");
  ASSERT_TRUE(window.isOpen());
  clickRow(window, 0);
  // The host hears of the key only with the keyboard.
  window.press("Home");
  run({"xdotool", "keydown", "shift"});
  clickRow(window, 2);
  run({"xdotool", "keyup", "shift"});
  window.press("alt+e");
  std::set<std::pair<int, int>> corners;
  for (const char *identifier : {"alkhwarizmi1831", "angstrom1868"}) {
    ASSERT_TRUE(host.process().waitForLine("editor: " + std::string(identifier))) << host.output();
    corners.insert(Window(identifier).corner());
  }
  EXPECT_EQ(corners.size(), 2U);
}

TEST_F(HostWindows, WhatAnotherProcessImportsIsSoonInTheList) {
  const std::filesystem::path one = directory_ / "one.bib";
  writeFile(one, "@book{zzz, author={Zuse, Konrad}, title={Z}, year=1970}");
  const std::filesystem::path two = directory_ / "two.bib";
  writeFile(two, "@book{aaa, author={Abel, Niels}, title={A}, year=1826}");
  import(one);
  Host host({}, directory_ / "mine.korvolib");
  const Window window("mine.korvolib");
  ASSERT_TRUE(window.isOpen());
  import(two);
  // The host looks every two seconds. Until it has seen the change, the old one is the first.
  std::string shown = "editor: zzz";
  for (int turn = 0; turn < 10 && shown.contains("editor: zzz"); ++turn) {
    std::this_thread::sleep_for(std::chrono::seconds(3));
    const std::size_t before = host.output().size();
    doubleClickRow(window, 0);
    EXPECT_TRUE(host.process().waitForLine("editor: ", before));
    shown = host.output().substr(before);
    if (shown.contains("editor: zzz")) {
      close("zzz");
    }
  }
  EXPECT_THAT(shown, testing::HasSubstr("editor: aaa"));
}

TEST_F(HostWindows, QuitAsksAboutUnsavedEditsAndSavesThem) {
  Host host({}, library());
  open(host, "Hoare 1969#hoare1969", "hoare1969");
  const Window editor("hoare1969");
  editor.press("End");
  Window::type("new");
  editor.press("alt+q");
  ASSERT_TRUE(host.process().waitForLine("dialog: open"));
  std::this_thread::sleep_for(std::chrono::seconds(1));
  run({"xdotool", "key", "Return"});
  EXPECT_EQ(host.process().waitForExit(), 0);
  Host again({}, library());
  open(again, "X#hoare1969new", "hoare1969new");
}

TEST_F(HostWindows, AQuitThatIsCancelledLosesNothing) {
  Host host({}, library());
  open(host, "Hoare 1969#hoare1969", "hoare1969");
  const Window editor("hoare1969");
  editor.press("End");
  Window::type("new");
  editor.press("alt+q");
  ASSERT_TRUE(host.process().waitForLine("dialog: open"));
  std::this_thread::sleep_for(std::chrono::seconds(1));
  run({"xdotool", "key", "Escape"});
  ASSERT_TRUE(host.process().waitForLine("dialog: closed"));
  editor.press("alt+s");
  EXPECT_TRUE(waitUntil(patience, [&] {
    return run({program("mellel"), "open", "X#hoare1969new"}).status == 0 &&
           host.output().find("editor: hoare1969new") != std::string::npos;
  }));
}

TEST_F(HostWindows, QuitWithoutEditsAsksNothing) {
  Host host({}, library());
  open(host, "Hoare 1969#hoare1969", "hoare1969");
  Window("hoare1969").press("alt+q");
  EXPECT_EQ(host.process().waitForExit(), 0);
  EXPECT_EQ(host.output().find("dialog"), std::string::npos);
}

TEST_F(HostWindows, AKillLosesNoSavedEdit) {
  {
    Host host({}, library());
    open(host, "Hoare 1969#hoare1969", "hoare1969");
    const Window editor("hoare1969");
    editor.press("End");
    Window::type("new");
    const auto before = std::filesystem::last_write_time(library());
    editor.press("alt+s");
    // The editor bears the saved identifier as its title.
    ASSERT_TRUE(Window("hoare1969new").isOpen());
    EXPECT_NE(std::filesystem::last_write_time(library()), before);
    host.kill();
  }
  Host again({}, library());
  open(again, "X#hoare1969new", "hoare1969new");
}

// By Tab from the identifier to the kind, the authors, the editors and the date.
TEST_F(HostWindows, InTheAuthorsReturnBeginsALineAndTabGoesOn) {
  Host host({}, library());
  open(host, "Hoare 1969#hoare1969", "hoare1969");
  const Window editor("hoare1969");
  editor.press("Tab");
  editor.press("Tab");
  editor.press("ctrl+End");
  editor.press("Down");
  editor.press("End");
  editor.press("Return");
  Window::type("Doe, Jane");
  editor.press("Tab");
  editor.press("Tab");
  Window::type("1970");
  editor.press("alt+s");
  EXPECT_TRUE(waitUntil(patience, [&] {
    return run({program("mellel"), "open", "Hoare & Doe 1970"}).status == 0 &&
           host.output().find("editor: hoare1969\neditor: hoare1969") != std::string::npos;
  })) << host.output();
}

TEST_F(HostWindows, TheLibraryWindowOpensWhereItWasLeft) {
  std::pair<int, int> left;
  {
    Host host;
    const Window window("library.bib");
    const auto first = window.corner();
    window.drag(120, 90);
    EXPECT_TRUE(waitUntil(patience, [&] { return (left = window.corner()) != first; }));
    window.press("alt+q");
    EXPECT_EQ(host.process().waitForExit(), 0);
  }
  Host host;
  EXPECT_EQ(Window("library.bib").corner(), left);
}

}  // namespace
