// Libraries from somebody else: what a database can hold besides data is refused before it is read.

#include <StandIns/Korvo/Library/Database.h>
#include <StandIns/Korvo/Library/Library.h>
#include <StandIns/Korvo/Library/LibrarySchema.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

using korvo::library::Database;
using korvo::library::Library;
using korvo::library::NewReference;
using testing::HasSubstr;
using testing::Not;

namespace {

// A library of one reference, and then what somebody did to its file.
std::filesystem::path changedLibrary(const test_support::TemporaryDirectory &directory,
                                     const char *statements) {
  const auto file = directory / "theirs.korvolib";
  {
    auto made = Library::openOrCreate(file);
    EXPECT_TRUE(made);
    const NewReference reference{.identifier = "A", .cslJson = R"({"type":"book"})"};
    EXPECT_TRUE(made->add(std::span(&reference, 1)));
  }
  auto database = Database::openExisting(file);
  EXPECT_TRUE(database);
  const auto changed = database->execute(statements);
  EXPECT_TRUE(changed) << changed.error();
  return file;
}

void expectRefusedUntouched(const char *statements) {
  SCOPED_TRACE(statements);
  const test_support::TemporaryDirectory directory;
  const auto file = changedLibrary(directory, statements);
  const std::string before = test_support::readFile(file);
  const auto begin = std::chrono::steady_clock::now();
  const auto opened = Library::open(file);
  ASSERT_FALSE(opened);
  EXPECT_THAT(opened.error(), HasSubstr("theirs.korvolib: its tables are not those of a library"));
  EXPECT_THAT(opened.error(), Not(HasSubstr("\n")));
  EXPECT_FALSE(Library::openOrCreate(file));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  EXPECT_EQ(test_support::readFile(file), before);
}

// A view in the table's place that never comes to its end.
constexpr const char *endlessView =
    "DROP TABLE reference;"
    "CREATE VIEW reference AS WITH RECURSIVE endless(row) AS (SELECT 1 UNION ALL SELECT row + 1 "
    "FROM "
    "endless) SELECT row, '' AS uuid, '' AS identifier, '' AS authors, '' AS year, '' AS title, "
    "'' AS kind, '' AS container_title, '' AS sort_authors, 0 AS sort_year, '' AS sort_title, "
    "'' AS search_text FROM endless;";

}  // namespace

TEST(HostileLibrary, AViewInATablesPlaceIsRefused) { expectRefusedUntouched(endlessView); }

TEST(HostileLibrary, ATriggerIsRefused) {
  expectRefusedUntouched(
      "CREATE TRIGGER loss AFTER INSERT ON record BEGIN DELETE FROM reference; END;");
}

TEST(HostileLibrary, AnIndexWithAnExpressionOfItsOwnIsRefused) {
  expectRefusedUntouched(
      "DROP INDEX reference_order;"
      "CREATE INDEX reference_order ON reference (upper(sort_authors), sort_year, sort_title);");
}

TEST(HostileLibrary, OneMoreTableAndOneIndexLessAreRefused) {
  expectRefusedUntouched("CREATE TABLE more (text TEXT);");
  expectRefusedUntouched("DROP INDEX record_fingerprint;");
}

TEST(HostileLibrary, AColumnThatIsComputedOrCheckedIsRefused) {
  expectRefusedUntouched("ALTER TABLE record ADD COLUMN size GENERATED ALWAYS AS (length(csl));");
  expectRefusedUntouched(
      "ALTER TABLE record ADD COLUMN checked INTEGER CHECK (length(csl) < 9000);");
}

// The second line of defence: what came into the file after it was looked at does not run.
TEST(HostileLibrary, ATriggerThatCameLaterDoesNotRun) {
  const test_support::TemporaryDirectory directory;
  const auto file = directory / "late.korvolib";
  auto opened = Library::openOrCreate(file);
  ASSERT_TRUE(opened);
  const NewReference first{.identifier = "A", .cslJson = R"({"type":"book"})"};
  ASSERT_TRUE(opened->add(std::span(&first, 1)));
  auto other = Database::openExisting(file);
  ASSERT_TRUE(other);
  ASSERT_TRUE(other->execute(
      "CREATE TRIGGER loss AFTER INSERT ON record BEGIN DELETE FROM reference; END;"));
  const NewReference second{.identifier = "B", .cslJson = R"({"type":"book"})"};
  ASSERT_TRUE(opened->add(std::span(&second, 1)));
  EXPECT_EQ(opened->count(), std::size_t{2});
}

TEST(HostileLibrary, AStatementThatTakesTooLongEndsWithAnError) {
  auto database = Database::temporary();
  ASSERT_TRUE(database);
  const korvo::library::TimeLimit limit(*database, std::chrono::milliseconds(50));
  const auto answer = database->number(
      "WITH RECURSIVE endless(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM endless) "
      "SELECT count(*) FROM endless");
  ASSERT_FALSE(answer);
  EXPECT_THAT(answer.error(), HasSubstr("too long"));
}

TEST(HostileLibrary, AnotherOnesViewsDoNotRunAtAll) {
  auto database = Database::temporary();
  ASSERT_TRUE(database);
  ASSERT_TRUE(
      database->execute("CREATE TABLE numbers (n); CREATE VIEW v AS SELECT n FROM numbers;"));
  EXPECT_FALSE(database->number("SELECT count(*) FROM v"));
}

TEST(HostileLibrary, WhatIsOursIsTakenAgainAndAgain) {
  auto database = Database::temporary();
  ASSERT_TRUE(database);
  ASSERT_TRUE(makeLibrarySchema(*database));
  EXPECT_TRUE(checkLibrarySchema(*database));
  EXPECT_TRUE(checkLibrarySchema(*database));
}

// Reads, changes and writes are one: nobody else's change comes in between and is lost.
TEST(EditingAReference, HoldsTheLibraryFromReadingToWriting) {
  const test_support::TemporaryDirectory directory;
  const auto file = directory / "shared.korvolib";
  auto opened = Library::openOrCreate(file);
  ASSERT_TRUE(opened);
  const NewReference first{.identifier = "A", .cslJson = R"({"type":"book"})"};
  ASSERT_TRUE(opened->add(std::span(&first, 1)));
  auto other = Database::openExisting(file);
  ASSERT_TRUE(other);
  bool wasAsked = false;
  ASSERT_TRUE(opened->edit(1, [&](const NewReference &present) {
    wasAsked = true;
    EXPECT_EQ(present.identifier, "A");
    EXPECT_FALSE(other->execute("UPDATE reference SET identifier = 'B'"));
    return NewReference{.identifier = "C", .cslJson = present.cslJson};
  }));
  EXPECT_TRUE(wasAsked);
  EXPECT_EQ((*opened->reference(1))->identifier, "C");
}

TEST(EditingAReference, ThatCannotBeMadeLeavesItAsItWas) {
  auto library = Library::temporary("test");
  ASSERT_TRUE(library);
  const NewReference first{.identifier = "A", .cslJson = R"({"type":"book"})"};
  ASSERT_TRUE(library->add(std::span(&first, 1)));
  const auto edited = library->edit(1, [](const NewReference &) {
    return std::expected<NewReference, std::string>(std::unexpected("no such date"));
  });
  ASSERT_FALSE(edited);
  EXPECT_THAT(edited.error(), HasSubstr("no such date"));
  EXPECT_EQ((*library->reference(1))->identifier, "A");
  EXPECT_FALSE(library->edit(7, [](const NewReference &present) { return present; }));
}
