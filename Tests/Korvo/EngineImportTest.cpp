#include "ImportFixture.h"

namespace {

class EngineImport : public ImportFixture {};

TEST_F(EngineImport, ABibTeXArticleBecomesAnItemWithItsKey) {
  const ImportResult result = import("a.bib", R"(@article{smith2001,
    author = {Smith, John}, title = {The {DNA} of things}, journal = {Nature},
    volume = 12, number = 3, pages = {45--67}, year = 2001})");
  ASSERT_EQ(result.references.size(), 1u);
  EXPECT_EQ(result.references[0].citationKey, "smith2001");
  EXPECT_EQ(
      result.references[0].cslJson,
      R"({"id":"smith2001","type":"article-journal",)"
      R"("author":[{"given":"John","family":"Smith"}],"title":"The DNA of things",)"
      R"("container-title":"Nature","volume":"12","issued":{"date-parts":[[2001]]},"issue":"3",)"
      R"("page":"45-67"})");
  EXPECT_EQ(problemsOf(result), Messages());
}

TEST_F(EngineImport, AccentsInLaTeXAndInUTF8AreTheSameLetters) {
  const ImportResult result = import(
      "a.bib",
      "@book{a, author = {M{\\\"u}ller, J{\\\"o}rg and Garc{\\'\\i}a, Mar\\'{\\i}a and {\\O}rsted, "
      "{\\AA}ke and \\v{C}apek, Karel}}\n"
      "@book{b, author = {Müller, Jörg and García, María and Ørsted, Åke and Čapek, Karel}}");
  ASSERT_EQ(result.references.size(), 2u);
  const auto author = [&](std::size_t index) {
    const std::string &json = result.references[index].cslJson;
    return json.substr(json.find("\"author\""), json.find(']') - json.find("\"author\""));
  };
  EXPECT_EQ(author(0), author(1));
  EXPECT_NE(author(0).find("\"Čapek\""), std::string::npos) << author(0);
}

TEST_F(EngineImport, LaTeXCommandsInTitlesBecomeWhatTheyPrint) {
  const auto titleOf = [&](std::string_view latex) {
    const ImportResult result = import("a.bib", "@book{k, title={" + std::string(latex) + "}}");
    const std::string json = result.references.empty() ? "" : result.references[0].cslJson;
    const std::size_t start = json.find("\"title\":\"") + 9;
    return json.substr(start, json.find('"', start) - start);
  };
  EXPECT_EQ(titleOf("{\\AA}ngstr{\\\"o}m \\S 3 \\& \\ldots"), "Ångström §3 & …");
  EXPECT_EQ(titleOf("{\\noopsort{zz}}On \\emph{\\LaTeX} and \\mbox{word}s"),
            "On <i>LaTeX</i> and words");
  EXPECT_EQ(titleOf("H$_2$O --- ``wet''"), "H₂O — “wet”");
}

TEST_F(EngineImport, ParticlesStandApartFromTheFamilyName) {
  const ImportResult result = import(
      "a.bib",
      "@book{a, author = {Vincent van Gogh and van der Waals, Johannes and Ludwig von Mises and "
      "de la Cruz, Juana}}");
  ASSERT_EQ(result.references.size(), 1u);
  for (const char *particle : {"van", "van der", "von", "de la"}) {
    EXPECT_NE(result.references[0].cslJson.find("\"non-dropping-particle\":\"" +
                                                std::string(particle) + "\""),
              std::string::npos)
        << particle;
  }
}

TEST_F(EngineImport, AnInstitutionInBracesStaysWhole) {
  const ImportResult result = import("a.bib", "@book{a, author = {{World Health Organization}}}");
  ASSERT_EQ(result.references.size(), 1u);
  EXPECT_NE(result.references[0].cslJson.find("\"World Health Organization\""), std::string::npos);
}

TEST_F(EngineImport, ListsOfPublishersAreOneTextAndLanguagesHaveTheirCodes) {
  const ImportResult result =
      import("a.bib", "@book{a, publisher = {Strahan and Cadell}, language = {ngerman}}");
  ASSERT_EQ(result.references.size(), 1u);
  EXPECT_NE(result.references[0].cslJson.find(R"("publisher":"Strahan and Cadell")"),
            std::string::npos);
  EXPECT_NE(result.references[0].cslJson.find(R"("language":"de")"), std::string::npos);
}

