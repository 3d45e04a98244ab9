// Which of a work's facts a .bib file's fields become.

#include "ImportFixture.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class BibTeXFields : public ImportFixture {
 protected:
  std::string dateOf(const std::string &fields) {
    return itemOf("@book{k, title={T}, " + fields + "}").value("issued", Json()).dump();
  }
};

TEST_F(BibTeXFields, AnArticleStandsInItsJournal) {
  const Json item =
      itemOf("@article{k, title={T}, journal={Sigplan Notices}, booktitle={Proceedings}}");
  EXPECT_EQ(item["container-title"], "Sigplan Notices");
  EXPECT_EQ(itemOf("@article{k, booktitle={Proceedings}}")["container-title"], "Proceedings");
  EXPECT_EQ(itemOf("@inproceedings{k, booktitle={P}, journal={J}}")["container-title"], "P");
}

TEST_F(BibTeXFields, YearsBeforeOurEra) {
  EXPECT_EQ(dateOf("date={-0043-03-15}"), R"({"date-parts":[[-44,3,15]]})");
  EXPECT_EQ(dateOf("date={-0099/-0043}"), R"({"date-parts":[[-100],[-44]]})");
  EXPECT_EQ(dateOf("date={0000}"), R"({"date-parts":[[-1]]})");
  EXPECT_EQ(dateOf("year={44 BC}"), R"({"date-parts":[[-44]]})");
  EXPECT_EQ(dateOf("year={-44}"), R"({"date-parts":[[-44]]})");
}

TEST_F(BibTeXFields, DatesOfEveryKind) {
  EXPECT_EQ(dateOf("date={2001-05-03/2002}"), R"({"date-parts":[[2001,5,3],[2002]]})");
  EXPECT_EQ(dateOf("date={2001/..}"), R"({"date-parts":[[2001]]})");
  EXPECT_EQ(dateOf("date={1850~}"), R"({"circa":true,"date-parts":[[1850]]})");
  EXPECT_EQ(dateOf("date={199X}"), R"({"date-parts":[[1990],[1999]]})");
  EXPECT_EQ(dateOf("date={2001-21}"), R"({"date-parts":[[2001]],"season":1})");
  EXPECT_EQ(dateOf("date={soon}"), R"({"literal":"soon"})");
  EXPECT_EQ(dateOf("year=2001, month=jan"), R"({"date-parts":[[2001,1]]})");
  EXPECT_EQ(dateOf("year=2001, month=\"8~\" # oct"), R"({"date-parts":[[2001,10,8]]})");
  EXPECT_EQ(dateOf("year=2001, month=jul # \" 18--22\""),
            R"({"date-parts":[[2001,7,18],[2001,7,22]]})");
  EXPECT_EQ(dateOf("year=2001, month={May/June}"), R"({"date-parts":[[2001,5],[2001,6]]})");
  EXPECT_EQ(dateOf("year=2001, month=12, day=24"), R"({"date-parts":[[2001,12,24]]})");
  EXPECT_EQ(dateOf("year=2001, month={Fall}"), R"({"date-parts":[[2001]],"season":3})");
  EXPECT_EQ(dateOf("year={2001--2003}"), R"({"date-parts":[[2001],[2003]]})");
  EXPECT_EQ(dateOf("year={in press}"), R"({"literal":"in press"})");
}

TEST_F(BibTeXFields, AMonthThatIsNoneIsTold) {
  const ImportResult result = import("a.bib", "@book{k, year=2001, month={13}}");
  EXPECT_THAT(problemsOf(result), ElementsAre("a.bib:1: k: \"13\" is no month, and is left out"));
}

TEST_F(BibTeXFields, ANumberOfArXivGivesALocator) {
  const Json preprint = itemOf(
      "@misc{k, title={T}, eprint={2001.01234}, archiveprefix={arXiv}, primaryclass={cs.DS}}");
  EXPECT_EQ(preprint["URL"], "https://arxiv.org/abs/2001.01234");
  EXPECT_EQ(preprint["number"], "arXiv:2001.01234");
  EXPECT_EQ(preprint["type"], "article");
  const Json article = itemOf("@article{k, journal={J}, eprint={arXiv:hep-th/9901001}}");
  EXPECT_EQ(article["URL"], "https://arxiv.org/abs/hep-th/9901001");
  EXPECT_EQ(itemOf("@article{k, journal={arXiv preprint arXiv:1706.03762}}")["URL"],
            "https://arxiv.org/abs/1706.03762");
  // Who has a DOI is found by it.
  EXPECT_FALSE(itemOf("@article{k, eprint={2001.01234}, doi={10.1/x}}").contains("URL"));
  EXPECT_EQ(itemOf("@article{k, eprint={12345}, eprinttype={jstor}}")["URL"],
            "https://www.jstor.org/stable/12345");
  EXPECT_EQ(itemOf("@article{k, eprint={12345}, eprinttype={pubmed}}")["PMID"], "12345");
}

