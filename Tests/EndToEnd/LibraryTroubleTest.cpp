// A library that cannot be written, or not to the end, or read: one line that names it, the status
// 1, and the library that was there is there as it was.
#include "Applications.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <iterator>
#include <thread>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
using testing::AnyOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int libraryNotToBeHad = 1;
constexpr int manyCount = 3000;

class LibraryTrouble : public testing::Test {
 protected:
  LibraryTrouble() {
    writeFile(few_, entries("few", 3));
    writeFile(many_, entries("many", manyCount));
  }

  static std::string entries(const std::string &prefix, int count) {
    std::string json = "[";
    for (int number = 0; number < count; ++number) {
      const std::string name = prefix + std::to_string(number);
      json += (number == 0 ? "" : ",\n") + (R"({"id":")" + name) +
              R"(","type":"book","title":"T","author":[{"family":")" + name +
              R"("}],"issued":{"date-parts":[[2001]]},"abstract":")" + std::string(400, 'a') +
              "\"}";
    }
    return json + "]";
  }

  std::vector<std::string> import(const std::filesystem::path &file) const {
    return {program("korvo"), "import", file.string(), "--into", library_.string()};
  }
  // With the limit that the shell's ulimit -f puts on the size of files, in units of 512 bytes or
  // of 1,024.
  std::vector<std::string> importWithLimit(const std::filesystem::path &file) const {
    std::vector<std::string> arguments = {"/bin/sh", "-c", "ulimit -f 40 && exec \"$@\"", "sh"};
    const auto command = import(file);
    arguments.insert(arguments.end(), command.begin(), command.end());
    return arguments;
  }

  void makeLibrary() {
    ASSERT_EQ(run(import(few_)).status, 0);
    bytes_ = readFile(library_);
    ASSERT_FALSE(bytes_.empty());
  }

  void expectRefused(const Result &result, const std::string &reason) const {
    EXPECT_EQ(result.status, libraryNotToBeHad);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_THAT(result.standardError, StartsWith("korvo: " + library_.string() + ": "));
    EXPECT_THAT(result.standardError, HasSubstr(reason));
    EXPECT_EQ(std::ranges::count(result.standardError, '\n'), 1) << result.standardError;
  }

  // The two files to import from, the library if it is there, and nothing else.
  void expectNothingBeside() const {
    const auto files = std::distance(std::filesystem::directory_iterator(folder_.path()), {});
    EXPECT_EQ(files, std::filesystem::exists(library_) ? 3 : 2);
  }

  const TemporaryDirectory folder_;
  const std::filesystem::path few_ = folder_.path() / "few.json";
  const std::filesystem::path many_ = folder_.path() / "many.json";
  const std::filesystem::path library_ = folder_.path() / "my.korvolib";
  std::string bytes_;
};

TEST_F(LibraryTrouble, ImportThatFindsNoRoomLeavesTheLibraryAsItWasAndMakesNone) {
  expectRefused(run(importWithLimit(many_)), "");
  EXPECT_FALSE(std::filesystem::exists(library_));
  expectNothingBeside();
  makeLibrary();
  expectRefused(run(importWithLimit(many_)), "");
  EXPECT_EQ(readFile(library_), bytes_);
  expectNothingBeside();
}

TEST_F(LibraryTrouble, ImportThatIsKilledInTheMiddleLeavesTheLibraryWhole) {
  makeLibrary();
  for (const auto later : {0ms, 5ms, 30ms}) {
    ChildProcess korvo(import(many_));
    // While it is there the library is being changed.
    const auto journal = library_.string() + "-journal";
    while (korvo.isRunning() && !std::filesystem::exists(journal)) {
      std::this_thread::sleep_for(1ms);
    }
    std::this_thread::sleep_for(later);
    korvo.send(SIGKILL);
    ASSERT_TRUE(korvo.waitForExit());
    // All that was there is, and of what was to come all or nothing.
    const Result again = run(import(few_));
    EXPECT_EQ(again.status, 0) << again.standardError;
    EXPECT_EQ(again.standardOutput,
              "imported 0 references into " + library_.string() + " (3 were there already)\n");
  }
  const Result whole = run(import(many_));
  EXPECT_EQ(whole.status, 0) << whole.standardError;
  const std::string count = std::to_string(manyCount);
  EXPECT_THAT(whole.standardOutput,
              AnyOf("imported " + count + " references into " + library_.string() + "\n",
                    "imported 0 references into " + library_.string() + " (" + count +
                        " were there already)\n"));
  expectNothingBeside();
}

TEST_F(LibraryTrouble, LibraryThatAnotherProcessHoldsIsToldAndLeftAlone) {
  makeLibrary();
  const int descriptor = open(library_.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(descriptor, 0);
  // The bytes by which SQLite's processes lock each other out.
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = 0x40000000;
  lock.l_len = 512;
  ASSERT_EQ(fcntl(descriptor, F_SETLK, &lock), 0);
  expectRefused(run(import(many_)), "another program is using it");
  expectRefused(run({program("korvo"), "--library", library_.string()}),
                "another program is using it");
  close(descriptor);
  EXPECT_EQ(readFile(library_), bytes_);
  expectNothingBeside();
  EXPECT_EQ(run(import(many_)).status, 0);
}

TEST_F(LibraryTrouble, DamagedLibraryIsToldAndLeftAlone) {
  makeLibrary();
  std::string withoutKind = bytes_;
  withoutKind[0] = 'X';
  for (const std::string &damaged :
       {bytes_.substr(0, bytes_.size() / 2), bytes_.substr(0, bytes_.size() - 1), withoutKind}) {
    writeFile(library_, damaged);
    expectRefused(run(import(many_)), "damaged");
    expectRefused(run({program("korvo"), "--library", library_.string()}), "damaged");
    EXPECT_EQ(readFile(library_), damaged);
    expectNothingBeside();
  }
}

}  // namespace