TEST_F(EngineImport, ThesesAndReportsAreNamedInWords) {
  const ImportResult result = import("a.bib",
                                     "@phdthesis{a, title={A}}\n@mastersthesis{b, title={B}}\n"
                                     "@techreport{c, title={C}}\n@thesis{d, type={phdthesis}}");
  ASSERT_EQ(result.references.size(), 4u);
  const auto has = [&](std::size_t index, std::string_view genre) {
    return result.references[index].cslJson.find("\"genre\":\"" + std::string(genre) + "\"") !=
           std::string::npos;
  };
  EXPECT_TRUE(has(0, "PhD thesis"));
  EXPECT_TRUE(has(1, "Master’s thesis"));
  EXPECT_TRUE(has(2, "Technical report"));
  EXPECT_TRUE(has(3, "PhD thesis"));
}

TEST_F(EngineImport, BibLaTeXDatesAndAddressesAreKept) {
  const ImportResult result = import(
      "a.bib",
      "@online{w, title={W}, date={2019-05-03}, urldate={2020-01-02}, url={https://a.example/b}}");
  ASSERT_EQ(result.references.size(), 1u);
  EXPECT_NE(result.references[0].cslJson.find(R"("issued":{"date-parts":[[2019,5,3]]})"),
            std::string::npos);
  EXPECT_NE(result.references[0].cslJson.find(R"("accessed":{"date-parts":[[2020,1,2]]})"),
            std::string::npos);
}

TEST_F(EngineImport, AbbreviationsAreReplacedAndForgottenAfterTheFile) {
  const std::string_view entry = "@article{a, title={T}, journal = jgr # { B}}";
  const ImportResult with =
      import("a.bib", "@string{jgr = {Journal of Geophysics}}\n" + std::string(entry));
  ASSERT_EQ(with.references.size(), 1u);
  EXPECT_NE(with.references[0].cslJson.find("\"Journal of Geophysics B\""), std::string::npos);
  const ImportResult without = import("b.bib", entry);
  ASSERT_EQ(without.references.size(), 1u);
  EXPECT_NE(without.references[0].cslJson.find("\"jgr B\""), std::string::npos);
  EXPECT_EQ(problemsOf(without),
            Messages{"b.bib:1: a: the abbreviation \"jgr\" is not defined; its name is taken as "
                     "the text"});
}

TEST_F(EngineImport, ACrossReferenceTakesFieldsFromItsParent) {
  const ImportResult result = import(
      "a.bib",
      "@inproceedings{kid, crossref={par}, title={Kid}}\n@proceedings{par, title={Proceedings of "
      "X}, year=2010}");
  ASSERT_EQ(result.references.size(), 2u);
  EXPECT_NE(result.references[0].cslJson.find(R"("container-title":"Proceedings of X")"),
            std::string::npos);
}

TEST_F(EngineImport, CommentsAndTextBetweenEntriesAreLeftOut) {
  const ImportResult result =
      import("a.bib",
             "Written by me@home.example\n@comment{@book{no, title={No}}}\n@preamble{\"x\"}\n"
             "@book(b, title = {In parentheses (yes)})\n% @book{c, title={C}}\n");
  ASSERT_EQ(result.references.size(), 2u);
  EXPECT_EQ(result.references[0].citationKey, "b");
}

TEST_F(EngineImport, AKeyUsedTwiceIsReportedAndBothWorksAreKept) {
  const ImportResult result =
      import("a.bib", "@book{k, title={One}}\n@book{k, title={Two}}\n@book{k, title={One}}\n");
  EXPECT_EQ(result.references.size(), 2u);
  EXPECT_EQ(problemsOf(result),
            (Messages{"a.bib:2: k: the citation key stands already in line 1; both are kept, and "
                      "citing this key finds both",
                      "a.bib:3: k: the citation key stands already in line 1; the two are the "
                      "same, one is kept"}));
}

