// Library files read in a process of their own: the same comes of it, and whatever becomes of that
// process costs one line.
#include "ImportFixture.h"

#include <StandIns/Korvo/Engine/ImportProcess.h>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <chrono>
#include <filesystem>

namespace {

using korvo::engine::ImportBounds;
using korvo::engine::importInOwnProcess;
using testing::HasSubstr;
using namespace std::chrono_literals;

class ImportProcess : public ImportFixture {
 protected:
  // A program in the reader's place.
  std::filesystem::path script(const std::string &commands) {
    const auto file = write("reader", "#!/bin/sh\n" + commands + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
  }
  std::string errorOfReader(const std::string &commands) {
    const auto imported =
        importInOwnProcess(write("a.bib", "@book{a, title = {A}}"), {}, {}, script(commands));
    EXPECT_FALSE(imported);
    return imported ? "" : withoutDirectory(imported.error());
  }
  void expectWorksStill() {
    EXPECT_TRUE(importInOwnProcess(write("still.bib", "@book{a, title = {A}}")));
  }
};

TEST_F(ImportProcess, BringsWhatIsReadInThisProcess) {
  const std::string bib =
      "@book{smith2001, author = {Smith, John}, title = {On Heät}, year = {2001}}\n"
      "@book{smith2001, author = {Smith, John}, title = {Again}, year = {2002}}\n"
      "@book{broken, title = {never closed\n";
  const auto file = write("library.bib", bib);
  const auto apart = importInOwnProcess(file);
  ASSERT_TRUE(apart) << apart.error();
  const ImportResult here = import("library.bib", bib);
  EXPECT_EQ(apart->references, here.references);
  EXPECT_EQ(problemsOf(*apart), problemsOf(here));
  EXPECT_FALSE(here.problems.empty());
}

TEST_F(ImportProcess, BringsTheErrorsOfThisProcess) {
  for (const char *name : {"none.bib", "none.docx"}) {
    const auto apart = importInOwnProcess(directory_ / name);
    const auto here = importer().importFile(directory_ / name);
    ASSERT_FALSE(apart);
    EXPECT_EQ(apart.error(), here.error());
  }
}

TEST_F(ImportProcess, TellsHowFarItIs) {
  std::string bib;
  for (int number = 0; number < 4000; ++number) {
    bib += "@book{k" + std::to_string(number) + ", title = {T}, year = {2001}}\n";
  }
  int calls = 0;
  const auto apart = importInOwnProcess(write("large.bib", bib),
                                        [&](const std::filesystem::path &file, std::string_view) {
                                          EXPECT_EQ(file, directory_ / "large.bib");
                                          ++calls;
                                        });
  ASSERT_TRUE(apart) << apart.error();
  EXPECT_EQ(apart->references.size(), 4000U);
  int callsHere = 0;
  (void)importer().importFile(directory_ / "large.bib", [&](const std::filesystem::path &,
                                                            std::string_view) { ++callsHere; });
  EXPECT_EQ(calls > 0, callsHere > 0);
}

TEST_F(ImportProcess, EndsAReaderThatTakesTooMuchMemory) {
  const auto file =
      write("large.json", R"([{"id":"a","title":")" + std::string(60'000'000, 't') + "\"}]");
  const auto start = std::chrono::steady_clock::now();
  const auto imported = importInOwnProcess(file, {}, {.mebibytes = 128});
  ASSERT_FALSE(imported);
  EXPECT_EQ(withoutDirectory(imported.error()),
            "large.json: cannot be read: it takes more than 128 MiB of memory");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
  expectWorksStill();
}

TEST_F(ImportProcess, EndsAReaderThatTakesTooLong) {
  std::string bib;
  for (int number = 0; number < 60'000; ++number) {
    bib += "@book{k" + std::to_string(number) + ", author = {Smith, John}, title = {T}}\n";
  }
  const auto imported = importInOwnProcess(write("long.bib", bib), {}, {.time = 1s});
  ASSERT_FALSE(imported);
  EXPECT_EQ(withoutDirectory(imported.error()),
            "long.bib: cannot be read: it takes longer than 1 s");
  expectWorksStill();
}

TEST_F(ImportProcess, OutlivesAReaderThatCrashes) {
  EXPECT_EQ(errorOfReader("kill -SEGV $$"),
            "a.bib: cannot be read: its reader was ended by signal 11");
  expectWorksStill();
}

TEST_F(ImportProcess, TakesNoHalfAnswer) {
  EXPECT_EQ(errorOfReader("exit 1"), "a.bib: cannot be read: its reader ended with status 1");
  EXPECT_EQ(errorOfReader("exit 0"), "a.bib: cannot be read: its reader ended with status 0");
  EXPECT_THAT(errorOfReader("cat /dev/zero >&3"), HasSubstr("a.bib: cannot be read: its reader"));
  EXPECT_THAT(errorOfReader("yes >&3"), HasSubstr("a.bib: cannot be read: its reader"));
}

TEST_F(ImportProcess, SaysWhereThereIsNoReader) {
  const auto imported =
      importInOwnProcess(write("a.bib", "@book{a, title = {A}}"), {}, {}, "/no/such/reader");
  ASSERT_FALSE(imported);
  EXPECT_THAT(imported.error(), HasSubstr("/no/such/reader cannot be started"));
}

}  // namespace
