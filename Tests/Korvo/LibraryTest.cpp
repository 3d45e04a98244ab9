#include <StandIns/Korvo/Library/Database.h>
#include <StandIns/Korvo/Library/Library.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <random>
#include <set>

using korvo::library::Library;
using korvo::library::ListOrder;
using korvo::library::NewReference;
using korvo::library::ReferenceRow;
using korvo::library::SortColumn;
using test_support::readFile;
using test_support::TemporaryDirectory;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

NewReference smith(std::string identifier = "SMI2001") {
  return {.identifier = std::move(identifier),
          .cslJson =
              R"({"type":"book","title":"On Heat","author":[{"family":"Smith","given":"John"}],)"
              R"("issued":{"date-parts":[[2001]]}})"};
}

NewReference vanGogh() {
  return {.identifier = "",
          .cslJson = R"({"type":"article-journal","title":"Letters","container-title":"Ärtz",)"
                     R"("author":[{"family":"van Gogh"},{"family":"Jones"}],)"
                     R"("issued":{"date-parts":[[1888]]}})"};
}

NewReference untitled(std::string identifier) {
  return {.identifier = std::move(identifier), .cslJson = "{}"};
}

Library libraryOf(std::initializer_list<NewReference> references) {
  auto made = Library::temporary("test");
  EXPECT_TRUE(made);
  EXPECT_TRUE(made->add(std::span(references.begin(), references.size())));
  return *std::move(made);
}

std::size_t matches(Library &searched, std::string_view tag) {
  const auto found = searched.matching(tag);
  EXPECT_TRUE(found) << found.error();
  return found ? found->size() : 999;
}

std::vector<std::string> identifiers(Library &listed, ListOrder order,
                                     std::string_view search = "") {
  std::vector<std::string> result;
  const auto rows = listed.list(order, search);
  EXPECT_TRUE(rows);
  for (const ReferenceRow row : *rows) {
    result.push_back((*listed.summary(row))->identifier);
  }
  return result;
}

}  // namespace

TEST(Matching, AnIdentifierMatchesExactly) {
  Library searched = libraryOf({smith()});
  EXPECT_EQ(matches(searched, "SMI2001"), 1U);
  EXPECT_EQ(matches(searched, "smi2001"), 0U);
  EXPECT_EQ(matches(searched, "SMI2001 "), 0U);
  EXPECT_EQ(matches(searched, "SMI"), 0U);
}

TEST(Matching, AuthorAndYearMatchWhateverTheirCaseMarksAndBlanks) {
  Library searched = libraryOf({smith(), vanGogh()});
  for (const char *text :
       {"Smith 2001", "Smith, 2001", "SMITH  2001", "Smïth 2001", " smith\t2001"}) {
    EXPECT_EQ(matches(searched, text), 1U) << text;
  }
  for (const char *text : {"van Gogh and Jones 1888", "Gogh & Jones, 1888", "van Gogh et al., 1888",
                           "Gogh 1888", "van Gogh 1888"}) {
    EXPECT_EQ(matches(searched, text), 1U) << text;
  }
  for (const char *text : {"Jones 1888", "Smith", "2001", "Smith 1888", "On Heat"}) {
    EXPECT_EQ(matches(searched, text), 0U) << text;
  }
}

TEST(Matching, EveryMatchIsInTheSet) {
  Library searched = libraryOf({smith("A"), smith("B"), smith("")});
  EXPECT_EQ(matches(searched, "Smith 2001"), 3U);
}

TEST(Matching, TwoReferencesWithOneIdentifierAreBothFound) {
  NewReference other = vanGogh();
  other.identifier = "SMI2001";
  Library searched = libraryOf({smith(), other});
  EXPECT_EQ(matches(searched, "SMI2001"), 2U);
}

TEST(Matching, AnIdentifierGoesBeforeVisibleText) {
  NewReference named = vanGogh();
  named.identifier = "Smith 2001";
  Library searched = libraryOf({smith(), named});
  ASSERT_EQ(matches(searched, "Smith 2001"), 1U);
  EXPECT_EQ((*searched.summary(searched.matching("Smith 2001")->front()))->identifier,
            "Smith 2001");
  EXPECT_EQ(matches(searched, "Smith, 2001"), 1U);
}

