#import "AdapterFixture.h"

#include <Platform/RunLoopTimer.h>
#import <StandIns/Korvo/Adapter/StringConversion.h>
#import <StandIns/Korvo/Application/KOApplication.h>
#import <StandIns/Korvo/Application/KOApplicationController.h>
#import <StandIns/Korvo/Windows/Controls.h>
#import <StandIns/Korvo/Windows/MainMenu.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <chrono>

using korvo::library::ListOrder;
using korvo::library::SortColumn;
using korvo_test::utf8;
using test_support::TemporaryDirectory;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class Windows : public korvo_test::AdapterFixture {
 protected:
  Windows()
      : otherLibrary_(korvo_test::smallLibrary()),
        controller_(korvo::adapter::Owned<KOApplicationController *>::taking(
            [[KOApplicationController alloc]
                initWithLibraries:[NSArray
                                      arrayWithObjects:library_.get(), otherLibrary_.get(), nil]
                           styles:shelf_])) {}

  KOMainWindowController *mainWindow() { return [controller_.get() mainWindow]; }

  id cell(NSString *identifier, NSInteger row) {
    NSTableView *table = [mainWindow() table];
    return [(id)mainWindow() tableView:table
             objectValueForTableColumn:[table tableColumnWithIdentifier:identifier]
                                   row:row];
  }

  std::vector<std::string> column(NSString *identifier) {
    std::vector<std::string> texts;
    for (NSInteger row = 0; row < [[mainWindow() table] numberOfRows]; ++row) {
      texts.push_back(utf8(cell(identifier, row)));
    }
    return texts;
  }

  void click(NSString *identifier) {
    NSTableView *table = [mainWindow() table];
    [(id)mainWindow() tableView:table
            didClickTableColumn:[table tableColumnWithIdentifier:identifier]];
  }

  KOReferenceEditorWindowController *editorOf(NSString *tag) {
    [controller_.get() displayEditorForReference:reference(tag)];
    return [[controller_.get() editors] lastObject];
  }

  korvo::adapter::Owned<KOLibrary *> otherLibrary_;
  korvo::adapter::Owned<KOApplicationController *> controller_;
};

}  // namespace

TEST_F(Windows, TheLibraryIsListedByAuthors) {
  EXPECT_THAT(column(@"authors"), ElementsAre("", "Doe", "Doe", "Jones, Ann; Lee, Bo",
                                              "Smith, John", "van Gogh, Vincent"));
  EXPECT_THAT(column(@"year"), ElementsAre("", "2005", "2005", "1999", "2001", "1888"));
  EXPECT_EQ(utf8([mainWindow() statusText]), "6 references");
  EXPECT_EQ(utf8([[mainWindow() window] title]), "Korvo – small.bib");
}

TEST_F(Windows, AClickOnAColumnSortsASecondOneTurnsTheOrder) {
  click(@"year");
  EXPECT_THAT(column(@"year"), ElementsAre("", "1888", "1999", "2001", "2005", "2005"));
  click(@"year");
  EXPECT_THAT(column(@"year"), ElementsAre("2005", "2005", "2001", "1999", "1888", ""));
  click(@"title");
  EXPECT_THAT(column(@"title"), ElementsAre("", "Cold", "Letters", "On Heat", "One", "Two"));
}

TEST_F(Windows, TheSelectionIsInTheOrderShownAndSurvivesSorting) {
  [mainWindow() selectReferences:[NSArray arrayWithObjects:reference(@"SMI2001"),
                                                           reference(@"JON1999"), nil]];
  const auto selected = [&] {
    std::vector<std::string> tags;
    NSArray *references = [controller_.get() selectedReferences];
    for (NSUInteger index = 0; index < [references count]; ++index) {
      tags.push_back(**[(KOReference *)[references objectAtIndex:index] citationTag]);
    }
    return tags;
  };
  EXPECT_THAT(selected(), ElementsAre("JON1999", "SMI2001"));
  EXPECT_EQ(utf8([mainWindow() statusText]), "6 references, 2 selected");
  [mainWindow() sortBy:ListOrder{.column = SortColumn::authors, .ascending = false}];
  EXPECT_THAT(selected(), ElementsAre("SMI2001", "JON1999"));
}

