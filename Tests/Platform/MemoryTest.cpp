#include <Platform/SealedMemoryFile.h>
#include <Platform/SharedBytes.h>

#include <ApplicationServices/MacErrors.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

using platform::largestInlineSize;
using platform::SealedMemoryFile;
using platform::SharedBytes;

constexpr std::size_t noLimit = std::size_t{1} << 40;

class OwnedDescriptor {
 public:
  explicit OwnedDescriptor(int number) : number_(number) {}
  ~OwnedDescriptor() { close(number_); }
  OwnedDescriptor(const OwnedDescriptor &) = delete;
  OwnedDescriptor &operator=(const OwnedDescriptor &) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

int memoryFile(std::string_view contents, int seals) {
  const int file = memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING);
  EXPECT_EQ(write(file, contents.data(), contents.size()), static_cast<ssize_t>(contents.size()));
  EXPECT_EQ(fcntl(file, F_ADD_SEALS, seals), 0);
  return file;
}

std::string textOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

constexpr int allSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL;

TEST(SealedMemoryFile, HasAllFourSealsAndTheContents) {
  const std::string text = "some bytes";
  const auto file = SealedMemoryFile::create(std::as_bytes(std::span(text)));
  ASSERT_TRUE(file);
  EXPECT_EQ(textOf(file->contents()), text);
  EXPECT_EQ(fcntl(file->descriptor(), F_GET_SEALS) & allSeals, allSeals);
  EXPECT_EQ(fcntl(file->descriptor(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(SealedMemoryFile, OpensAFullySealedFile) {
  const OwnedDescriptor file(memoryFile("abc", allSeals));
  const auto opened = SealedMemoryFile::open(file.number(), noLimit);
  ASSERT_TRUE(opened);
  EXPECT_EQ(textOf(opened->contents()), "abc");
}

TEST(SealedMemoryFile, OpensAnEmptyFile) {
  const OwnedDescriptor file(memoryFile("", allSeals));
  const auto opened = SealedMemoryFile::open(file.number(), noLimit);
  ASSERT_TRUE(opened);
  EXPECT_TRUE(opened->contents().empty());
}

TEST(SealedMemoryFile, RefusesAFileThatLacksAnyOneSeal) {
  for (const int missing : {F_SEAL_SHRINK, F_SEAL_GROW, F_SEAL_WRITE, F_SEAL_SEAL}) {
    const OwnedDescriptor file(memoryFile("abc", allSeals & ~missing));
    const auto opened = SealedMemoryFile::open(file.number(), noLimit);
    ASSERT_FALSE(opened) << missing;
    EXPECT_EQ(opened.error(), errAECorruptData);
  }
}

TEST(SealedMemoryFile, RefusesWhatIsNoMemoryFile) {
  int pipeEnds[2];
  ASSERT_EQ(pipe(pipeEnds), 0);
  const OwnedDescriptor readEnd(pipeEnds[0]);
  const OwnedDescriptor writeEnd(pipeEnds[1]);
  const OwnedDescriptor device(open("/dev/null", O_RDONLY | O_CLOEXEC));
  const OwnedDescriptor folder(open("/", O_RDONLY | O_CLOEXEC));
  const OwnedDescriptor onDisk(open("/proc/self/exe", O_RDONLY | O_CLOEXEC));
  for (const int number :
       {readEnd.number(), device.number(), folder.number(), onDisk.number(), -1}) {
    const auto opened = SealedMemoryFile::open(number, noLimit);
    ASSERT_FALSE(opened) << number;
    EXPECT_EQ(opened.error(), errAECorruptData);
  }
}

TEST(SealedMemoryFile, RefusesAFileLongerThanAllowed) {
  const OwnedDescriptor file(memoryFile("abcd", allSeals));
  EXPECT_TRUE(SealedMemoryFile::open(file.number(), 4));
  EXPECT_FALSE(SealedMemoryFile::open(file.number(), 3));
}

TEST(SharedBytes, LieInAMemoryFileAboveTheInlineSizeOnly) {
  const std::string text(largestInlineSize + 1, 'x');
  const auto bytes = std::as_bytes(std::span(text));
  const auto small = SharedBytes::copyOf(bytes.first(largestInlineSize));
  const auto large = SharedBytes::copyOf(bytes);
  ASSERT_TRUE(small && large);
  EXPECT_EQ(small->memoryFile(), nullptr);
  ASSERT_NE(large->memoryFile(), nullptr);
  EXPECT_EQ(textOf(large->view()), text);
  EXPECT_EQ(textOf(small->view()), text.substr(1));
}

TEST(SharedBytes, CopiesShareAndOutliveTheOriginal) {
  SharedBytes copy;
  {
    const std::string text(largestInlineSize + 1, 'y');
    const auto original = SharedBytes::copyOf(std::as_bytes(std::span(text)));
    ASSERT_TRUE(original);
    copy = *original;
    EXPECT_EQ(copy.view().data(), original->view().data());
  }
  EXPECT_EQ(textOf(copy.view()), std::string(largestInlineSize + 1, 'y'));
}

}  // namespace