TEST(Matching, NothingMatchesTheEmptyText) {
  Library searched = libraryOf({untitled(""), vanGogh()});
  EXPECT_EQ(matches(searched, ""), 0U);
  EXPECT_EQ(matches(searched, " "), 0U);
  EXPECT_EQ(matches(searched, ".,"), 0U);
}

TEST(Matching, TextThatLooksLikeAQueryIsOnlyText) {
  Library searched = libraryOf({smith("' OR '1'='1"), smith("%")});
  EXPECT_EQ(matches(searched, "' OR '1'='1"), 1U);
  EXPECT_EQ(matches(searched, "%"), 1U);
  EXPECT_EQ(matches(searched, "\"; DROP TABLE reference; --"), 0U);
  EXPECT_EQ(matches(searched, "\xFF\xFE"), 0U);
}

TEST(CitationTag, IsTheIdentifierOrElseFirstAuthorAndYear) {
  Library tagged = libraryOf({smith(), vanGogh(), untitled("")});
  EXPECT_EQ(*tagged.citationTag(1), "SMI2001");
  EXPECT_EQ(*tagged.citationTag(2), "van Gogh 1888");
  EXPECT_EQ(*tagged.citationTag(3), std::nullopt);
  EXPECT_EQ(*tagged.citationTag(4), std::nullopt);
}

