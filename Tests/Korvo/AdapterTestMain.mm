// The host's own tests run in an AppKit process: fonts and windows need a display. What they
// remember goes into a directory of their own, never among the user's settings.
#import <StandIns/Korvo/Application/KOApplication.h>
#include <StandIns/Korvo/Windows/Appearance.h>

#import <Cocoa/Cocoa.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr const char *settingsVariable = "KORVO_ADAPTER_TEST_SETTINGS";

// Foundation reads its configuration before main begins: the process starts over with it.
// Returns only when that fails.
int startOverWithOwnSettings(char **arguments) {
  std::string pattern = (std::filesystem::temp_directory_path() / "korvo-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    return EXIT_FAILURE;
  }
  const std::string configuration = pattern + "/GNUstep.conf";
  std::ofstream(configuration) << "GNUSTEP_USER_CONFIG_FILE=\nGNUSTEP_USER_DEFAULTS_DIR=" << pattern
                               << "/Defaults\n";
  setenv("GNUSTEP_CONFIG_FILE", configuration.c_str(), 1);
  setenv(settingsVariable, pattern.c_str(), 1);
  execv("/proc/self/exe", arguments);
  return EXIT_FAILURE;
}

int runTests() {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  korvo::windows::registerAppearance();
  [KOApplication sharedApplication];
  const int status = RUN_ALL_TESTS();
  [pool release];
  return status;
}

}  // namespace

int main(int argc, char **argv) {
  std::vector<char *> arguments(argv, argv + argc + 1);
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) {
    return RUN_ALL_TESTS();
  }
  if (std::getenv("DISPLAY") == nullptr) {
    std::cerr << "These tests need a display (DISPLAY); Scripts/with-desktop gives them one.\n";
    return EXIT_FAILURE;
  }
  const char *settings = std::getenv(settingsVariable);
  if (settings == nullptr) {
    return startOverWithOwnSettings(arguments.data());
  }
  const int status = runTests();
  std::error_code ignored;
  std::filesystem::remove_all(settings, ignored);
  return status;
}
