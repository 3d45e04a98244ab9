#include <StandIns/Korvo/Engine/StyleCatalog.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>

namespace {

using korvo::engine::StyleCatalog;
using test_support::TemporaryDirectory;

constexpr const char *installedStyles = "/usr/share/citation-style-language/styles";

class EngineCatalog : public testing::Test {
 protected:
  EngineCatalog() { std::filesystem::create_directories(styles() / "dependent"); }

  std::filesystem::path styles() const { return (directory_ / "styles"); }
  std::filesystem::path indexFile() const { return (directory_ / "cache") / "index"; }
  StyleCatalog catalog() const { return {styles(), indexFile()}; }

  void write(const std::string &name, std::string_view text) {
    std::ofstream(styles() / name, std::ios::binary) << text;
  }
  void writeStyle(const std::string &name, const std::string &title) {
    write(name, "<style xmlns=\"http://purl.org/net/xbiblio/csl\" class=\"in-text\"><info><title>" +
                    title + "</title></info><citation><layout/></citation></style>");
  }

  TemporaryDirectory directory_;
};

TEST_F(EngineCatalog, AStyleIsFoundByItsFileNameWithoutReadingAnyOther) {
  writeStyle("a.csl", "Alpha &amp;\n  Omega");
  auto found = catalog().find("a");
  ASSERT_TRUE(found) << found.error();
  EXPECT_EQ(found->name.title, "Alpha & Omega");
  EXPECT_FALSE(std::filesystem::exists(indexFile()));
}

TEST_F(EngineCatalog, AStyleIsFoundByItsTitleWhateverTheCaseOfItsLetters) {
  writeStyle("a.csl", "Zeitschrift für Ärzte");
  StyleCatalog styles = catalog();
  auto found = styles.find("zeitschrift FÜR ärzte");
  ASSERT_TRUE(found) << found.error();
  EXPECT_EQ(found->name.baseName, "a");
}

TEST_F(EngineCatalog, AStyleIsFoundByItsFileNameWhateverTheCaseOfItsLetters) {
  writeStyle("Mixed-Case.csl", "Alpha");
  writeStyle("dependent/b.csl", "Beta");
  StyleCatalog styles = catalog();
  for (const char *name : {"mixed-case", "MIXED-CASE"}) {
    auto found = styles.find(name);
    ASSERT_TRUE(found) << found.error();
    EXPECT_EQ(found->name.title, "Alpha");
  }
  ASSERT_TRUE(styles.find("B"));
}

// So that the list of titles in the host's windows always means what it says.
TEST_F(EngineCatalog, ATitleComesBeforeAFileNameOfOtherCase) {
  writeStyle("nature.csl", "Some Journal");
  writeStyle("other.csl", "Nature");
  StyleCatalog styles = catalog();
  EXPECT_EQ(styles.find("NATURE")->name.baseName, "other");
  EXPECT_EQ(styles.find("nature")->name.baseName, "nature");
}

TEST_F(EngineCatalog, AnUnknownNameIsAnErrorOfOneLine) {
  const auto found = catalog().find("no such style");
  ASSERT_FALSE(found);
  EXPECT_EQ(found.error(), "no citation style named \"no such style\" is installed");
}

TEST_F(EngineCatalog, ANameDoesNotLeadOutOfTheDirectory) {
  writeStyle("a.csl", "Alpha");
  EXPECT_FALSE(catalog().find("../styles/a"));
  EXPECT_FALSE(catalog().find("dependent/../a"));
  EXPECT_FALSE(catalog().find(std::string_view("a\0", 2)));
  EXPECT_FALSE(catalog().find(""));
}

TEST_F(EngineCatalog, ADependentStyleWithoutItsParentIsAnErrorOfOneLine) {
  write("dependent/d.csl",
        "<style><info><title>D</title><link href=\"http://x/p\" rel=\"independent-parent\"/></info>"
        "</style>");
  const auto found = catalog().find("d");
  ASSERT_FALSE(found);
  EXPECT_EQ(found.error(), "the style \"D\" follows \"p\", which is not installed");
}

TEST_F(EngineCatalog, ADependentStyleHasItsParentsPropertiesAndItsOwnLanguage) {
  write("p.csl",
        "<style class=\"note\"><info><title>P</title></info><citation><layout "
        "vertical-align=\"sup\"/></citation><bibliography/></style>");
  write("dependent/d.csl",
        "<style default-locale=\"de-DE\"><info><title>D</title><link "
        "href=\"http://x/p\" rel=\"independent-parent\"/></info></style>");
  const auto found = catalog().find("D");
  ASSERT_TRUE(found) << found.error();
  EXPECT_EQ(found->name.title, "D");
  EXPECT_EQ(found->file.filename(), "p.csl");
  EXPECT_EQ(found->locale, "de-DE");
  EXPECT_EQ(found->citationFormat, korvo::engine::CitationFormat::note);
  EXPECT_TRUE(found->hasBibliography);
  EXPECT_TRUE(found->usesSuperscript);
}

TEST_F(EngineCatalog, ABrokenFileIsNamedWithTheLineAndHidesNoOther) {
  write("broken.csl", "<style>\n<info><title>Broken</info>");
  writeStyle("a.csl", "Alpha");
  StyleCatalog styles = catalog();
  EXPECT_EQ(styles.all().size(), 1u);
  const auto found = styles.find("broken");
  ASSERT_FALSE(found);
  EXPECT_NE(found.error().find("broken.csl:2: no readable citation style"), std::string::npos)
      << found.error();
}

TEST_F(EngineCatalog, AFileThatIsNoStyleIsSaidToBeNone) {
  write("x.csl", "<svg><title>x</title></svg>");
  write("empty.csl", "");
  EXPECT_FALSE(catalog().find("x"));
  EXPECT_FALSE(catalog().find("empty"));
}

TEST_F(EngineCatalog, TheIndexIsUsedUntilTheDirectoryChanges) {
  writeStyle("a.csl", "Alpha");
  EXPECT_EQ(catalog().all().size(), 1u);
  EXPECT_TRUE(std::filesystem::exists(indexFile()));
  // The index is believed: a title changed behind its back is not seen.
  std::string stamp;
  std::getline(std::ifstream(indexFile()), stamp);
  std::ofstream(indexFile()) << stamp << "\na\tChanged\n";
  EXPECT_EQ(catalog().all().at(0).title, "Changed");
  writeStyle("b.csl", "Beta");
  std::filesystem::last_write_time(
      styles(), std::filesystem::file_time_type::clock::now() + std::chrono::seconds(5));
  EXPECT_EQ(catalog().all().size(), 2u);
}

TEST_F(EngineCatalog, ADamagedIndexIsMadeAgain) {
  writeStyle("a.csl", "Alpha");
  catalog().all();
  std::ofstream(indexFile(), std::ios::app) << "damage\n";
  EXPECT_EQ(catalog().all().size(), 1u);
}

TEST_F(EngineCatalog, WithoutADirectoryThereAreNoStyles) {
  StyleCatalog none((directory_ / "nowhere"), {});
  EXPECT_TRUE(none.all().empty());
  EXPECT_FALSE(none.find("apa"));
}

TEST(EngineInstalledStyles, AreThousandsSortedByTitleAndEachFoundByIt) {
  StyleCatalog installed(installedStyles, {});
  const std::vector<korvo::engine::StyleName> &all = installed.all();
  EXPECT_GT(all.size(), 5000u);
  EXPECT_EQ(all.front().title.find_first_not_of(' '), 0u);
  for (std::size_t index = 0; index < all.size(); index += 97) {
    const auto found = installed.find(all[index].title);
    ASSERT_TRUE(found) << found.error();
    EXPECT_EQ(found->name, all[index]);
  }
}

TEST(EngineInstalledStyles, TellTheirKinds) {
  StyleCatalog installed(installedStyles, {});
  const auto format = [&](const char *name) { return installed.find(name)->citationFormat; };
  EXPECT_EQ(format("apa"), korvo::engine::CitationFormat::authorDate);
  EXPECT_EQ(format("ieee"), korvo::engine::CitationFormat::numeric);
  EXPECT_EQ(format("chicago-note-bibliography"), korvo::engine::CitationFormat::note);
  EXPECT_EQ(format("modern-language-association"), korvo::engine::CitationFormat::author);
  EXPECT_EQ(format("din-1505-2-alphanumeric"), korvo::engine::CitationFormat::label);
  EXPECT_TRUE(installed.find("nature")->usesSuperscript);
  EXPECT_TRUE(installed.find("nature-physics")->usesSuperscript);
  EXPECT_FALSE(installed.find("ieee")->usesSuperscript);
}

}  // namespace
