#include <StandIns/Korvo/Library/LibraryFile.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>

using korvo::library::importIntoLibraryFile;
using korvo::library::openLibraryFile;
using test_support::readFile;
using test_support::TemporaryDirectory;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

constexpr const char *twoEntries =
    "@book{smith2001, author = {Smith, John}, title = {On Heat}, year = {2001}}\n"
    "@book{gogh1888, author = {van Gogh, Vincent}, title = {Letters}, year = {1888}}\n";
constexpr const char *oneRecord = "TY  - BOOK\nAU  - Jones, Ann\nTI  - Cold\nPY  - 1999\nER  - \n";

korvo::engine::ImportFunction importer() {
  static korvo::engine::LibraryImporter shared;
  return [](const auto &file, const auto &progress) { return shared.importFile(file, progress); };
}

std::size_t countIn(const std::filesystem::path &file) {
  auto opened = korvo::library::Library::open(file);
  EXPECT_TRUE(opened) << opened.error();
  return opened ? *opened->count() : 0;
}

}  // namespace

TEST(LibraryFile, TellsExportsFromItsOwnFilesByTheirExtension) {
  EXPECT_TRUE(korvo::engine::isImportable("a/library.bib"));
  EXPECT_TRUE(korvo::engine::isImportable("LIBRARY.RIS"));
  EXPECT_TRUE(korvo::engine::isImportable("x.y.json"));
  EXPECT_FALSE(korvo::engine::isImportable("my.korvolib"));
  EXPECT_FALSE(korvo::engine::isImportable("library"));
  EXPECT_FALSE(korvo::engine::isImportable("bib"));
}

TEST(LibraryFile, AnExportIsOpenedInMemoryAndStaysAsItIs) {
  const TemporaryDirectory directory;
  const auto file = directory.write("library.bib", twoEntries);
  auto opened = openLibraryFile(file, importer());
  ASSERT_TRUE(opened) << opened.error();
  EXPECT_TRUE(opened->library.isTemporary());
  EXPECT_THAT(opened->problems, SizeIs(0));
  EXPECT_THAT(*opened->library.matching("smith2001"), SizeIs(1));
  EXPECT_THAT(*opened->library.matching("Gogh 1888"), SizeIs(1));
  EXPECT_EQ(readFile(file), twoEntries);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory / ""), {}), 1);
}

TEST(LibraryFile, ABrokenEntryIsReportedAndTheOthersAreThere) {
  const TemporaryDirectory directory;
  auto opened =
      openLibraryFile(directory.write("broken.bib", "@book{broken, title = {never closed\n\n" +
                                                        std::string(twoEntries)),
                      importer());
  ASSERT_TRUE(opened) << opened.error();
  EXPECT_THAT(opened->problems, testing::Not(SizeIs(0)));
  EXPECT_THAT(*opened->library.matching("gogh1888"), SizeIs(1));
}

TEST(LibraryFile, AFileThatIsNotThereIsNamed) {
  for (const char *name : {"/no/such.bib", "/no/such.korvolib"}) {
    const auto opened = openLibraryFile(name, importer());
    ASSERT_FALSE(opened);
    EXPECT_THAT(opened.error(), HasSubstr(name));
    EXPECT_EQ(opened.error().find('\n'), std::string::npos);
  }
}

TEST(LibraryFile, FilesAreImportedIntoALibraryThatIsMadeForThem) {
  const TemporaryDirectory directory;
  const std::filesystem::path files[] = {directory.write("a.bib", twoEntries),
                                         directory.write("b.ris", oneRecord)};
  const auto database = directory / "my.korvolib";
  auto report = importIntoLibraryFile(files, database, importer());
  ASSERT_TRUE(report) << report.error();
  EXPECT_EQ(report->addition.added, 3U);
  EXPECT_EQ(countIn(database), 3U);

  report = importIntoLibraryFile(files, database, importer());
  ASSERT_TRUE(report) << report.error();
  EXPECT_EQ(report->addition.added, 0U);
  EXPECT_EQ(report->addition.alreadyThere, 3U);
  EXPECT_EQ(countIn(database), 3U);
}

TEST(LibraryFile, WhenOneFileCannotBeReadNothingIsImported) {
  const TemporaryDirectory directory;
  const std::filesystem::path files[] = {directory.write("a.bib", twoEntries),
                                         directory / "none.ris"};
  EXPECT_FALSE(importIntoLibraryFile(files, directory / "my.korvolib", importer()));
  EXPECT_FALSE(std::filesystem::exists(directory / "my.korvolib"));
}

TEST(LibraryFile, NothingIsImportedIntoAFileOfAnotherKind) {
  const TemporaryDirectory directory;
  const std::filesystem::path files[] = {directory.write("a.bib", twoEntries)};
  const auto other = directory.write("notes.txt", "Not a library at all, only some notes.\n");
  EXPECT_FALSE(importIntoLibraryFile(files, other, importer()));
  EXPECT_EQ(readFile(other), "Not a library at all, only some notes.\n");
}