TEST(Adding, GivesEveryReferenceAnIdentifierOfItsOwn) {
  Library filled = libraryOf({smith("A"), smith("B")});
  EXPECT_NE((*filled.summary(1))->uuid, (*filled.summary(2))->uuid);
  EXPECT_THAT(
      (*filled.summary(1))->uuid,
      testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
}

TEST(Adding, LeavesOutWhatIsThereAlready) {
  Library filled = libraryOf({smith()});
  const NewReference again[] = {smith(), smith("OTHER")};
  const auto addition = filled.add(again);
  ASSERT_TRUE(addition);
  EXPECT_EQ(addition->added, 1U);
  EXPECT_EQ(addition->alreadyThere, 1U);
  EXPECT_EQ(*filled.count(), 2U);
}

TEST(Adding, IsAllOrNothing) {
  Library filled = libraryOf({smith()});
  const NewReference batch[] = {vanGogh(), {.identifier = "BAD", .cslJson = "no JSON"}};
  const auto addition = filled.add(batch);
  ASSERT_FALSE(addition);
  EXPECT_THAT(addition.error(), HasSubstr("BAD"));
  EXPECT_EQ(*filled.count(), 1U);
  EXPECT_EQ(matches(filled, "van Gogh 1888"), 0U);
}

TEST(Listing, SortsByEveryColumnBothWays) {
  Library listed =
      libraryOf({smith("c"), untitled("B"), {.identifier = "a", .cslJson = vanGogh().cslJson}});
  EXPECT_THAT(identifiers(listed, {SortColumn::authors}), ElementsAre("B", "c", "a"));
  EXPECT_THAT(identifiers(listed, {SortColumn::year}), ElementsAre("B", "a", "c"));
  EXPECT_THAT(identifiers(listed, {SortColumn::year, false}), ElementsAre("c", "a", "B"));
  EXPECT_THAT(identifiers(listed, {SortColumn::title}), ElementsAre("B", "a", "c"));
  EXPECT_THAT(identifiers(listed, {SortColumn::kind, false}), ElementsAre("c", "a", "B"));
  EXPECT_THAT(identifiers(listed, {SortColumn::identifier}), ElementsAre("a", "B", "c"));
  EXPECT_THAT(identifiers(listed, {SortColumn::identifier, false}), ElementsAre("c", "B", "a"));
}

TEST(Listing, FindsReferencesThatHoldEveryWord) {
  Library listed = libraryOf({smith("S"), {.identifier = "G", .cslJson = vanGogh().cslJson}});
  EXPECT_THAT(identifiers(listed, {}, "smith heat"), ElementsAre("S"));
  EXPECT_THAT(identifiers(listed, {}, "smith letters"), SizeIs(0));
  EXPECT_THAT(identifiers(listed, {}, "ARTZ"), ElementsAre("G"));
  EXPECT_THAT(identifiers(listed, {}, "jour"), ElementsAre("G"));
  EXPECT_THAT(identifiers(listed, {}, "  "), SizeIs(2));
  EXPECT_THAT(identifiers(listed, {}, "%"), SizeIs(0));
}

TEST(Replacing, ChangesWhatIsFoundAndKeepsTheReferencesIdentity) {
  Library edited = libraryOf({smith()});
  const std::string uuid = (*edited.summary(1))->uuid;
  ASSERT_TRUE(edited.replace(1, {.identifier = "GOGH", .cslJson = vanGogh().cslJson}));
  EXPECT_EQ(matches(edited, "SMI2001"), 0U);
  EXPECT_EQ(matches(edited, "Smith 2001"), 0U);
  EXPECT_EQ(matches(edited, "GOGH"), 1U);
  EXPECT_EQ(matches(edited, "van Gogh 1888"), 1U);
  EXPECT_EQ((*edited.summary(1))->uuid, uuid);
  EXPECT_EQ(**edited.cslJson(1), vanGogh().cslJson);
}

TEST(Replacing, RefusesNonsenseAndReferencesThatAreGone) {
  Library edited = libraryOf({smith()});
  EXPECT_FALSE(edited.replace(1, {.identifier = "x", .cslJson = "["}));
  EXPECT_FALSE(edited.replace(7, smith()));
  EXPECT_EQ(matches(edited, "SMI2001"), 1U);
  EXPECT_EQ(*edited.count(), 1U);
}

TEST(LibraryOnDisk, IsAsItWasLeft) {
  const TemporaryDirectory directory;
  {
    auto made = Library::openOrCreate(directory / "my.korvolib");
    ASSERT_TRUE(made) << made.error();
    const NewReference reference = smith();
    ASSERT_TRUE(made->add({&reference, 1}));
  }
  auto opened = Library::open(directory / "my.korvolib");
  ASSERT_TRUE(opened) << opened.error();
  EXPECT_EQ(matches(*opened, "SMI2001"), 1U);
}

TEST(LibraryOnDisk, SeesWhatAnotherProgramChanged) {
  const TemporaryDirectory directory;
  auto first = Library::openOrCreate(directory / "my.korvolib");
  auto second = Library::open(directory / "my.korvolib");
  ASSERT_TRUE(first && second);
  const NewReference reference = smith();
  ASSERT_TRUE(second->add({&reference, 1}));
  EXPECT_EQ(matches(*first, "SMI2001"), 1U);
}

TEST(LibraryOnDisk, SeesOneStateWhileItKeepsReading) {
  const TemporaryDirectory directory;
  auto reader = Library::openOrCreate(directory / "my.korvolib");
  auto writer = Library::open(directory / "my.korvolib");
  ASSERT_TRUE(reader && writer);
  const NewReference reference = smith();
  reader->keepReading();
  EXPECT_EQ(matches(*reader, "SMI2001"), 0U);
  const auto refused = writer->add({&reference, 1});
  ASSERT_FALSE(refused);
  EXPECT_THAT(refused.error(), HasSubstr("another program is using it"));
  reader->keepReading();
  reader->stopReading();
  EXPECT_TRUE(writer->add({&reference, 1}));
  EXPECT_EQ(matches(*reader, "SMI2001"), 1U);
  reader->stopReading();
}

TEST(LibraryOnDisk, CanBeChangedWhileItKeepsReading) {
  const TemporaryDirectory directory;
  auto library = Library::openOrCreate(directory / "my.korvolib");
  ASSERT_TRUE(library);
  const NewReference first = smith();
  const NewReference second = smith("SMI2002");
  library->keepReading();
  ASSERT_TRUE(library->add({&first, 1}));
  EXPECT_EQ(matches(*library, "SMI2001"), 1U);
  library->keepReading();
  ASSERT_TRUE(library->replace((*library->matching("SMI2001"))[0], second));
  EXPECT_EQ(matches(*library, "SMI2001"), 0U);
  auto other = Library::open(directory / "my.korvolib");
  ASSERT_TRUE(other);
  EXPECT_EQ(matches(*other, "SMI2002"), 1U);
}

// The version that a fresh series of questions sees.
std::optional<Library::Version> versionNow(Library &library) {
  library.stopReading();
  library.keepReading();
  return library.version();
}

TEST(LibraryOnDisk, ItsVersionStaysWhileNobodyWrites) {
  const TemporaryDirectory directory;
  auto library = Library::openOrCreate(directory / "my.korvolib");
  auto other = Library::open(directory / "my.korvolib");
  ASSERT_TRUE(library && other);
  EXPECT_EQ(library->version(), std::nullopt);
  const auto version = versionNow(*library);
  EXPECT_TRUE(version);
  EXPECT_EQ(matches(*library, "SMI2001"), 0U);
  EXPECT_EQ(matches(*other, "SMI2001"), 0U);
  EXPECT_EQ(library->version(), version);
  EXPECT_EQ(versionNow(*library), version);
  library->stopReading();
  EXPECT_EQ(library->version(), std::nullopt);
}

TEST(LibraryOnDisk, EveryWriterGivesItANewVersion) {
  const TemporaryDirectory directory;
  auto library = Library::openOrCreate(directory / "my.korvolib");
  auto other = Library::open(directory / "my.korvolib");
  ASSERT_TRUE(library && other);
  const NewReference first = smith();
  const NewReference second = smith("SMI2002");
  const auto empty = versionNow(*library);
  ASSERT_TRUE(library->add({&first, 1}));
  const auto added = versionNow(*library);
  EXPECT_NE(added, empty);
  ASSERT_TRUE(library->replace((*library->matching("SMI2001"))[0], second));
  const auto replaced = versionNow(*library);
  EXPECT_NE(replaced, added);
  library->stopReading();
  ASSERT_TRUE(other->replace((*other->matching("SMI2002"))[0], first));
  const auto replacedByOther = versionNow(*library);
  EXPECT_NE(replacedByOther, replaced);
  library->stopReading();
  sqlite3 *editor = nullptr;
  ASSERT_EQ(sqlite3_open((directory / "my.korvolib").c_str(), &editor), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(editor, "DELETE FROM reference", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(editor);
  EXPECT_NE(versionNow(*library), replacedByOther);
}

TEST(LibraryInMemory, EveryChangeGivesItANewVersion) {
  auto library = Library::temporary("in memory");
  ASSERT_TRUE(library);
  const auto empty = versionNow(*library);
  EXPECT_TRUE(empty);
  const NewReference reference = smith();
  ASSERT_TRUE(library->add({&reference, 1}));
  EXPECT_NE(versionNow(*library), empty);
}

TEST(LibraryOnDisk, WhileAnotherProgramWritesItHasNoVersion) {
  const TemporaryDirectory directory;
  auto library = Library::openOrCreate(directory / "my.korvolib");
  ASSERT_TRUE(library);
  sqlite3 *editor = nullptr;
  ASSERT_EQ(sqlite3_open((directory / "my.korvolib").c_str(), &editor), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(editor, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(versionNow(*library), std::nullopt);
  sqlite3_close(editor);
}

TEST(LibraryOnDisk, AFileThatIsNotThereIsNotMade) {
  const TemporaryDirectory directory;
  const auto opened = Library::open(directory / "none.korvolib");
  ASSERT_FALSE(opened);
  EXPECT_THAT(opened.error(), HasSubstr("none.korvolib: it cannot be opened"));
  EXPECT_FALSE(std::filesystem::exists(directory / "none.korvolib"));
}

TEST(LibraryOnDisk, ADirectoryIsNoLibrary) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(Library::open(directory / ""));
  EXPECT_FALSE(Library::openOrCreate(directory / ""));
}

TEST(LibraryOnDisk, FilesOfOtherKindsAreLeftAsTheyAre) {
  const TemporaryDirectory directory;
  const auto text =
      directory.write("notes.korvolib", "This is a text, quite long enough for a header.\n");
  const auto refusedText = Library::openOrCreate(text);
  ASSERT_FALSE(refusedText);
  EXPECT_THAT(refusedText.error(), HasSubstr("no library"));
  EXPECT_EQ(readFile(text), "This is a text, quite long enough for a header.\n");

  const auto other = directory / "other.sqlite";
  sqlite3 *connection = nullptr;
  ASSERT_EQ(sqlite3_open(other.c_str(), &connection), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(connection, "CREATE TABLE t (x)", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(connection);
  const std::string before = readFile(other);
  const auto refused = Library::openOrCreate(other);
  ASSERT_FALSE(refused);
  EXPECT_THAT(refused.error(), HasSubstr("another program"));
  EXPECT_EQ(readFile(other), before);
}

TEST(LibraryOnDisk, AFileThatAnotherProgramHoldsIsReportedAndLeftAsItIs) {
  const TemporaryDirectory directory;
  const auto file = directory / "held.korvolib";
  ASSERT_TRUE(Library::openOrCreate(file));
  const std::string before = readFile(file);
  sqlite3 *holder = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &holder), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  const auto refused = Library::open(file);
  ASSERT_FALSE(refused);
  EXPECT_THAT(refused.error(), HasSubstr("held.korvolib: another program is using it"));
  sqlite3_exec(holder, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(holder);
  EXPECT_EQ(readFile(file), before);
  EXPECT_TRUE(Library::open(file));
}

TEST(LibraryOnDisk, AFileCutShortIsRefusedAndLeftAsItIs) {
  const TemporaryDirectory directory;
  const auto file = directory / "short.korvolib";
  {
    auto made = Library::openOrCreate(file);
    ASSERT_TRUE(made);
    std::vector<NewReference> many;
    for (int number = 0; number < 500; ++number) {
      many.push_back(smith("S" + std::to_string(number)));
    }
    ASSERT_TRUE(made->add(many));
  }
  const auto whole = std::filesystem::file_size(file);
  for (const auto size : {whole / 2, whole - 4096, std::uintmax_t{4096}, std::uintmax_t{100}}) {
    std::filesystem::resize_file(file, size);
    const std::string before = readFile(file);
    const auto refused = Library::open(file);
    ASSERT_FALSE(refused) << size;
    EXPECT_THAT(refused.error(), HasSubstr("damaged"));
    EXPECT_EQ(readFile(file), before) << size;
  }
}

// SQLite quotes what it cannot read, the schema of a damaged file too.
TEST(LibraryDatabase, SQLitesOwnWordsAreOneLineThatCommandsNoTerminal) {
  auto database = korvo::library::Database::temporary();
  ASSERT_TRUE(database);
  const auto statement = database->prepare("SELECT '\n\x1B[2J\xFF");
  ASSERT_FALSE(statement);
  EXPECT_EQ(statement.error(), "unrecognized token: \"'  [2J\uFFFD\"");
}

// Wherever the damage lies: an answer or an error, never a crash, and no endless loop.
TEST(LibraryOnDisk, RandomDamageIsSurvived) {
  const TemporaryDirectory directory;
  const auto sound = directory / "sound.korvolib";
  {
    auto made = Library::openOrCreate(sound);
    ASSERT_TRUE(made);
    std::vector<NewReference> many;
    for (int number = 0; number < 200; ++number) {
      many.push_back(smith("S" + std::to_string(number)));
    }
    ASSERT_TRUE(made->add(many));
  }
  const std::string bytes = readFile(sound);
  std::mt19937 random(20260101);
  for (int round = 0; round < 100; ++round) {
    std::string damaged = bytes;
    for (int hits = 0; hits < 20; ++hits) {
      damaged[random() % damaged.size()] = static_cast<char>(random());
    }
    const auto file = directory.write("damaged.korvolib", damaged);
    auto opened = Library::open(file);
    if (!opened) {
      EXPECT_THAT(opened.error(), HasSubstr("damaged.korvolib: "));
      EXPECT_EQ(readFile(file), damaged);
      continue;
    }
    (void)opened->matching("Smith 2001");
    (void)opened->matching("S17");
    if (const auto rows = opened->list({}, "heat")) {
      for (const ReferenceRow row : *rows) {
        (void)opened->summary(row);
        (void)opened->citationTag(row);
      }
    }
    (void)opened->replace(5, vanGogh());
  }
}

TEST(Library, AnIdentifierThatAnotherReferenceBearsIsRefused) {
  Library library = libraryOf({smith("A"), smith("B")});
  const auto rename = [&](ReferenceRow row, const std::string &identifier) {
    return library.edit(row, [&](const NewReference &present) {
      NewReference renamed = present;
      renamed.identifier = identifier;
      return renamed;
    });
  };
  const auto refused = rename(2, "A");
  ASSERT_FALSE(refused);
  EXPECT_THAT(refused.error(), HasSubstr("another reference bears the identifier \"A\" already"));
  EXPECT_TRUE(rename(2, "B"));
  EXPECT_TRUE(rename(2, "C"));
  EXPECT_EQ(matches(library, "A"), 1U);
  EXPECT_EQ(matches(library, "C"), 1U);
}
