// The private desktop itself: what it gives a command, and that nothing of it is left.

#include <Tests/Support/ChildProcess.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace {

using test_support::ChildProcess;
using test_support::Result;
using test_support::run;
using testing::HasSubstr;
using testing::StartsWith;

std::string withDesktop() { return std::string(PROJECT_DIRECTORY) + "/Scripts/with-desktop"; }

std::string firstLine(const std::string &text) { return text.substr(0, text.find('\n')); }

// Where the desktop keeps its sockets, by the address of its bus.
std::filesystem::path directoryOf(const std::string &busAddress) {
  const std::string prefix = "unix:path=";
  return std::filesystem::path(busAddress.substr(prefix.size())).parent_path();
}

bool isGone(const std::filesystem::path &directory) {
  for (int attempt = 0; attempt < 500 && std::filesystem::exists(directory); ++attempt) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return !std::filesystem::exists(directory);
}

TEST(Desktop, HandsOnArgumentsAndStatus) {
  const Result result =
      run({withDesktop(), "--private", "sh", "-c", "echo \"$1\"; exit 7", "sh", "two words"});
  EXPECT_EQ(result.status, 7) << result.standardError;
  EXPECT_EQ(result.standardOutput, "two words\n");
}

TEST(Desktop, HasABusAndADisplayOfItsOwn) {
  const Result result =
      run({withDesktop(), "--private", "sh", "-c",
           "echo $DBUS_SESSION_BUS_ADDRESS $DISPLAY; xdotool getdisplaygeometry"});
  ASSERT_EQ(result.status, 0) << result.standardError;
  EXPECT_THAT(result.standardOutput, StartsWith("unix:path="));
  EXPECT_THAT(result.standardOutput, HasSubstr("1280 1024"));
  const char *outer = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  ASSERT_NE(outer, nullptr);
  EXPECT_NE(firstLine(result.standardOutput).substr(0, std::string(outer).size()), outer);
}

TEST(Desktop, UsesWhatIsThereUnlessToldOtherwise) {
  const Result result =
      run({withDesktop(), "sh", "-c", "test \"$DISPLAY\" = \"$1\"", "sh", std::getenv("DISPLAY")});
  EXPECT_EQ(result.status, 0) << result.standardError;
}

TEST(Desktop, EndsWithItsCommand) {
  const Result result =
      run({withDesktop(), "--private", "sh", "-c", "echo $DBUS_SESSION_BUS_ADDRESS"});
  ASSERT_THAT(result.standardOutput, StartsWith("unix:path="));
  EXPECT_TRUE(isGone(directoryOf(firstLine(result.standardOutput))));
}

TEST(Desktop, EndsWithACommandThatWasKilled) {
  ChildProcess command(
      {withDesktop(), "--private", "sh", "-c", "echo $DBUS_SESSION_BUS_ADDRESS; exec sleep 60"});
  ASSERT_TRUE(command.waitForLine("unix:path=")) << command.standardError();
  const std::filesystem::path directory = directoryOf(firstLine(command.standardOutput()));
  ASSERT_TRUE(std::filesystem::exists(directory));
  command.send(SIGKILL);
  EXPECT_EQ(command.waitForExit(), 128 + SIGKILL);
  EXPECT_TRUE(isGone(directory));
}

TEST(Desktop, WithoutACommandSaysHowToUseIt) {
  const Result result = run({withDesktop(), "--private"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.standardError, HasSubstr("with-desktop [--private] COMMAND"));
}

}  // namespace