TEST_F(EngineImport, AFileInWindows1252IsReadAndReported) {
  const ImportResult result = import("a.bib", "@book{k, title={M\xFCller\x92s}}");
  ASSERT_EQ(result.references.size(), 1u);
  EXPECT_NE(result.references[0].cslJson.find("Müller’s"), std::string::npos);
  EXPECT_EQ(result.problems.size(), 1u);
}

TEST_F(EngineImport, AByteOrderMarkIsNoPartOfTheText) {
  EXPECT_EQ(import("a.json", "\xEF\xBB\xBF[{\"id\":\"k\",\"type\":\"book\"}]").references.size(),
            1u);
  const std::string_view utf16("\xFF\xFE[\0{\0}\0]\0", 10);
  EXPECT_EQ(import("b.json", utf16).references.size(), 1u);
}

TEST_F(EngineImport, AnRISRecordBecomesAnItemWithEveryAuthor) {
  const ImportResult result = import("a.ris",
                                     "TY  - JOUR\r\nAU  - Smith, John\r\nA1  - Jones, Ann\r\nTI  - "
                                     "A long title\r\nthat goes on\r\n"
                                     "JO  - Nature\r\nVL  - 3\r\nSP  - 12\r\nEP  - 15\r\nPY  - "
                                     "2001/03/04\r\nID  - s1\r\nER  - \r\n");
  ASSERT_EQ(result.references.size(), 1u);
  EXPECT_EQ(result.references[0].citationKey, "s1");
  EXPECT_EQ(result.references[0].cslJson,
            R"({"id":"s1","author":[{"family":"Smith","given":"John"},{"family":"Jones",)"
            R"("given":"Ann"}],"issued":{"date-parts":[[2001,3,4]]},"page":"12-15",)"
            R"("title":"A long title that goes on","type":"article-journal","volume":"3",)"
            R"("container-title":"Nature"})");
}

TEST_F(EngineImport, AnRISRecordWithoutAnEndIsKeptAndReported) {
  const ImportResult result = import("a.ris",
                                     "XX  - stray\nTY  - BOOK\nTI  - One\nTY  - BOOK\nTI  - Two\n"
                                     "SP  - 7\nER  - \nTY  - BOOK\nTI  - Three\n");
  ASSERT_EQ(result.references.size(), 3u);
  EXPECT_EQ(result.references[1].citationKey, "");
  EXPECT_NE(result.references[1].cslJson.find(R"("page":"7")"), std::string::npos);
  EXPECT_EQ(problemsOf(result),
            (Messages{"a.ris:1: a XX line outside any record is left out",
                      "a.ris:2: the record has no end (ER); it is taken to end at the next",
                      "a.ris:8: the record has no end (ER); the file may be cut short"}));
}

TEST_F(EngineImport, CSLJSONIsTakenAsItIs) {
  const ImportResult result =
      import("a.json", R"([{"id":"k","type":"book","title":"T","custom":{"a":1}}, {"id":7}])");
  ASSERT_EQ(result.references.size(), 2u);
  EXPECT_EQ(result.references[0].cslJson,
            R"({"id":"k","type":"book","title":"T","custom":{"a":1}})");
  EXPECT_EQ(result.references[1].citationKey, "7");
  EXPECT_EQ(result.references[1].cslJson, R"({"id":"7","type":"document"})");
}

