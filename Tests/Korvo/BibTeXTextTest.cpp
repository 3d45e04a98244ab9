// What LaTeX in a .bib file prints: texts, names, addresses.

#include "ImportFixture.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BibTeXText : public ImportFixture {
 protected:
  std::string titleOf(std::string_view latex) {
    return itemOf("@book{k, title={" + std::string(latex) + "}}").value("title", "");
  }

  std::string addressOf(std::string_view latex) {
    return itemOf("@online{k, url={" + std::string(latex) + "}}").value("URL", "");
  }

  std::string doiOf(std::string_view latex) {
    return itemOf("@article{k, doi={" + std::string(latex) + "}}").value("DOI", "");
  }

  // Each as "particle|family|suffix|given".
  std::vector<std::string> authorsOf(std::string_view latex) {
    std::vector<std::string> names;
    const Json item = itemOf("@book{k, author={" + std::string(latex) + "}}");
    for (const Json &author : item.value("author", Json::array())) {
      names.push_back(author.contains("literal")
                          ? "literal: " + author.value("literal", "")
                          : author.value("non-dropping-particle", "") + "|" +
                                author.value("family", "") + "|" + author.value("suffix", "") +
                                "|" + author.value("given", ""));
    }
    return names;
  }
};

TEST_F(BibTeXText, QuotationsNestAndMayBeStarred) {
  EXPECT_EQ(titleOf("\\enquote{outer \\enquote{inner}}"), "“outer ‘inner’”");
  EXPECT_EQ(titleOf("\\enquote*{inner}"), "‘inner’");
  const Json item = itemOf("@book{k, annotation={A \\enquote*{note}}, title={T}}");
  EXPECT_EQ(item["annote"], "A ‘note’");
}

TEST_F(BibTeXText, AnAccentOnNothingIsTheAccent) {
  EXPECT_EQ(titleOf("O\\'{}Brien"), "O´Brien");
  EXPECT_EQ(titleOf("a\\~{}b\\^{}c"), "a~b^c");
  EXPECT_EQ(titleOf("\\'"), "´");
}

TEST_F(BibTeXText, AccentsStandOnLettersWithAndWithoutBraces) {
  EXPECT_EQ(titleOf("Poincar\\'e, \\v{C}ech, \\c c, \\'{\\i}, \\~n, \\H{o}, \\r a, \\d{h}"),
            "Poincaré, Čech, ç, í, ñ, ő, å, ḥ");
}

TEST_F(BibTeXText, ABackslashBeforeABlankIsABlank) {
  EXPECT_EQ(titleOf("Deut.\\ Math.\\  in \\LaTeX\\ now"), "Deut. Math. in LaTeX now");
}

TEST_F(BibTeXText, EscapedSignsAreTheSigns) {
  EXPECT_EQ(titleOf("A \\& B \\% \\$5 \\#1 \\_ \\{x\\}"), "A & B % $5 #1 _ {x}");
}

TEST_F(BibTeXText, FormulasHaveTheirSigns) {
  EXPECT_EQ(titleOf("$\\mathrm{CO}_2$, $10^{-3}$, $x^{th}$, $\\log n$, $90^\\circ$"),
            "CO₂, 10⁻³, x<sup>th</sup>, log n, 90°");
  EXPECT_EQ(titleOf("$O(n^k) $ time"), "O(n<sup>k</sup>) time");
}

TEST_F(BibTeXText, PricesAreNoFormula) {
  EXPECT_EQ(titleOf("From $5 and $10 to $20"), "From $5 and $10 to $20");
}

TEST_F(BibTeXText, ACommandThatIsNotKnownGivesItsTextOrItsNameAndIsTold) {
  const ImportResult result =
      import("a.bib", "@book{k, title={\\acronym{IBM} and \\ConTeXt{} on \\VAX\\ here}}");
  EXPECT_EQ(Json::parse(result.references.at(0).cslJson)["title"], "IBM and ConTeXt on VAX here");
  EXPECT_THAT(
      problemsOf(result),
      ElementsAre(
          "a.bib:1: k: the command \\acronym in \"title\" is not known; its text or its name is "
          "taken",
          "a.bib:1: k: the command \\ConTeXt in \"title\" is not known; its text or its name is "
          "taken",
          "a.bib:1: k: the command \\VAX in \"title\" is not known; its text or its name is "
          "taken"));
}

