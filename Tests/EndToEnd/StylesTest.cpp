// What a reader of the formatted copy sees, in styles of each kind. The strings were compared with
// those of another CSL processor (pandoc's) for the same library, styles and order of citations.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace {

using namespace endtoend;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char *essay = "draft-libreoffice.rtf";
constexpr const char *notes = "draft-textedit.rtf";

Scan scanInStyle(const std::string &draft, const std::string &style) {
  Host host;
  EXPECT_TRUE(host.isReady()) << host.process().standardError();
  Scan result = scan(draft, {"--style", style});
  EXPECT_EQ(result.result.status, 0) << result.result.standardError;
  EXPECT_FALSE(result.formattedRTF.empty()) << "something changed outside the citations";
  return result;
}

TEST(Styles, ApaCitesAuthorYearAndPage) {
  const Scan copy = scanInStyle(essay, "apa");
  EXPECT_EQ(copy.formatted("{Kuhn 1961#kuhn1961@161–193}"), "(Kuhn, 1961, pp. 161–193)");
  EXPECT_EQ(copy.formatted("{Stevens 1946#stevens1946@677}"), "(Stevens, 1946, p. 677)");
  EXPECT_EQ(
      copy.formatted("{Merton 1968#merton1968; Price 1965#price1965; Garfield 1955#garfield1955}"),
      "(Garfield, 1955; Merton, 1968; Price, 1965)");
  EXPECT_THAT(
      copy.bibliography(),
      HasSubstr("Kuhn, T. S. (1961). The function of measurement in modern physical science. "
                "Isis, 52(2), 161–193. https://doi.org/10.1086/349468"));
}

TEST(Styles, ApaTellsNamesakesAndYearsApart) {
  const Scan copy = scanInStyle(essay, "apa");
  EXPECT_EQ(copy.formatted("{Smith 1776#smith1776}"), "(A. Smith, 1776)");
  EXPECT_EQ(copy.formatted("{Smith 1996#smith1996}"), "(B. C. Smith, 1996)");
  EXPECT_EQ(copy.formatted("{Einstein 1905#einstein1905light; Einstein 1905#einstein1905motion; "
                           "Einstein 1905#einstein1905energy}"),
            "(Einstein, 1905b, 1905c, 1905a)");
}

TEST(Styles, ApaFollowsEveryMarkerOfACitation) {
  const Scan copy = scanInStyle(essay, "apa");
  EXPECT_EQ(copy.formatted("{\\see also \\Kuhn 1962#kuhn1962}"), "(see also Kuhn, 1962)");
  EXPECT_EQ(copy.formatted("{\\compare \\Latour and Woolgar 1979\\, chapter 2\\#latour1979}"),
            "(compare Latour & Woolgar, 1979, chapter 2)");
  EXPECT_EQ(copy.formatted("{*Alder 2002#alder2002}"), "Alder, 2002");
  EXPECT_EQ(copy.formatted("{%Bureau international des poids et mesures 2019#bipm2019}"), "(2019)");
  EXPECT_EQ(copy.formatted("{%*Poincaré 1902#poincare1902}"), "1902");
  EXPECT_EQ(copy.formatted("{!Sobel 1995#sobel1995}"), "");
  EXPECT_EQ(copy.formatted("{^Newton 1687#newton1687}"), "(Newton, 1687)");
  EXPECT_THAT(copy.bibliography(),
              AllOf(HasSubstr("Sobel, D. (1995)"), Not(HasSubstr("Newton, I."))));
}

TEST(Styles, ApaKnowsParticlesAccentsAndOtherAlphabets) {
  const Scan copy = scanInStyle(notes, "apa");
  EXPECT_EQ(copy.formatted("{de Beauvoir 1949#beauvoir1949}"), "(de Beauvoir, 1949)");
  EXPECT_EQ(copy.formatted("{van der Waerden 1930#vanderwaerden1930}"), "(van der Waerden, 1930)");
  EXPECT_EQ(copy.formatted("{Erdős and Rényi 1960}"), "(Erdős & Rényi, 1960)");
  EXPECT_EQ(copy.formatted("{al-Khwārizmī 1831#alkhwarizmi1831}"), "(al-Khwārizmī, 1831)");
  EXPECT_EQ(copy.formatted("{Колмогоров 1965#kolmogorov1965}"), "(Колмогоров, 1965)");
  EXPECT_EQ(copy.formatted("{Vaswani et al. 2017#vaswani2017}"), "(Vaswani et al., 2017)");
}

TEST(Styles, ApaLeavesOutOneCitationOfAGroupAndStillListsIt) {
  const Scan copy = scanInStyle(notes, "apa");
  EXPECT_EQ(copy.formatted("{Turing 1950#turing1950@442;!Smith 1996#smith1996}"),
            "(Turing, 1950, p. 442)");
  EXPECT_THAT(copy.bibliography(), HasSubstr("Smith, B. C. (1996)"));
}

TEST(Styles, ApaSetsCitationsInTableCellsAndFootnotes) {
  const Scan copy = scanInStyle(essay, "apa");
  EXPECT_EQ(copy.formatted("{Ångström 1868#angstrom1868}"), "(Ångström, 1868)");
  EXPECT_EQ(copy.formatted("{Watson and Crick 1953#watson1953@737; Franklin and Gosling 1953\\, "
                           "both cautious\\#franklin1953}"),
            "(Franklin & Gosling, 1953, both cautious; Watson & Crick, 1953, p. 737)");
}

