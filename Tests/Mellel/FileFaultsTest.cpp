// Every system call behind a document fails in turn: a full disk, a disk that breaks, a folder that
// may not be written. The old copy stays whole, the new one is whole or not there, and nothing else
// is left in the folder.
#include "FailingSystemCalls.h"

#include <StandIns/Mellel/Documents/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

namespace mellel::documents {
namespace {

using console::Status;

namespace fs = std::filesystem;
using mellel_test::Fault;
using mellel_test::FaultPlan;
using ::testing::ElementsAre;

const std::string oldCopy = "{\\rtf1 the copy of yesterday}";
const std::string newCopy = "{\\rtf1 the copy of today, which is longer}";
constexpr int reasons[] = {ENOSPC, EDQUOT, EIO, EROFS, EACCES, ENOMEM, EMFILE};

class FileFaults : public ::testing::Test {
 protected:
  FileFaults() { folder_.write("in.rtf", "content"); }

  std::string document() const { return folder_ / "in.rtf"; }
  std::string target() const { return folder_ / "out.rtf"; }

  // The bytes of the target, read without the functions under test; nothing where it is not there.
  std::optional<std::string> targetBytes() const {
    std::ifstream file(target(), std::ios::binary);
    if (!file) {
      return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

  void putTarget(const std::optional<std::string> &bytes) {
    fs::remove(target());
    if (bytes) {
      std::ofstream(target(), std::ios::binary) << *bytes;
    }
  }

  std::size_t strayFiles() const {
    std::size_t files = 0;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder_.path())) {
      files += entry.path() != document() && entry.path() != target() ? 1 : 0;
    }
    return files;
  }

  // Writes with the call of that number failing. Whether that call was reached.
  bool writeWithFailure(std::size_t call, int reason, const std::optional<std::string> &before) {
    putTarget(before);
    Fault fault({.firstFailure = call, .error = reason});
    const auto written = writeFile(target(), newCopy, document(), {});
    const std::vector<std::string> &calls = fault.calls();
    if (written) {
      EXPECT_EQ(targetBytes(), newCopy);
    } else {
      EXPECT_EQ(targetBytes(), before);
      EXPECT_EQ(written.error().line, "cannot write " + target() + ": " + std::strerror(reason));
      EXPECT_EQ(written.error().status, Status::brokenDocumentOrReply);
    }
    EXPECT_EQ(strayFiles(), 0U);
    return call < calls.size();
  }

