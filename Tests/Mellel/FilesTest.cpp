#include <StandIns/Mellel/Documents/Files.h>
#include <StandIns/Mellel/Documents/FileWatch.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace mellel::documents {
namespace {

using console::Status;

namespace fs = std::filesystem;

class Files : public ::testing::Test {
 protected:
  Files() { own_.write("in.rtf", "content"); }

  std::string input() const { return folder_ / "in.rtf"; }
  std::string path(const std::string &name) const { return folder_ / name; }
  std::size_t count() const { return own_.fileCount(); }

  test_support::TemporaryDirectory own_;
  fs::path folder_ = own_.path();
};

TEST_F(Files, ReadingGivesTheBytes) { EXPECT_EQ(readFile(input())->bytes, "content"); }

TEST_F(Files, WhatIsNoFileIsNotRead) {
  EXPECT_EQ(readFile(path("none")).error().line,
            "cannot read " + path("none") + ": No such file or directory");
  EXPECT_EQ(readFile(folder_).error().line, "cannot read " + folder_.string() + ": it is no file");
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  EXPECT_FALSE(readFile(path("pipe")));
}

TEST_F(Files, CopyStandsBesideTheDocument) {
  EXPECT_EQ(defaultOutputPath("/a/draft.rtf"), "/a/draft formatted.rtf");
  EXPECT_EQ(defaultOutputPath("draft.v2.rtf"), "draft.v2 formatted.rtf");
  EXPECT_EQ(defaultOutputPath("draft"), "draft formatted.rtf");
}

TEST_F(Files, DocumentItselfIsNoPlaceForTheCopyByWhateverName) {
  fs::create_symlink(input(), path("link.rtf"));
  fs::create_hard_link(input(), path("other.rtf"));
  for (const std::string &name :
       {input(), path("link.rtf"), path("other.rtf"),
        folder_.string() + "/../" + folder_.filename().string() + "/./in.rtf"}) {
    const auto output = resolveOutput(input(), name);
    ASSERT_FALSE(output) << name;
    EXPECT_EQ(output.error().status, Status::wrongUsage);
  }
  EXPECT_EQ(resolveOutput(path("link.rtf"), input()).error().status, Status::wrongUsage);
}

TEST_F(Files, FolderIsNoPlaceForTheCopy) {
  EXPECT_EQ(resolveOutput(input(), folder_).error().status, Status::wrongUsage);
}

TEST_F(Files, LinkToAnotherFileIsFollowed) {
  std::ofstream(path("real.rtf")) << "old";
  fs::create_symlink(path("real.rtf"), path("link.rtf"));
  const auto output = resolveOutput(input(), path("link.rtf"));
  ASSERT_TRUE(output);
  ASSERT_TRUE(writeFile(*output, "new", input(), {}));
  EXPECT_TRUE(fs::is_symlink(path("link.rtf")));
  EXPECT_EQ(readFile(path("real.rtf"))->bytes, "new");
}

TEST_F(Files, NewCopyHasThePermissionsOfTheDocumentAndAnOldOneKeepsItsOwn) {
  ASSERT_EQ(chmod(input().c_str(), 0600), 0);
  ASSERT_TRUE(writeFile(path("out.rtf"), "new", input(), {}));
  EXPECT_EQ(fs::status(path("out.rtf")).permissions(), fs::perms(0600));
  ASSERT_EQ(chmod(path("out.rtf").c_str(), 0640), 0);
  ASSERT_TRUE(writeFile(path("out.rtf"), "newer", input(), {}));
  EXPECT_EQ(fs::status(path("out.rtf")).permissions(), fs::perms(0640));
  EXPECT_EQ(readFile(path("out.rtf"))->bytes, "newer");
  EXPECT_EQ(count(), 2U);
}

TEST_F(Files, NothingIsLeftBehindWhereACopyCannotBeWritten) {
  fs::create_directory(path("taken"));
  EXPECT_FALSE(writeFile(path("taken"), "new", input(), {}));
  EXPECT_FALSE(writeFile(path("none/out.rtf"), "new", input(), {}));
  EXPECT_EQ(count(), 2U);
}

TEST_F(Files, WatchNoticesSavingInPlaceAndByRenaming) {
  auto watch = FileWatch::start(input());
  ASSERT_TRUE(watch);
  EXPECT_FALSE(watch->wasSaved());
  std::ofstream(input()) << "changed";
  EXPECT_TRUE(watch->wasSaved());
  EXPECT_FALSE(watch->wasSaved());
  std::ofstream(path("beside")) << "changed again";
  EXPECT_FALSE(watch->wasSaved());
  fs::rename(path("beside"), input());
  EXPECT_TRUE(watch->wasSaved());
}

TEST_F(Files, WatchFollowsALinkToTheFile) {
  fs::create_directory(path("sub"));
  fs::create_symlink(input(), path("sub/link.rtf"));
  auto watch = FileWatch::start(path("sub/link.rtf"));
  ASSERT_TRUE(watch);
  std::ofstream(input()) << "changed";
  EXPECT_TRUE(watch->wasSaved());
}

TEST_F(Files, WhatIsNotThereCannotBeWatched) { EXPECT_FALSE(FileWatch::start(path("none"))); }

}  // namespace
}  // namespace mellel::documents