// Whether the style, as it is installed here, makes a range of successive numbers: editions of ieee
// differ.
bool collapsesNumbers(const std::string &style) {
  std::ifstream file("/usr/share/citation-style-language/styles/" + style + ".csl");
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const std::size_t begin = text.find("<citation");
  EXPECT_NE(begin, std::string::npos) << style;
  const std::string_view element =
      std::string_view(text).substr(begin, text.find('>', begin) - begin);
  return element.find("collapse=\"citation-number\"") != std::string_view::npos;
}

TEST(Styles, IeeeNumbersInOrderOfAppearance) {
  const Scan copy = scanInStyle(essay, "ieee");
  EXPECT_EQ(copy.formatted("{Mars Climate Orbiter Board 1999#mco1999}"), "[1]");
  EXPECT_EQ(copy.formatted("{Kuhn 1961#kuhn1961@161–193}"), "[2, pp. 161–193]");
  EXPECT_EQ(copy.formatted("{\\see also \\Kuhn 1962#kuhn1962}"), "see also [3]");
  EXPECT_EQ(copy.formatted("{Alder 2002#alder2002}"), "[12]");
  EXPECT_EQ(
      copy.formatted("{Merton 1968#merton1968; Price 1965#price1965; Garfield 1955#garfield1955}"),
      collapsesNumbers("ieee") ? "[28]–[30]" : "[28], [29], [30]");
  EXPECT_THAT(copy.bibliography(), HasSubstr("[2]"));
}

TEST(Styles, NatureRaisesItsNumbers) {
  const Scan copy = scanInStyle(essay, "nature");
  EXPECT_EQ(copy.formatted("{Kuhn 1961#kuhn1961@161–193}"), "2");
  EXPECT_THAT(copy.formattedRTF.at("{Kuhn 1961#kuhn1961@161–193}"), HasSubstr("\\super"));
  EXPECT_EQ(
      copy.formatted("{Merton 1968#merton1968; Price 1965#price1965; Garfield 1955#garfield1955}"),
      "28–30");
  // The marker that suppresses the superscript.
  EXPECT_EQ(copy.formatted("{_Planck 1901#planck1901@553–563}"), "33");
  EXPECT_THAT(copy.formattedRTF.at("{_Planck 1901#planck1901@553–563}"), Not(HasSubstr("\\super")));
}

TEST(Styles, VancouverNumbersInParentheses) {
  const Scan copy = scanInStyle(essay, "vancouver");
  EXPECT_EQ(copy.formatted("{Mars Climate Orbiter Board 1999#mco1999}"), "(1)");
  EXPECT_EQ(copy.formatted("{\\see also \\Kuhn 1962#kuhn1962}"), "(see also 3)");
  EXPECT_EQ(copy.formatted("{Einstein 1905#einstein1905light; Einstein 1905#einstein1905motion; "
                           "Einstein 1905#einstein1905energy}"),
            "(35–37)");
}

TEST(Styles, ChicagoAuthorDateShortensPageRanges) {
  const Scan copy = scanInStyle(essay, "chicago-author-date");
  EXPECT_EQ(copy.formatted("{Kuhn 1961#kuhn1961@161–193}"), "(Kuhn 1961, 161–93)");
  EXPECT_EQ(copy.formatted("{\\compare \\Latour and Woolgar 1979\\, chapter 2\\#latour1979}"),
            "(compare Latour and Woolgar 1979, chapter 2)");
  EXPECT_EQ(copy.formatted("{Smith 1776#smith1776}"), "(A. Smith 1776)");
  EXPECT_EQ(
      copy.formatted("{Merton 1968#merton1968; Price 1965#price1965; Garfield 1955#garfield1955}"),
      "(Merton 1968; Price 1965; Garfield 1955)");
}

TEST(Styles, ModernLanguageAssociationCitesTitlesWhereAuthorsAreNotEnough) {
  const Scan copy = scanInStyle(essay, "modern-language-association");
  EXPECT_EQ(copy.formatted("{Stevens 1946#stevens1946@677}"), "(Stevens 677)");
  EXPECT_EQ(copy.formatted("{Kuhn 1961#kuhn1961@161–193}"),
            "(Kuhn, “The Function of Measurement in Modern Physical Science” 161–93)");
  EXPECT_EQ(copy.formatted("{\\see also \\Kuhn 1962#kuhn1962}"),
            "(see also Kuhn, The Structure of Scientific Revolutions)");
  EXPECT_THAT(copy.formattedRTF.at("{\\see also \\Kuhn 1962#kuhn1962}"), HasSubstr("\\i"));
}

TEST(Styles, ChicagoNotesSayWhatTheNoteWouldSay) {
  const Scan copy = scanInStyle(essay, "chicago-note-bibliography");
  EXPECT_THAT(copy.formatted("{Stevens 1946#stevens1946@677}"),
              AllOf(HasSubstr("Stevens"), HasSubstr("“On the Theory of Scales of Measurement,”"),
                    HasSubstr("677")));
  EXPECT_THAT(copy.bibliography(),
              HasSubstr("Kuhn, Thomas S. “The Function of Measurement in Modern Physical Science.” "
                        "Isis 52, no. 2 (1961): 161–93. https://doi.org/10.1086/349468."));
}

}  // namespace