TEST_F(BibTeXFields, KindsOfPatentsAreNamedInWords) {
  const Json item = itemOf("@patent{k, type={patentus}, number={4,567,890}, location={countryus}}");
  EXPECT_EQ(item["type"], "patent");
  EXPECT_EQ(item["genre"], "U.S. patent");
  EXPECT_EQ(item["number"], "4,567,890");
  EXPECT_EQ(item["jurisdiction"], "United States of America");
}

TEST_F(BibTeXFields, NumbersOfThesesAndDatasetsAreKept) {
  EXPECT_EQ(itemOf("@thesis{k, type={phdthesis}, number={UMI 3}}")["number"], "UMI 3");
  EXPECT_EQ(itemOf("@phdthesis{k, number={7}}")["number"], "7");
  EXPECT_EQ(itemOf("@dataset{k, number={10289373}}")["number"], "10289373");
  EXPECT_EQ(itemOf("@techreport{k, number={7}}")["number"], "7");
  EXPECT_EQ(itemOf("@article{k, number={7}}")["issue"], "7");
  EXPECT_EQ(itemOf("@book{k, number={7}, series={S}}")["collection-number"], "7");
}

TEST_F(BibTeXFields, AnIssuesTitleIsKept) {
  const Json issue =
      itemOf("@periodical{k, title={Journal}, issuetitle={On x}, issuesubtitle={y}}");
  EXPECT_EQ(issue["title"], "On x: y");
  EXPECT_EQ(issue["container-title"], "Journal");
  EXPECT_EQ(itemOf("@article{k, journal={J}, issuetitle={On x}}")["volume-title"], "On x");
}

TEST_F(BibTeXFields, ATitleWithASubtitleIsItsOwnShortTitle) {
  const Json item = itemOf("@book{k, title={Why?}, subtitle={Because}, titleaddon={A play}}");
  EXPECT_EQ(item["title"], "Why? Because. A play");
  EXPECT_EQ(item["title-short"], "Why?");
  EXPECT_EQ(itemOf("@book{k, title={A}, subtitle={B}, shorttitle={C}}")["title-short"], "C");
}

TEST_F(BibTeXFields, AnArticlesNumberStandsForItsPages) {
  EXPECT_EQ(itemOf("@article{k, eid={e123}}")["page"], "e123");
  EXPECT_EQ(itemOf("@article{k, pages={12 -- 15, 20--25}}")["page"], "12-15, 20-25");
}

TEST_F(BibTeXFields, NotesAndAddendaAreBothKept) {
  EXPECT_EQ(itemOf("@book{k, note={N}, addendum={A}}")["note"], "N. A");
}

TEST_F(BibTeXFields, PapersAndMagazinesAreWhatTheyAre) {
  EXPECT_EQ(itemOf("@article{k, entrysubtype={newspaper}}")["type"], "article-newspaper");
  EXPECT_EQ(itemOf("@article{k, entrysubtype={magazine}}")["type"], "article-magazine");
}

TEST_F(BibTeXFields, OtherEndingsOfBibTeXFilesAreTaken) {
  for (const char *name : {"a.bibtex", "a.biblatex", "A.BIB", "a.BibTeX"}) {
    EXPECT_EQ(import(name, "@book{k, title={T}}").references.size(), 1U) << name;
  }
}

TEST_F(BibTeXFields, FieldsComeFromDataOfOtherEntries) {
  const ImportResult result = import("a.bib",
                                     "@xdata{pub, publisher={P}, location={L}}\n"
                                     "@book{k, title={T}, xdata={pub}}\n");
  ASSERT_EQ(result.references.size(), 1U);
  const Json item = Json::parse(result.references[0].cslJson);
  EXPECT_EQ(item["publisher"], "P");
  EXPECT_EQ(item["publisher-place"], "L");
  EXPECT_THAT(problemsOf(result), IsEmpty());
}

}  // namespace