TEST_F(Windows, ASearchNarrowsTheListAndDeselectsWhatItHides) {
  [mainWindow() selectReferences:[NSArray arrayWithObjects:reference(@"SMI2001"),
                                                           reference(@"JON1999"), nil]];
  [mainWindow() searchFor:@"smith heat"];
  EXPECT_THAT(column(@"identifier"), ElementsAre("SMI2001"));
  EXPECT_EQ([[mainWindow() selectedReferences] count], 1U);
  EXPECT_EQ(utf8([mainWindow() statusText]), "1 reference, 1 selected");
  [mainWindow() searchFor:@"nothing like this"];
  EXPECT_EQ([[mainWindow() selectedReferences] count], 0U);
  [mainWindow() searchFor:@""];
  EXPECT_EQ(column(@"identifier").size(), 6U);
}

TEST_F(Windows, TheOtherLibraryBecomesTheCurrentOne) {
  EXPECT_EQ([controller_.get() currentLibrary], library_.get());
  [mainWindow() selectReferences:[NSArray arrayWithObject:reference(@"SMI2001")]];
  [mainWindow() setCurrentLibrary:otherLibrary_.get()];
  EXPECT_EQ([controller_.get() currentLibrary], otherLibrary_.get());
  EXPECT_EQ([[mainWindow() selectedReferences] count], 0U);
}

TEST_F(Windows, WithoutALibraryTheWindowIsEmpty) {
  KOMainWindowController *empty =
      [[[KOMainWindowController alloc] initWithLibraries:[NSArray array]
                                                delegate:controller_.get()] autorelease];
  EXPECT_EQ([empty currentLibrary], nil);
  EXPECT_EQ([[empty table] numberOfRows], 0);
  EXPECT_EQ([[empty selectedReferences] count], 0U);
}

TEST_F(Windows, TheirControllersBearTheNamesThatPlugInsKnow) {
  EXPECT_EQ(utf8(NSStringFromClass([[[mainWindow() window] delegate] class])),
            "KOMainWindowController");
  EXPECT_EQ(utf8(NSStringFromClass([[[editorOf(@"SMI2001") window] delegate] class])),
            "KOReferenceEditorWindowController");
}

TEST_F(Windows, TheEditorShowsTheFields) {
  testing::internal::CaptureStdout();
  KOReferenceEditorWindowController *editor = editorOf(@"SMI2001");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "editor: SMI2001\n");
  EXPECT_EQ(utf8([editor textOfField:@""]), "SMI2001");
  EXPECT_EQ(utf8([editor textOfField:@"type"]), "book");
  EXPECT_EQ(utf8([editor textOfField:@"author"]), "Smith, John");
  EXPECT_EQ(utf8([editor textOfField:@"issued"]), "2001");
  EXPECT_EQ(utf8([[editor window] title]), "SMI2001");
}

TEST_F(Windows, AReferenceHasOneEditor) {
  KOReferenceEditorWindowController *editor = editorOf(@"SMI2001");
  EXPECT_EQ(editorOf(@"Smith 2001"), editor);
  EXPECT_NE(editorOf(@"JON1999"), editor);
  EXPECT_EQ([[controller_.get() editors] count], 2U);
  [[editor window] close];
  EXPECT_EQ([[controller_.get() editors] count], 1U);
}

TEST_F(Windows, WhatIsSavedIsInTheLibraryAndInTheList) {
  KOReferenceEditorWindowController *editor = editorOf(@"SMI2001");
  [editor setText:@"On Cold" ofField:@"title"];
  [editor setText:@"Smyth, Jane\nvan Dyck, Anthony" ofField:@"author"];
  [editor setText:@"SMY" ofField:@""];
  [editor setText:@"chapter" ofField:@"type"];
  ASSERT_TRUE([editor save]);
  EXPECT_EQ(utf8([editor statusText]), "Saved until Korvo quits");
  EXPECT_NE(reference(@"SMY"), nil);
  EXPECT_NE(reference(@"Smyth & van Dyck 2001"), nil);
  EXPECT_THAT(column(@"title"), testing::Contains("On Cold"));
  EXPECT_THAT(column(@"kind"), testing::Contains("Book chapter"));
}

