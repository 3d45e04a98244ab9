// Whatever goes wrong while a library is written: a full disk, a disk that breaks, a place that may
// not be written to, another program in between, the end of the process at any moment, a damaged
// file. The library then holds all of a change or nothing of it, a change that was not made is told
// in one line that names the file, and nothing is left beside the file.
#include "FailingDatabaseCalls.h"

#include <StandIns/Korvo/Library/LibraryFile.h>
#include <Tests/Support/Effort.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <iostream>
#include <iterator>
#include <set>
#include <sstream>

namespace {

using korvo::library::Library;
using korvo::library::NewReference;
using test_support::readFile;
using test_support::TemporaryDirectory;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// Identifier and content of each reference; nothing where the file is no whole library.
using Contents = std::set<std::string>;

std::vector<NewReference> references(const std::string &prefix, int count) {
  std::vector<NewReference> made;
  for (int number = 0; number < count; ++number) {
    const std::string name = prefix + std::to_string(number);
    // Long enough for several references to fill a page.
    made.push_back({name, R"({"type":"book","title":")" + name + R"(","author":[{"family":")" +
                              name + R"("}],"issued":{"date-parts":[[2001]]},"abstract":")" +
                              std::string(1200, 'a') + "\"}"});
  }
  return made;
}

std::optional<std::string> textOf(sqlite3 *connection, const char *query) {
  sqlite3_stmt *statement = nullptr;
  std::optional<std::string> text;
  if (sqlite3_prepare_v2(connection, query, -1, &statement, nullptr) == SQLITE_OK) {
    int status = sqlite3_step(statement);
    for (text = ""; status == SQLITE_ROW; status = sqlite3_step(statement)) {
      *text += reinterpret_cast<const char *>(sqlite3_column_text(statement, 0));
      *text += '\n';
    }
    if (status != SQLITE_DONE) {
      text.reset();
    }
  }
  sqlite3_finalize(statement);
  return text;
}

// Read without the code under test.
std::optional<Contents> contentsOf(const std::filesystem::path &file) {
  if (!std::filesystem::exists(file)) {
    return std::nullopt;
  }
  sqlite3 *connection = nullptr;
  std::optional<Contents> contents;
  if (sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
      textOf(connection, "PRAGMA integrity_check") == "ok\n") {
    const auto rows = textOf(
        connection, "SELECT identifier || ' ' || csl FROM reference JOIN record USING (row)");
    if (rows) {
      contents.emplace();
      std::istringstream lines(*rows);
      for (std::string line; std::getline(lines, line);) {
        contents->insert(line);
      }
    }
  }
  sqlite3_close(connection);
  return contents;
}

// A change to a library's file; the error is that of the library.
using Change = std::function<std::expected<void, std::string>(const std::filesystem::path &)>;

std::expected<void, std::string> add(const std::filesystem::path &file) {
  auto opened = Library::openOrCreate(file);
  if (!opened) {
    return std::unexpected(opened.error());
  }
  const auto added = opened->add(references("New", 40));
  if (!added) {
    return std::unexpected(added.error());
  }
  return {};
}

// As the editor saves a reference.
std::expected<void, std::string> replaceOne(const std::filesystem::path &file) {
  auto opened = Library::open(file);
  if (!opened) {
    return std::unexpected(opened.error());
  }
  const auto rows = opened->matching("Old7");
  if (!rows) {
    return std::unexpected(rows.error());
  }
  if (rows->empty()) {
    return std::unexpected(file.string() + ": it is not there any more");
  }
  return opened->replace(rows->front(), references("Edited", 1)[0]);
}

class LibraryFaults : public testing::Test {
 protected:
  LibraryFaults() {
    auto made = Library::openOrCreate(pristine());
    EXPECT_TRUE(made && made->add(references("Old", 60)));
  }
  ~LibraryFaults() override { std::cout << "[ cases    ] " << cases_ << '\n'; }

  std::filesystem::path pristine() const { return directory_ / "pristine.korvolib"; }
  std::filesystem::path file() const { return folder_ / "my.korvolib"; }

  void putFile(bool exists) {
    std::filesystem::remove(file());
    std::filesystem::remove(file().string() + "-journal");
    if (exists) {
      std::filesystem::copy_file(pristine(), file());
    }
  }

  static void expectOneLine(const std::string &error, const std::filesystem::path &file) {
    EXPECT_THAT(error, StartsWith(file.string() + ": "));
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
  }

