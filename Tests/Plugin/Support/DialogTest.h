// Tests of the scan dialog in the real application object, with the real nib in a real window. The
// program they are in runs on a desktop of its own.
#pragma once

#include "LogCapture.h"
#import "RecordingHost.h"
#include "Text.h"

#include <Tests/Support/CallLog.h>

#import <Cocoa/Cocoa.h>
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#import <KOMellelScanController.h>

#include <initializer_list>
#include <optional>
#include <string>

namespace plugin_test {

class DialogTest : public testing::Test {
 protected:
  static void SetUpTestSuite();
  void SetUp() override;
  void TearDown() override;

  // The host's favourites, all of which it knows.
  void offer(std::initializer_list<const char *> styleNames);
  void open();
  // The reason of the exception that opening it throws; "(nil)" where it throws none.
  std::string thrownByOpening();

  // The style that the user's defaults hold, its name where all is well; nil for none.
  static void setLastStyle(id name);
  static std::string lastStyle();

  // Those of the dialog that was opened.
  NSWindow *window() { return [controller_ window]; }
  NSPopUpButton *menu() { return [controller_ valueForKey:@"formatSelectorPopUpButton"]; }
  NSButton *button() { return [controller_ valueForKey:@"generateCopyWithBibInStyleButton"]; }
  // The sentence above the menu.
  NSTextField *label();
  std::string selectedTitle() { return str([menu() titleOfSelectedItem]); }
  std::string selectedStyle();
  // No text is cut off, nothing overlaps, and the margins are kept.
  void expectRoomForEverything();

  NSAutoreleasePool *pool_ = nil;
  RecordingHost *host_ = nil;
  KOMellelScanController *controller_ = nil;
  std::optional<LogCapture> log_;
};

}  // namespace plugin_test