TEST_F(Windows, WhatWouldBreakCitationsIsRefusedWithTheReasonBelowTheField) {
  KOReferenceEditorWindowController *editor = editorOf(@"SMI2001");
  const std::string hint = utf8([editor remarkOnField:@""]);
  EXPECT_THAT(hint, HasSubstr("{Smith 2001#SMI2001}"));
  const std::pair<NSString *, std::string> refused[] = {
      {@"A;B", "\";\" has a meaning of its own in citations"},
      {@" ", "without one the reference is found by author and year only"},
      {@"JON1999", "another reference bears it already"},
  };
  for (const auto &[identifier, reason] : refused) {
    [editor setText:identifier ofField:@""];
    EXPECT_EQ(utf8([editor remarkOnField:@""]), reason);
    EXPECT_FALSE([editor save]);
    EXPECT_EQ(utf8([editor remarkOnField:@""]), reason);
    EXPECT_EQ(utf8([editor statusText]), "Not saved: a field cannot be as it is.");
  }
  [editor setText:@"SMI2001" ofField:@""];
  EXPECT_EQ(utf8([editor remarkOnField:@""]), hint);
  [editor setText:@"2001-02-31" ofField:@"issued"];
  EXPECT_EQ(utf8([editor remarkOnField:@"issued"]), "the calendar has no 2001-02-31");
  EXPECT_FALSE([editor save]);
  [editor setText:@"2001-02-28" ofField:@"issued"];
  EXPECT_TRUE([editor save]);
}

TEST_F(Windows, SavedIsNotSaidOfWhatHasChangedSince) {
  KOReferenceEditorWindowController *editor = editorOf(@"SMI2001");
  [editor setText:@"On Cold" ofField:@"title"];
  ASSERT_TRUE([editor save]);
  ASSERT_THAT(utf8([editor statusText]), HasSubstr("Saved"));
  [editor setText:@"On Ice" ofField:@"title"];
  EXPECT_EQ(utf8([editor statusText]), "");
}

TEST_F(Windows, KindsAreShownByNamesAndSavedAsTheyAre) {
  EXPECT_THAT(column(@"kind"), testing::Contains("Journal article"));
  KOReferenceEditorWindowController *editor = editorOf(@"JON1999");
  EXPECT_EQ(utf8([editor textOfField:@"type"]), "article-journal");
  [editor setText:@"no-such-kind" ofField:@"type"];
  ASSERT_TRUE([editor save]);
  EXPECT_EQ(utf8([editor textOfField:@"type"]), "no-such-kind");
}

TEST_F(Windows, TitlesShowTheirMarksAsLooks) {
  KOReferenceEditorWindowController *editor = editorOf(@"SMI2001");
  [editor setText:@"A <i>B</i> x<sup>2</sup> <span class=\"nocase\">D</span> < 3 <j>"
          ofField:@"title"];
  ASSERT_TRUE([editor save]);
  [mainWindow() searchFor:@"Smith"];
  NSAttributedString *title = cell(@"title", 0);
  ASSERT_TRUE([title isKindOfClass:[NSAttributedString class]]);
  EXPECT_EQ(utf8([title string]), "A B x2 D < 3 <j>");
  const auto traits = [&](NSUInteger place) {
    return [[NSFontManager sharedFontManager] traitsOfFont:[title attribute:NSFontAttributeName
                                                                      atIndex:place
                                                               effectiveRange:nullptr]];
  };
  EXPECT_FALSE(traits(0) & NSItalicFontMask);
  EXPECT_TRUE(traits(2) & NSItalicFontMask);
  EXPECT_FALSE(traits(4) & NSItalicFontMask);
  EXPECT_TRUE([title isSuperscriptAtIndex:5]);
  EXPECT_FALSE([title isSuperscriptAtIndex:7]);
}