  // Beside the library, however it is called.
  std::ptrdiff_t strayFiles() const {
    return std::distance(std::filesystem::directory_iterator(folder_ / ""), {}) -
           (std::filesystem::exists(file()) ? 1 : 0);
  }

  // What the change comes to when nothing fails, and how many calls it makes.
  struct Undisturbed {
    std::optional<Contents> before;
    std::optional<Contents> after;
    std::size_t calls = 0;
  };
  Undisturbed undisturbed(const Change &change, bool exists,
                          const std::vector<std::string> &counted = {}) {
    putFile(exists);
    Undisturbed result;
    result.before = contentsOf(file());
    {
      const DatabaseFault none({.only = counted});
      EXPECT_TRUE(change(file()));
      result.calls = none.calls();
    }
    result.after = contentsOf(file());
    EXPECT_TRUE(result.after);
    EXPECT_NE(result.before, result.after);
    EXPECT_GT(result.calls, 10U);
    EXPECT_EQ(strayFiles(), 0);
    return result;
  }

  // Whether the change was made; it must not have been made by halves. A library that was not there
  // before may be there without a reference, or be an empty file.
  bool isMade(const Undisturbed &whole, const std::string &what) {
    ++cases_;
    (void)Library::open(file());
    auto found = contentsOf(file());
    if (!whole.before && found && found->empty()) {
      found.reset();
    }
    EXPECT_TRUE(found == whole.before || found == whole.after) << what;
    return found == whole.after;
  }

  // The next change, if there is one to be made, goes through and clears up what a dead disk or
  // process had to leave.
  void expectRecovery(const Change &change, const Undisturbed &whole, const std::string &what) {
    (void)change(file());
    EXPECT_TRUE(contentsOf(file()) == whole.after) << what;
    ASSERT_TRUE(Library::open(file())->add(references("Last", 1))) << what;
    EXPECT_EQ(strayFiles(), 0) << what;
  }

  void expectAllOrNothing(const Change &change, const Undisturbed &whole,
                          const DatabaseFaultPlan &plan) {
    putFile(whole.before.has_value());
    std::expected<void, std::string> done;
    std::string struck;
    {
      const DatabaseFault fault(plan);
      done = change(file());
      struck = fault.struckCall();
    }
    const std::string what = std::string(std::strerror(plan.error)) + " at call " +
                             std::to_string(plan.firstFailure) + ", " + struck;
    const bool made = isMade(whole, what);
    if (!done) {
      expectOneLine(done.error(), file());
    }
    // Where all is made but the lock cannot be given back, an error is told.
    EXPECT_TRUE(made == done.has_value() || (made && struck == "fcntl")) << what;
    if (plan.failures == 1) {
      EXPECT_EQ(strayFiles(), 0) << what;
    } else {
      expectRecovery(change, whole, what);
    }
  }

  void expectAllOrNothingWhicheverCallFails(const Change &change, bool exists) {
    const Undisturbed whole = undisturbed(change, exists);
    for (std::size_t call = 0; call < whole.calls; call += test_support::effort(1, 5)) {
      for (const int reason : {ENOSPC, EROFS}) {
        expectAllOrNothing(change, whole, {.firstFailure = call, .error = reason});
      }
      // And for good.
      expectAllOrNothing(
          change, whole,
          {.firstFailure = call, .failures = DatabaseFaultPlan::never, .error = EIO});
    }
  }

  void expectAllOrNothingWheneverTheProcessIsKilled(const Change &change, bool exists) {
    // Before a call that changes nothing is as good as before the next one that does. The last one
    // removes the journal, and only that makes the change.
    const std::vector<std::string> changing = {"open", "write", "pwrite", "ftruncate", "unlink"};
    const Undisturbed whole = undisturbed(change, exists, changing);
    for (std::size_t call = 0; call < whole.calls; ++call) {
      putFile(exists);
      const pid_t process = fork();
      if (process == 0) {
        const DatabaseFault fault({.firstFailure = call, .only = changing, .killsProcess = true});
        _exit(change(file()) ? 0 : 1);
      }
      int status = 0;
      ASSERT_EQ(waitpid(process, &status, 0), process);
      ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << call;
      const std::string what = "killed at call " + std::to_string(call);
      EXPECT_FALSE(isMade(whole, what)) << what;
      expectRecovery(change, whole, what);
    }
  }

  const TemporaryDirectory directory_;
  const TemporaryDirectory folder_;
  std::size_t cases_ = 0;
};