TEST_F(BibTeXText, CommandsInFieldsThatAreNotUsedAreNotReported) {
  EXPECT_THAT(problemsOf(import("a.bib", "@book{k, title={T}, rating={\\stars{3} $5}}")),
              IsEmpty());
}

TEST_F(BibTeXText, FacesAndLinksPrintTheirText) {
  EXPECT_EQ(titleOf("{\\it Whole} and \\textsc{Small}, \\href{https://a.example}{there}"),
            "<i>Whole</i> and <span style=\"font-variant:small-caps;\">Small</span>, there");
}

TEST_F(BibTeXText, AndOthersIsNoPerson) {
  EXPECT_THAT(authorsOf("Smith, John and Lee, Ann and others"),
              ElementsAre("|Smith||John", "|Lee||Ann", "literal: others"));
  EXPECT_EQ(itemOf("@book{k, publisher={A and B and others}}")["publisher"], "A and B et al.");
}

TEST_F(BibTeXText, AHyphenInANameStays) {
  EXPECT_THAT(
      authorsOf("Muhammad al-Tabari and al-Tabari, Muhammad and Ken-ichi Kawarabayashi and "
                "Jean-Luc Doumont and {\\'E}ric Sopena and van Antwerpen-de Fluiter, B."),
      ElementsAre("|al-Tabari||Muhammad", "|al-Tabari||Muhammad", "|Kawarabayashi||Ken-ichi",
                  "|Doumont||Jean-Luc", "|Sopena||Éric", "van|Antwerpen-de Fluiter||B."));
}

TEST_F(BibTeXText, NamesInEveryOrder) {
  EXPECT_THAT(
      authorsOf("Ludwig van Beethoven AND {van Gogh Museum} and King, Jr., Martin Luther and "
                "Donald~E. Knuth and family=Duchamp, given=Philippe, prefix=de"),
      ElementsAre("van|Beethoven||Ludwig", "|van Gogh Museum||", "|King|Jr.|Martin Luther",
                  "|Knuth||Donald E.", "de|Duchamp||Philippe"));
}

TEST_F(BibTeXText, ADOILosesItsAddressAndItsEscapes) {
  EXPECT_EQ(doiOf("https://doi.org/10.1000/a\\_b"), "10.1000/a_b");
  EXPECT_EQ(doiOf("http://dx.doi.org/10.1000/(SICI)1097%3AA"), "10.1000/(SICI)1097:A");
  EXPECT_EQ(doiOf("doi: 10.1000/{\\_}x"), "10.1000/_x");
  EXPECT_EQ(doiOf("DOI:10.1000/5%41"), "10.1000/5A");
  EXPECT_EQ(doiOf("10.1000/5%41"), "10.1000/5%41");
}

TEST_F(BibTeXText, AnAddressIsTakenAsItIs) {
  EXPECT_EQ(addressOf("https://a.example/x?a=1\\&b=2\\%20c\\_d\\#e"),
            "https://a.example/x?a=1&b=2%20c_d#e");
  EXPECT_EQ(addressOf("https://a.example/%E4%BD%A0"), "https://a.example/%E4%BD%A0");
  EXPECT_EQ(addressOf("https://a.example/%E0%A4%A"), "https://a.example/%E0%A4%A");
  EXPECT_EQ(addressOf("\\url{https://a.example/~me/{\\textasciitilde}x\\~{}y}"),
            "https://a.example/~me/~x~y");
  EXPECT_EQ(addressOf("{https://a.example/a b\n    c}"), "https://a.example/a%20bc");
}

TEST_F(BibTeXText, AnAddressInHowPublishedIsAnAddress) {
  const Json item =
      itemOf("@misc{k, title={T}, howpublished={Online: \\url{https://a.example/x_y}}}");
  EXPECT_EQ(item["URL"], "https://a.example/x_y");
}

}  // namespace