  test_support::TemporaryDirectory folder_;
};

TEST_F(FileFaults, CopyIsForcedToTheDiskBeforeItTakesItsPlaceAndItsNameAfter) {
  const Fault fault({});
  ASSERT_TRUE(writeFile(target(), newCopy, document(), {}));
  EXPECT_THAT(fault.calls(),
              ElementsAre("mkostemp", "fchmod", "write", "fsync", "rename", "open", "fsync"));
}

TEST_F(FileFaults, CopyIsWholeOrNotThereWhicheverCallFails) {
  for (const std::optional<std::string> &before :
       {std::optional(oldCopy), std::optional<std::string>()}) {
    for (const int reason : reasons) {
      std::size_t call = 0;
      while (writeWithFailure(call, reason, before)) {
        ++call;
      }
      EXPECT_EQ(call, 7U) << std::strerror(reason);
    }
  }
}

TEST_F(FileFaults, FailureBeforeTheRenameIsTold) {
  for (std::size_t call = 0; call < 5; ++call) {
    Fault fault({.firstFailure = call, .error = ENOSPC});
    EXPECT_FALSE(writeFile(target(), newCopy, document(), {})) << fault.calls().back();
  }
}

TEST_F(FileFaults, OldCopyStaysWholeWhenTheDiskGoesAwayForGood) {
  for (std::size_t call = 0; call < 5; ++call) {
    putTarget(oldCopy);
    {
      Fault fault({.firstFailure = call, .failures = FaultPlan::never, .error = EIO});
      EXPECT_FALSE(writeFile(target(), newCopy, document(), {}));
    }
    EXPECT_EQ(targetBytes(), oldCopy) << call;
  }
}

TEST_F(FileFaults, WritesThatTakeOneByteAtATimeGiveTheWholeCopy) {
  const Fault fault({.largestTransfer = 1});
  ASSERT_TRUE(writeFile(target(), newCopy, document(), {}));
  EXPECT_EQ(targetBytes(), newCopy);
  EXPECT_GE(fault.calls().size(), newCopy.size());
}

TEST_F(FileFaults, InterruptedWritesAndReadsAreTakenUpAgain) {
  {
    Fault fault({.firstFailure = 2, .failures = 5, .error = EINTR, .largestTransfer = 3});
    ASSERT_TRUE(writeFile(target(), newCopy, document(), {}));
    EXPECT_EQ(fault.calls().at(6), "write");
  }
  EXPECT_EQ(targetBytes(), newCopy);
  Fault fault({.firstFailure = 2, .failures = 5, .error = EINTR, .largestTransfer = 3});
  EXPECT_EQ(readFile(target())->bytes, newCopy);
  EXPECT_EQ(fault.calls().at(6), "pread");
}

TEST_F(FileFaults, DiskThatTakesNothingEndsTheWriting) {
  putTarget(oldCopy);
  Fault fault({.firstFailure = 2, .error = 0});
  const auto written = writeFile(target(), newCopy, document(), {});
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().line, "cannot write " + target() + ": " + std::strerror(EIO));
  EXPECT_EQ(targetBytes(), oldCopy);
  EXPECT_EQ(strayFiles(), 0U);
}

TEST_F(FileFaults, DocumentIsReadWholeOrNotAtAllWhicheverCallFails) {
  putTarget(oldCopy);
  for (const int reason : reasons) {
    std::size_t call = 0;
    for (;; ++call) {
      Fault fault({.firstFailure = call, .error = reason, .largestTransfer = 5});
      const auto bytes = readFile(target());
      if (call >= fault.calls().size()) {
        EXPECT_EQ(bytes->bytes, oldCopy);
        break;
      }
      ASSERT_FALSE(bytes) << fault.calls().back();
      EXPECT_EQ(bytes.error().line, "cannot read " + target() + ": " + std::strerror(reason));
    }
    EXPECT_GT(call, 2U);
  }
}

// A file that only claims its size would make the process ask for all of that memory.
TEST_F(FileFaults, FileLargerThanAnyDocumentIsNotRead) {
  std::ofstream(target()).close();
  fs::resize_file(target(), std::uintmax_t{1} << 40);
  const auto bytes = readFile(target());
  ASSERT_FALSE(bytes);
  EXPECT_EQ(bytes.error().line, "cannot read " + target() + ": it is larger than 1 GiB");
}

// What a program that saves in place leaves for a moment: half of the old, half of the new.
TEST_F(FileFaults, DocumentThatIsWrittenToMeanwhileIsReadAgain) {
  putTarget(std::string(40, 'a') + "\n");
  int reads = 0;
  const auto save = [&] {
    if (++reads == 1) {
      std::ofstream(target(), std::ios::in | std::ios::binary) << std::string(40, 'b');
    }
  };
  const Fault fault({.largestTransfer = 20, .afterReading = save});
  EXPECT_EQ(readFile(target())->bytes, std::string(40, 'b') + "\n");
}

TEST_F(FileFaults, DocumentThatShrinksMeanwhileIsReadAgain) {
  putTarget(std::string(40, 'a'));
  const auto shrink = [&] {
    if (fs::file_size(target()) > 5) {
      fs::resize_file(target(), 5);
    }
  };
  const Fault fault({.largestTransfer = 20, .afterReading = shrink});
  EXPECT_EQ(readFile(target())->bytes, "aaaaa");
}

TEST_F(FileFaults, DocumentThatNeverStopsGrowingIsGivenUp) {
  putTarget("a");
  const auto grow = [&] { std::ofstream(target(), std::ios::app) << std::string(100, 'a'); };
  const Fault fault({.afterReading = grow});
  const auto bytes = readFile(target());
  ASSERT_FALSE(bytes);
  EXPECT_EQ(bytes.error().line, "cannot read " + target() + ": another program is writing to it");
}

TEST_F(FileFaults, DocumentThatWasMovedToTheCopysPlaceIsNotReplaced) {
  const auto read = readFile(document());
  ASSERT_TRUE(read);
  fs::rename(document(), target());
  const auto written = writeFile(target(), newCopy, document(), read->identity);
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().status, Status::wrongUsage);
  EXPECT_EQ(targetBytes(), "content");
  EXPECT_EQ(strayFiles(), 0U);
}

}  // namespace
}  // namespace mellel::documents