TEST_F(LibraryFaults, AdditionIsMadeWholeOrNotAtAllWhicheverCallFails) {
  expectAllOrNothingWhicheverCallFails(add, true);
}

TEST_F(LibraryFaults, EditIsMadeWholeOrNotAtAllWhicheverCallFails) {
  expectAllOrNothingWhicheverCallFails(replaceOne, true);
}

TEST_F(LibraryFaults, NewLibraryIsMadeWholeOrNotAtAllWhicheverCallFails) {
  expectAllOrNothingWhicheverCallFails(add, false);
}

TEST_F(LibraryFaults, AdditionIsMadeWholeOrNotAtAllWheneverTheProcessIsKilled) {
  expectAllOrNothingWheneverTheProcessIsKilled(add, true);
}

TEST_F(LibraryFaults, EditIsMadeWholeOrNotAtAllWheneverTheProcessIsKilled) {
  expectAllOrNothingWheneverTheProcessIsKilled(replaceOne, true);
}

TEST_F(LibraryFaults, NewLibraryIsMadeWholeOrNotAtAllWheneverTheProcessIsKilled) {
  expectAllOrNothingWheneverTheProcessIsKilled(add, false);
}

// A folder that may not be written to, or a file, refuses to be opened for writing.
TEST_F(LibraryFaults, WhatMayNotBeWrittenToIsReadAndTheChangeRefused) {
  putFile(true);
  const auto before = contentsOf(file());
  for (const int reason : {EACCES, EROFS, EPERM}) {
    // The file itself: the first call to open it is for writing.
    const DatabaseFault fault({.firstFailure = 0, .error = reason, .only = {"open"}});
    auto opened = Library::open(file());
    ASSERT_TRUE(opened) << opened.error();
    EXPECT_EQ(opened->count(), 60U);
    const auto added = opened->add(references("New", 1));
    ASSERT_FALSE(added);
    EXPECT_EQ(added.error(), file().string() + ": it cannot be written to");
  }
  for (const int reason : {EACCES, EROFS, ENOSPC}) {
    auto opened = Library::open(file());
    ASSERT_TRUE(opened);
    // What is opened next is the journal.
    const DatabaseFault fault({.firstFailure = 0,
                               .failures = DatabaseFaultPlan::never,
                               .error = reason,
                               .only = {"open"}});
    const auto added = opened->add(references("New", 1));
    ASSERT_FALSE(added);
    EXPECT_THAT(added.error(), AnyOf(EndsWith(": it cannot be written to"),
                                     EndsWith(std::string(": ") + std::strerror(reason))));
    EXPECT_EQ(opened->count(), 60U);
  }
  EXPECT_EQ(contentsOf(file()), before);
  EXPECT_EQ(strayFiles(), 0);
}

// Another program that reads does not keep the library from being read, but from being changed.
TEST_F(LibraryFaults, WhileAnotherProgramReadsAChangeIsRefusedWhole) {
  putFile(true);
  const auto before = contentsOf(file());
  sqlite3 *reader = nullptr;
  ASSERT_EQ(sqlite3_open(file().c_str(), &reader), SQLITE_OK);
  ASSERT_EQ(
      sqlite3_exec(reader, "BEGIN; SELECT count(*) FROM reference", nullptr, nullptr, nullptr),
      SQLITE_OK);
  for (const Change &change : {Change(add), Change(replaceOne)}) {
    const auto done = change(file());
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error(), file().string() + ": another program is using it");
  }
  sqlite3_close(reader);
  EXPECT_EQ(contentsOf(file()), before);
  EXPECT_EQ(strayFiles(), 0);
  EXPECT_TRUE(add(file()));
}

constexpr const char *oneEntry =
    "@book{smith2001, author = {Smith, John}, title = {On Heat}, year = {2001}}\n";

class LibraryImportFaults : public LibraryFaults {
 protected:
  std::expected<void, std::string> import() {
    static korvo::engine::LibraryImporter importer;
    const std::filesystem::path files[] = {bibliography_};
    const auto report = korvo::library::importIntoLibraryFile(
        files, file(),
        [](const auto &name, const auto &progress) { return importer.importFile(name, progress); });
    if (!report) {
      return std::unexpected(report.error());
    }
    return {};
  }

  const std::filesystem::path bibliography_ = directory_.write("a.bib", oneEntry);
};