TEST_F(Windows, AllThatIsSelectedIsOpened) {
  [mainWindow() selectReferences:[NSArray arrayWithObjects:reference(@"SMI2001"),
                                                           reference(@"JON1999"), nil]];
  [controller_.get() editSelection:nil];
  ASSERT_EQ([[controller_.get() editors] count], 2U);
  const auto place = [&](NSUInteger index) {
    return [[[[controller_.get() editors] objectAtIndex:index] window] frame];
  };
  EXPECT_NE(NSMinX(place(0)), NSMinX(place(1)));
  EXPECT_GE(NSMaxY(place(0)) - NSMaxY(place(1)), 22) << "a title is hidden";
}

TEST_F(Windows, TheListShowsWhatAnotherProgramAdds) {
  const TemporaryDirectory directory;
  auto made = korvo::library::Library::openOrCreate(directory / "my.korvolib");
  auto other = korvo::library::Library::open(directory / "my.korvolib");
  ASSERT_TRUE(made && other);
  const auto onDisk = korvo::adapter::Owned<KOLibrary *>::taking(
      [[KOLibrary alloc] initWithLibrary:*std::move(made)]);
  [mainWindow() setCurrentLibrary:onDisk.get()];
  [mainWindow() followLibrary];
  EXPECT_EQ([[mainWindow() table] numberOfRows], 0);
  const korvo::library::NewReference one = {.identifier = "ONE", .cslJson = "{}"};
  ASSERT_TRUE(other->add({&one, 1}));
  [mainWindow() followLibrary];
  EXPECT_THAT(column(@"identifier"), ElementsAre("ONE"));
  [mainWindow() setCurrentLibrary:library_.get()];
}

// At its smallest size each window has all of its controls, none over another.
TEST_F(Windows, AtTheSmallestSizeNothingIsOutOfReach) {
  const auto styles = korvo::adapter::Owned<KOStylePickerWindowController *>::taking(
      [[KOStylePickerWindowController alloc] initWithStyles:shelf_]);
  NSWindow *const windows[] = {[mainWindow() window],
                               [[controller_.get() noticeWindow] window],
                               [editorOf(@"SMI2001") window],
                               [styles.get() window]};
  for (NSWindow *window : windows) {
    [window setContentSize:[window contentMinSize]];
    NSView *content = [window contentView];
    NSArray *views = [content subviews];
    for (NSUInteger index = 0; index < [views count]; ++index) {
      const NSRect frame = [(NSView *)[views objectAtIndex:index] frame];
      EXPECT_TRUE(NSContainsRect([content bounds], frame)) << utf8([window title]) << index;
      for (NSUInteger other = 0; other < index; ++other) {
        EXPECT_FALSE(NSIntersectsRect(frame, [(NSView *)[views objectAtIndex:other] frame]))
            << utf8([window title]) << other << " " << index;
      }
    }
  }
}

TEST_F(Windows, TheMenuBarNamesTheApplicationOnce) {
  korvo::windows::installMainMenu(controller_.get());
  std::vector<std::string> titles;
  for (NSInteger index = 0; index < [[NSApp mainMenu] numberOfItems]; ++index) {
    titles.push_back(utf8([[[NSApp mainMenu] itemAtIndex:index] title]));
  }
  EXPECT_THAT(titles, ElementsAre("Korvo", "Edit", "Reference", "Window"));
}

TEST_F(Windows, RevertBringsTheLibrarysFieldsBack) {
  KOReferenceEditorWindowController *editor = editorOf(@"SMI2001");
  [editor setText:@"wrong" ofField:@"title"];
  [editor revert:nil];
  EXPECT_EQ(utf8([editor textOfField:@"title"]), "On Heat");
}

