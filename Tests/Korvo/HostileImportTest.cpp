// Library files that ask for more than a machine has.

#include <StandIns/Korvo/Engine/LibraryImporter.h>
#include <StandIns/Korvo/Engine/TextFile.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using korvo::engine::LibraryImporter;
using testing::HasSubstr;

// 262 million characters out of 20 lines.
std::string ladder() {
  std::string text = "@string{a0 = \"" + std::string(1000, 'x') + "\"}\n";
  for (int step = 1; step < 19; ++step) {
    const std::string before = "a" + std::to_string(step - 1);
    text += "@string{a" + std::to_string(step) + " = " + before + " # " + before + "}\n";
  }
  return text + "@book{k, title = a18, author = {Smith, John}, year = 2001}\n";
}

TEST(HostileImport, ALadderOfAbbreviationsEndsAtItsBoundAndTheEntryStays) {
  const test_support::TemporaryDirectory directory;
  LibraryImporter importer;
  const auto imported = importer.importFile(directory.write("ladder.bib", ladder()));
  ASSERT_TRUE(imported) << imported.error();
  ASSERT_EQ(imported->references.size(), 1U);
  EXPECT_LT(imported->references[0].cslJson.size(), 1'000U);
  ASSERT_FALSE(imported->problems.empty());
  EXPECT_THAT(imported->problems[0].message(),
              HasSubstr("ladder.bib:8: the abbreviation \"a7\" stands for more than 65536"));
}

TEST(HostileImport, ARecordOfManyMebibytesIsLeftOutAndTold) {
  const test_support::TemporaryDirectory directory;
  LibraryImporter importer;
  const auto file = directory.write(
      "large.json", R"([{"id":"small","type":"book"},{"id":"large","type":"book","title":")" +
                        std::string(17 * 1'048'576, 't') + "\"}]");
  const auto imported = importer.importFile(file);
  ASSERT_TRUE(imported) << imported.error();
  EXPECT_EQ(imported->references.size(), 1U);
  ASSERT_EQ(imported->problems.size(), 1U);
  EXPECT_THAT(imported->problems[0].reason, HasSubstr("large: it is larger than 16 MiB"));
}

TEST(HostileImport, AFileWithoutEndIsReadToTheBoundOnly) {
  const test_support::TemporaryDirectory directory;
  const auto link = directory / "endless.bib";
  std::filesystem::create_symlink("/dev/zero", link);
  const auto read = korvo::engine::readFile(link);
  ASSERT_FALSE(read);
  EXPECT_THAT(read.error(), HasSubstr("endless.bib: it is larger than 256 MiB"));
}

TEST(HostileImport, AFileOfExactlyTheBoundIsRead) {
  const test_support::TemporaryDirectory directory;
  const auto file = directory.write("whole.bib", "");
  std::filesystem::resize_file(file, korvo::engine::largestTextFile);
  EXPECT_TRUE(korvo::engine::readFile(file));
  std::filesystem::resize_file(file, korvo::engine::largestTextFile + 1);
  EXPECT_FALSE(korvo::engine::readFile(file));
}

}  // namespace
