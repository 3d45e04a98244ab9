// Two programs change one library at the same time: no change is lost, also where one of them is
// killed in the middle of one.
#include <StandIns/Korvo/Library/Library.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>
#include <thread>

namespace {

using namespace korvo::library;
using namespace std::chrono_literals;

constexpr int changesOfEach = 500;

// Puts the letter behind the title of the only reference, so often; whoever finds the library in
// use tries again. How often it was in use, or -1 after any other error.
int changeTitle(const std::filesystem::path &file, char letter, int times) {
  auto opened = Library::open(file);
  int inUse = 0;
  for (int change = 0; change < times;) {
    const auto changed =
        opened ? opened->edit(1,
                              [letter](const NewReference &present)
                                  -> std::expected<NewReference, std::string> {
                                NewReference next = present;
                                next.cslJson.insert(next.cslJson.find("\"}"), 1, letter);
                                return next;
                              })
               : std::unexpected(opened.error());
    if (changed) {
      ++change;
    } else if (changed.error().ends_with("another program is using it")) {
      ++inUse;
      if (!opened) {
        opened = Library::open(file);
      }
    } else {
      std::fprintf(stderr, "%s\n", changed.error().c_str());
      return -1;
    }
  }
  return inUse;
}

pid_t inAProcess(const std::filesystem::path &file, char letter, int times) {
  const pid_t child = fork();
  if (child == 0) {
    _exit(changeTitle(file, letter, times) < 0 ? 1 : 0);
  }
  return child;
}

class SharedLibrary : public testing::Test {
 protected:
  SharedLibrary() {
    auto made = Library::openOrCreate(file_);
    const NewReference one = {.identifier = "ONE", .cslJson = R"({"type":"book","title":"T"})"};
    EXPECT_TRUE(made && made->add({&one, 1}));
  }

  std::string title() {
    auto library = Library::open(file_);
    EXPECT_TRUE(library && library->checkWhole());
    return library ? **library->cslJson(1) : "";
  }

  const test_support::TemporaryDirectory directory_;
  const std::filesystem::path file_ = directory_.path() / "my.korvolib";
};

TEST_F(SharedLibrary, NoChangeOfTwoProgramsIsLost) {
  const pid_t children[] = {inAProcess(file_, 'a', changesOfEach),
                            inAProcess(file_, 'b', changesOfEach)};
  for (const pid_t child : children) {
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  const std::string found = title();
  EXPECT_EQ(std::ranges::count(found, 'a'), changesOfEach);
  // One stands in "book".
  EXPECT_EQ(std::ranges::count(found, 'b'), changesOfEach + 1);
}

TEST_F(SharedLibrary, OneKilledAtAnyMomentKeepsTheOtherFromNothing) {
  constexpr int kills = 8;
  for (int kill = 0; kill < kills; ++kill) {
    const pid_t victim = inAProcess(file_, 'v', 1'000'000);
    std::this_thread::sleep_for(10ms + kill * 3ms);
    ::kill(victim, SIGKILL);
    waitpid(victim, nullptr, 0);
    ASSERT_GE(changeTitle(file_, 'a', 2), 0);
    EXPECT_EQ(std::ranges::count(title(), 'a'), 2 * (kill + 1));
  }
  std::printf("figure: %d kills, %td changes of the killed were made whole\n", kills,
              std::ranges::count(title(), 'v'));
}

}  // namespace