// Another program has the file to itself for longer than the editor waits.
TEST_F(Windows, WhatCannotBeSavedStaysInTheEditorWithTheReason) {
  const TemporaryDirectory directory;
  const std::filesystem::path file = directory / "my.korvolib";
  auto made = korvo::library::Library::openOrCreate(file);
  auto other = korvo::library::Library::open(file);
  ASSERT_TRUE(made && other);
  const korvo::library::NewReference one = {.identifier = "ONE",
                                            .cslJson = R"({"title":"Before"})"};
  ASSERT_TRUE(made->add({&one, 1}));
  const auto onDisk = korvo::adapter::Owned<KOLibrary *>::taking(
      [[KOLibrary alloc] initWithLibrary:*std::move(made)]);
  const auto row = [onDisk.get() library].matching("ONE")->at(0);
  const auto editor = korvo::adapter::Owned<KOReferenceEditorWindowController *>::taking(
      [[KOReferenceEditorWindowController alloc] initWithReference:[onDisk.get() referenceAtRow:row]
                                                          delegate:controller_.get()]);
  [editor.get() setText:@"After" ofField:@"title"];
  other->keepReading();
  ASSERT_EQ(other->count(), 1U);
  EXPECT_FALSE([editor.get() save]);
  EXPECT_EQ(utf8([editor.get() statusText]),
            "Not saved: " + file.string() + ": another program is using it");
  EXPECT_EQ(utf8([editor.get() textOfField:@"title"]), "After");
  EXPECT_THAT(**other->cslJson(row), HasSubstr("Before"));
  other->stopReading();
  EXPECT_TRUE([editor.get() save]);
  EXPECT_THAT(**other->cslJson(row), HasSubstr("After"));
}

TEST_F(Windows, SavingKeepsWhatOthersChangedMeanwhile) {
  KOReferenceEditorWindowController *editor = editorOf(@"SMI2001");
  [editor setText:@"2010" ofField:@"issued"];
  ASSERT_TRUE([library_.get() library].replace(
      [[editor reference] row],
      {.identifier = "SMI2001",
       .cslJson = R"({"type":"book","title":"Renamed","author":[{"family":"Smith"}],)"
                  R"("issued":{"date-parts":[[2001]]}})"}));
  ASSERT_TRUE([editor save]);
  EXPECT_EQ(utf8([editor textOfField:@"title"]), "Renamed");
  EXPECT_EQ(utf8([editor textOfField:@"issued"]), "2010");
}

TEST_F(Windows, AReferenceWithoutATagIsKnownByItsUUID) {
  testing::internal::CaptureStdout();
  KOReference *nameless = [library_.get() referenceAtRow:6];
  [controller_.get() displayEditorForReference:nameless];
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "editor: " + utf8([nameless UUID]) + "\n");
}

TEST_F(Windows, NoticesAreKeptAnnouncedAndCanBeCopied) {
  KONoticeWindowController *notices = [controller_.get() noticeWindow];
  testing::internal::CaptureStdout();
  for (NSString *text : {@"\n\nfirst\nline\n", @"second"}) {
    NSAttributedString *summary = [[[NSAttributedString alloc] initWithString:text] autorelease];
    [controller_.get() showNoticeWithHeader:@"Header" summary:summary];
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "notice: Header\n first\n line\nnotice: Header\n second\n");
  EXPECT_THAT(utf8([notices shownText]),
              testing::AllOf(HasSubstr("first\nline"), HasSubstr("second")));
  EXPECT_TRUE([[notices window] isVisible]);
  [notices copyAll:nil];
  EXPECT_EQ(utf8([[NSPasteboard generalPasteboard] stringForType:NSStringPboardType]),
            utf8([notices shownText]));
  [notices clear:nil];
  EXPECT_EQ(utf8([notices shownText]), "");
}

