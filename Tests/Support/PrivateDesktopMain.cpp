// Every run of these tests has a bus and a display of its own: two hosts on one bus would be in
// each other's way, and the clicks of a test should not land in anybody's windows. So the program
// starts itself once more within a private desktop, unless it only lists its tests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// The private desktop's command keeps the pid, so the value is right in the one process it was made
// for and wrong in a process that inherited it.
constexpr const char *desktopOwner = "KORVO_TEST_DESKTOP_OWNER";

bool hasDesktop() {
  const char *owner = std::getenv(desktopOwner);
  return owner != nullptr && owner == std::to_string(getpid());
}

int startAgainOnDesktop(char **argv) {
  setenv(desktopOwner, std::to_string(getpid()).c_str(), 1);
  std::string program = WITH_DESKTOP;
  std::string option = "--private";
  std::vector<char *> arguments = {program.data(), option.data()};
  for (char **argument = argv; *argument != nullptr; ++argument) {
    arguments.push_back(*argument);
  }
  arguments.push_back(nullptr);
  execv(program.c_str(), arguments.data());
  std::perror(program.c_str());
  return 1;
}

}  // namespace

int main(int argc, char **argv) {
  std::vector<char *> original(argv, argv + argc + 1);
  testing::InitGoogleMock(&argc, argv);
  if (!testing::GTEST_FLAG(list_tests) && !hasDesktop()) {
    return startAgainOnDesktop(original.data());
  }
  return RUN_ALL_TESTS();
}