TEST_F(LibraryImportFaults, ALibraryThatWasMadeInVainGoesAway) {
  const Undisturbed whole =
      undisturbed([this](const std::filesystem::path &) { return import(); }, false);
  for (std::size_t call = 0; call < whole.calls; ++call) {
    putFile(false);
    const DatabaseFault fault({.firstFailure = call, .error = ENOSPC});
    const auto done = import();
    if (!done) {
      expectOneLine(done.error(), file());
    }
    if (contentsOf(file()) == whole.after) {
      EXPECT_TRUE(done || fault.struckCall() == "fcntl") << call << ' ' << fault.struckCall();
    } else {
      EXPECT_FALSE(done);
      EXPECT_TRUE(std::filesystem::is_empty(folder_ / "")) << call << ' ' << fault.struckCall();
    }
  }
}

TEST_F(LibraryImportFaults, NothingIsImportedIntoALibraryWithADamagedPage) {
  putFile(true);
  const std::string sound = readFile(file());
  std::size_t refused = 0;
  std::size_t pages = 0;
  for (std::size_t page = 0; page < sound.size(); page += 4096, ++pages) {
    std::string damaged = sound;
    // The page's kind, and where its cells begin.
    const std::size_t begin = page == 0 ? 100 : page;
    damaged.replace(begin, 8, std::string(8, '\x7F'));
    folder_.write("my.korvolib", damaged);
    const auto done = import();
    EXPECT_FALSE(done) << "page " << page / 4096;
    if (!done) {
      expectOneLine(done.error(), file());
      EXPECT_THAT(done.error(), HasSubstr("damaged"));
      ++refused;
    }
    EXPECT_EQ(readFile(file()), damaged);
    EXPECT_EQ(strayFiles(), 0);
  }
  EXPECT_GT(pages, 20U);
  EXPECT_EQ(refused, pages);
}

TEST_F(LibraryImportFaults, ALibraryCutShortAnywhereIsLeftAsItIs) {
  putFile(true);
  const std::string sound = readFile(file());
  for (std::size_t page = 4096; page <= sound.size(); page += 4096) {
    for (const std::size_t size : {page - 4095, page - 1, page}) {
      if (size == sound.size()) {
        continue;
      }
      ++cases_;
      folder_.write("my.korvolib", sound.substr(0, size));
      const auto done = import();
      ASSERT_FALSE(done) << size;
      expectOneLine(done.error(), file());
      EXPECT_EQ(readFile(file()), sound.substr(0, size));
      EXPECT_EQ(strayFiles(), 0);
    }
  }
}

// Some bits of it mean nothing to who only reads; no other is overlooked.
TEST_F(LibraryImportFaults, EveryFlippedBitOfTheHeaderIsRefusedOrLosesNothing) {
  putFile(true);
  const std::string sound = readFile(file());
  const auto before = contentsOf(file());
  constexpr std::size_t headerSize = 108;  // of the file and of its first page
  std::size_t refused = 0;
  std::size_t tried = 0;
  for (std::size_t bit = 0; bit < headerSize * 8; bit += test_support::effort(1, 5)) {
    ++tried;
    ++cases_;
    std::string damaged = sound;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
    folder_.write("my.korvolib", damaged);
    if (const auto done = import(); !done) {
      expectOneLine(done.error(), file());
      EXPECT_EQ(readFile(file()), damaged) << "bit " << bit;
      ++refused;
    } else {
      const auto after = contentsOf(file());
      ASSERT_TRUE(after) << "bit " << bit;
      EXPECT_TRUE(std::ranges::includes(*after, *before)) << "bit " << bit;
      EXPECT_EQ(after->size(), before->size() + 1) << "bit " << bit;
    }
    std::filesystem::remove(file().string() + "-wal");
    std::filesystem::remove(file().string() + "-shm");
    EXPECT_EQ(strayFiles(), 0) << "bit " << bit;
  }
  EXPECT_GT(refused, tried * 3 / 8);
}

TEST_F(LibraryImportFaults, NamesThatMeanSomethingToSQLiteAreFilesLikeOthers) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder_ / "");
  for (const char *name : {":memory:", "file:a.korvolib?mode=memory", "file:b.korvolib"}) {
    auto made = Library::openOrCreate(name);
    ASSERT_TRUE(made) << made.error();
    ASSERT_TRUE(made->add(references("New", 1)));
    EXPECT_TRUE(std::filesystem::exists(name)) << name;
  }
  std::filesystem::current_path(before);
}

}  // namespace