TEST_F(Windows, OnlyTheLastNoticesAreKept) {
  KONoticeWindowController *notices = [[[KONoticeWindowController alloc] init] autorelease];
  for (int number = 1; number <= 60; ++number) {
    NSAttributedString *summary = [[[NSAttributedString alloc]
        initWithString:[NSString stringWithFormat:@"number %d.", number]] autorelease];
    [notices showNoticeWithHeader:@"H" summary:summary];
  }
  EXPECT_THAT(utf8([notices shownText]), testing::Not(HasSubstr("number 10.")));
  EXPECT_THAT(utf8([notices shownText]),
              testing::AllOf(HasSubstr("number 11."), HasSubstr("number 60.")));
  [notices close];
}

TEST_F(Windows, FavoritesArePickedSortedAndRemembered) {
  shelf_.rememberFavorites({});
  KOStylePickerWindowController *picker =
      [[[KOStylePickerWindowController alloc] initWithStyles:shelf_] autorelease];
  EXPECT_GT([[picker allTable] numberOfRows], 1000);
  [picker searchFor:@"ieee"];
  ASSERT_GT([[picker allTable] numberOfRows], 1);
  [[picker allTable] selectRowIndexes:[NSIndexSet indexSetWithIndexesInRange:NSMakeRange(0, 2)]
                 byExtendingSelection:NO];
  [picker addFavorites:nil];
  [picker addFavorites:nil];
  const std::vector<std::string> added = shelf_.favorites();
  ASSERT_EQ(added.size(), 2U);
  [[picker favoritesTable] selectRowIndexes:[NSIndexSet indexSetWithIndex:1]
                       byExtendingSelection:NO];
  [picker moveFavoriteUp:nil];
  EXPECT_THAT(shelf_.favorites(), ElementsAre(added[1], added[0]));
  [picker moveFavoriteUp:nil];
  EXPECT_THAT(shelf_.favorites(), ElementsAre(added[1], added[0]));
  [picker moveFavoriteDown:nil];
  EXPECT_EQ(shelf_.favorites(), added);
  [[picker allTable] selectRowIndexes:[NSIndexSet indexSetWithIndex:1] byExtendingSelection:NO];
  [picker makeDefault:nil];
  EXPECT_EQ(shelf_.defaultStyle(), added[1]);
  EXPECT_THAT(utf8([picker defaultText]), HasSubstr(added[1]));
  [[picker favoritesTable] selectRowIndexes:[NSIndexSet indexSetWithIndex:0]
                       byExtendingSelection:NO];
  [picker removeFavorites:nil];
  EXPECT_THAT(shelf_.favorites(), ElementsAre(added[1]));
  [[NSUserDefaults standardUserDefaults] removeObjectForKey:@"FavoriteStyles"];
  [[NSUserDefaults standardUserDefaults] removeObjectForKey:@"DefaultStyle"];
}

TEST_F(Windows, AModalDialogIsAnnouncedWithTheCodeThatEndedIt) {
  NSWindow *dialog =
      korvo::windows::makeWindow(@"Dialog", NSMakeSize(200, 100), NSMakeSize(100, 50));
  testing::internal::CaptureStdout();
  platform::RunLoopTimer end([] { [static_cast<KOApplication *>(NSApp) endRun]; });
  end.callAfter(std::chrono::milliseconds(50));
  const NSInteger code = [NSApp runModalForWindow:dialog];
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "dialog: open\ndialog: closed 0\n");
  EXPECT_EQ(code, 0);
  [dialog close];
  // The end that was asked for inside the dialog ends the run loop now.
  [NSApp run];
}

TEST_F(Windows, ADialogThatIsOnlyJustOpeningIsEndedToo) {
  NSWindow *dialog =
      korvo::windows::makeWindow(@"Dialog", NSMakeSize(200, 100), NSMakeSize(100, 50));
  // Asked for in whatever mode the run loop is in first.
  platform::RunLoopTimer end([] { [static_cast<KOApplication *>(NSApp) endRun]; });
  end.callAfter(std::chrono::microseconds(0));
  EXPECT_EQ([NSApp runModalForWindow:dialog], 0);
  [dialog close];
  [NSApp run];
}

TEST_F(Windows, AnEndAskedForBeforeTheRunLoopStartsIsNotLost) {
  [(KOApplication *)NSApp endRun];
  [NSApp run];
}