TEST_F(EngineImport, ACitationKeyGoesBeforeAnId) {
  const ImportResult result =
      import("a.json", R"({"id":"http://x.example/1","citation-key":"smith","type":"book"})");
  ASSERT_EQ(result.references.size(), 1u);
  EXPECT_EQ(result.references[0].citationKey, "smith");
}

TEST_F(EngineImport, BrokenItemsOfAJSONFileAreReportedAndTheOthersKept) {
  const ImportResult result = import("a.json",
                                     "[{\"id\":\"a\"},\n {\"id\":\"b\", title:\"Y\"},\n"
                                     " {\"id\":\"c\",\"title\":\"br}ace\"}, {\"id\":\"d\"");
  ASSERT_EQ(result.references.size(), 2u);
  EXPECT_EQ(result.references[1].citationKey, "c");
  ASSERT_EQ(result.problems.size(), 2u);
  EXPECT_EQ(result.problems[0].line, 2u);
  EXPECT_EQ(result.problems[1].line, 3u);
}

TEST_F(EngineImport, KeysThatMeanSomethingToTheMachineAreKeysLikeOthers) {
  const ImportResult result =
      import("a.bib",
             "@book{__proto__, title={One}}\n@book{constructor, title={$&}}\n@book{__proto__, "
             "title={Two}}");
  ASSERT_EQ(result.references.size(), 3u);
  EXPECT_EQ(result.references[0].citationKey, "__proto__");
  EXPECT_EQ(result.references[1].citationKey, "constructor");
}

TEST_F(EngineImport, EmbeddedNULsAndLoneSurrogatesDoNotCutAnythingOff) {
  const ImportResult nul = import("a.bib", std::string_view("@book{k, title={a\0b}}", 21));
  ASSERT_EQ(nul.references.size(), 1u);
  EXPECT_NE(nul.references[0].cslJson.find(R"(a\u0000b)"), std::string::npos);
  const ImportResult lone = import("a.json", R"([{"id":"k","title":"a\ud800b"}])");
  ASSERT_EQ(lone.references.size(), 1u);
  EXPECT_NE(lone.references[0].cslJson.find(R"(a\ud800b)"), std::string::npos);
}

TEST_F(EngineImport, AnEmptyFileIsAnEmptyLibrary) {
  for (const char *name : {"a.bib", "a.ris"}) {
    EXPECT_TRUE(import(name, " \n").references.empty());
  }
  EXPECT_TRUE(import("a.json", "[]").references.empty());
}

TEST_F(EngineImport, AFileOfSomethingElseIsAnErrorOfOneLine) {
  EXPECT_EQ(errorOf("a.bib", "hello\nthere"), "a.bib: no entry of a library is in it");
  EXPECT_EQ(errorOf("a.ris", "hello"), "a.ris: no entry of a library is in it");
  EXPECT_TRUE(errorOf("a.json", "hello").starts_with("a.json:1: no JSON: "));
  EXPECT_EQ(errorOf("a.json", "[1,2]"), "a.json: not an item: no JSON object");
}

TEST_F(EngineImport, TellsHowFarTheReadingOfManyEntriesIs) {
  std::string bytes;
  for (int index = 0; index < 250; ++index) {
    bytes += "@book{k" + std::to_string(index) + ", title = {T}}\n";
  }
  std::vector<std::string> told;
  const auto result = importer().importFile(
      write("many.bib", bytes), [&](const std::filesystem::path &file, std::string_view soFar) {
        EXPECT_EQ(file.filename(), "many.bib");
        told.emplace_back(soFar);
      });
  ASSERT_TRUE(result);
  EXPECT_EQ(told, (Messages{"0 entries found", "100 entries found", "200 entries found",
                            "0 of 250 entries", "100 of 250 entries", "200 of 250 entries"}));
}

TEST_F(EngineImport, AFileThatCannotBeReadIsAnErrorOfOneLine) {
  const auto missing = importer().importFile((directory_ / "none.bib"));
  ASSERT_FALSE(missing);
  EXPECT_EQ(withoutDirectory(missing.error()),
            "none.bib: cannot be read: No such file or directory");
  const auto unknown = importer().importFile((directory_ / "none.docx"));
  ASSERT_FALSE(unknown);
  EXPECT_EQ(withoutDirectory(unknown.error()),
            "none.docx: not a library that can be read (known are .bib, .bibtex, .biblatex, .ris "
            "and .json)");
  std::filesystem::create_directory((directory_ / "folder.bib"));
  EXPECT_FALSE(importer().importFile((directory_ / "folder.bib")));
}

TEST_F(EngineImport, EveryPrefixOfALibraryIsReadWithoutAnException) {
  const std::string_view bib =
      "@string{j = {J}}@article{a, author={A \\\"{o} and {B}}, title=\"x {y}\", journal=j # 1}";
  for (std::size_t length = 0; length <= bib.size(); ++length) {
    const auto result = importer().importFile(write("p.bib", bib.substr(0, length)));
    if (!result) {
      EXPECT_EQ(result.error().find("TypeError"), std::string::npos) << result.error();
    }
  }
}

}  // namespace
