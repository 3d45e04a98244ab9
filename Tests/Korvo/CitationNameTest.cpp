#include <StandIns/Korvo/Library/CitationName.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using korvo::library::BibliographicRecord;
using korvo::library::canonicalCitationName;
using korvo::library::citationNames;
using korvo::library::firstAuthorAndYear;
using korvo::library::PersonName;
using testing::UnorderedElementsAre;

namespace {

BibliographicRecord by(std::vector<PersonName> authors, std::string year = "2001") {
  return {.authors = std::move(authors),
          .year = std::move(year),
          .title = "",
          .kind = "",
          .containerTitle = ""};
}

const PersonName smith{.family = "Smith", .given = "John"};
const PersonName jones{.family = "Jones"};
const PersonName lee{.family = "Lee"};
const PersonName vanGogh{.particle = "van", .family = "Gogh"};

bool isFoundBy(const BibliographicRecord &record, std::string_view text) {
  return std::ranges::count(citationNames(record), canonicalCitationName(text)) == 1;
}

}  // namespace

TEST(CitationName, BringsEveryWayOfWritingIntoOneForm) {
  EXPECT_EQ(canonicalCitationName("Smith 2001"), "smith 2001");
  EXPECT_EQ(canonicalCitationName("Smith, 2001"), "smith 2001");
  EXPECT_EQ(canonicalCitationName("  SMITH ,\u00A0 2001 "), "smith 2001");
  EXPECT_EQ(canonicalCitationName("Smith & Jones 2001"), "smith and jones 2001");
  EXPECT_EQ(canonicalCitationName("Smith&Jones, 2001"), "smith and jones 2001");
  EXPECT_EQ(canonicalCitationName("Smith et al., 2001"), "smith et al 2001");
  EXPECT_EQ(canonicalCitationName(""), "");
}

TEST(CitationName, ASingleAuthorHasOneForm) {
  EXPECT_THAT(citationNames(by({smith})), UnorderedElementsAre("smith 2001"));
}

TEST(CitationName, TwoAuthorsAreNamedBothOrByTheFirst) {
  EXPECT_THAT(citationNames(by({smith, jones})),
              UnorderedElementsAre("smith 2001", "smith and jones 2001", "smith et al 2001"));
}

TEST(CitationName, NamesThatAreNotAllAreFollowedByEtAl) {
  BibliographicRecord record = by({smith});
  record.hasMoreAuthors = true;
  EXPECT_THAT(citationNames(record), UnorderedElementsAre("smith 2001", "smith et al 2001"));
  record.authors.push_back(jones);
  EXPECT_TRUE(isFoundBy(record, "Smith et al., 2001"));
  EXPECT_TRUE(isFoundBy(record, "Smith, Jones, et al. 2001"));
}

TEST(CitationName, ThreeAuthorsAreNamedAllOrWithEtAl) {
  const BibliographicRecord record = by({smith, jones, lee});
  EXPECT_TRUE(isFoundBy(record, "Smith, Jones, and Lee, 2001"));
  EXPECT_TRUE(isFoundBy(record, "Smith, Jones & Lee 2001"));
  EXPECT_TRUE(isFoundBy(record, "Smith et al., 2001"));
  EXPECT_TRUE(isFoundBy(record, "Smith, Jones, et al. 2001"));
  EXPECT_TRUE(isFoundBy(record, "Smith 2001"));
  EXPECT_FALSE(isFoundBy(record, "Smith and Jones 2001"));
  EXPECT_FALSE(isFoundBy(record, "Jones 2001"));
  EXPECT_FALSE(isFoundBy(record, "Smith et al. 2002"));
  EXPECT_FALSE(isFoundBy(record, "Smith"));
  EXPECT_FALSE(isFoundBy(record, "2001"));
}

TEST(CitationName, AParticleMayBeWrittenOrLeftOut) {
  EXPECT_THAT(citationNames(by({vanGogh}, "1888")),
              UnorderedElementsAre("van gogh 1888", "gogh 1888"));
  for (const char *text : {"van Gogh and Smith 2001", "Gogh & Smith 2001", "Gogh et al. 2001"}) {
    EXPECT_TRUE(isFoundBy(by({vanGogh, smith}), text)) << text;
  }
  for (const char *text : {"Smith and van Gogh 2001", "Smith and Gogh 2001"}) {
    EXPECT_TRUE(isFoundBy(by({smith, vanGogh}), text)) << text;
  }
  EXPECT_TRUE(isFoundBy(by({vanGogh, vanGogh}), "van Gogh and Gogh 2001"));
}

TEST(CitationName, IgnoresFullStopsInNames) {
  EXPECT_TRUE(isFoundBy(by({{.family = "St. John"}}), "St John 2001"));
  EXPECT_TRUE(isFoundBy(by({{.family = "I.B.M."}}), "IBM 2001"));
}

TEST(CitationName, WithoutAuthorOrYearThereIsNone) {
  EXPECT_TRUE(citationNames(by({})).empty());
  EXPECT_TRUE(citationNames(by({smith}, "")).empty());
  EXPECT_EQ(firstAuthorAndYear(by({})), std::nullopt);
  EXPECT_EQ(firstAuthorAndYear(by({smith}, "")), std::nullopt);
}

TEST(CitationName, TheFirstAuthorAndYearFindTheReferenceAgain) {
  EXPECT_EQ(firstAuthorAndYear(by({vanGogh, smith}, "1888")), "van Gogh 1888");
  EXPECT_TRUE(isFoundBy(by({vanGogh, smith}), *firstAuthorAndYear(by({vanGogh, smith}))));
}

TEST(CitationName, AThousandAuthorsHaveFewForms) {
  EXPECT_THAT(citationNames(by(std::vector<PersonName>(1000, smith))),
              UnorderedElementsAre("smith 2001", "smith et al 2001", "smith smith et al 2001"));
}
