#include <StandIns/Korvo/Library/BibliographicRecord.h>

#include <gtest/gtest.h>

using korvo::library::authorsInOneLine;
using korvo::library::BibliographicRecord;
using korvo::library::PersonName;
using korvo::library::readBibliographicRecord;

TEST(BibliographicRecord, ReadsWhoWhenAndWhat) {
  const auto record = readBibliographicRecord(
      R"({"type":"article-journal","title":"On Heat","container-title":"Nature",
          "author":[{"family":"Smith","given":"John"},{"family":"Jones","given":"Ann"}],
          "issued":{"date-parts":[[2001,5,3]]}})");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->kind, "article-journal");
  EXPECT_EQ(record->title, "On Heat");
  EXPECT_EQ(record->containerTitle, "Nature");
  EXPECT_EQ(record->year, "2001");
  EXPECT_EQ(authorsInOneLine(*record), "Smith, John; Jones, Ann");
}

TEST(BibliographicRecord, KeepsParticlesApartFromFamilyNames) {
  const PersonName vanGogh{.particle = "van", .family = "Gogh", .given = "Vincent"};
  for (const char *author : {R"({"family":"Gogh","given":"Vincent","non-dropping-particle":"van"})",
                             R"({"family":"Gogh","given":"Vincent","dropping-particle":"van"})",
                             R"({"family":"van Gogh","given":"Vincent"})"}) {
    const auto record = readBibliographicRecord(std::string(R"({"author":[)") + author + "]}");
    ASSERT_TRUE(record) << author;
    ASSERT_EQ(record->authors.size(), 1U) << author;
    EXPECT_EQ(record->authors.front(), vanGogh) << author;
    EXPECT_EQ(record->authors.front().familyWithParticle(), "van Gogh");
  }
}

TEST(BibliographicRecord, WritesAParticleWithAnApostropheClose) {
  EXPECT_EQ((PersonName{.particle = "d'", .family = "Alembert"}.familyWithParticle()),
            "d'Alembert");
  EXPECT_EQ((PersonName{.particle = "d’", .family = "Alembert"}.familyWithParticle()),
            "d’Alembert");
  EXPECT_EQ((PersonName{.particle = "al-", .family = "Tabari"}.familyWithParticle()), "al-Tabari");
}

TEST(BibliographicRecord, TakesOthersForNoPerson) {
  const auto record = readBibliographicRecord(
      R"({"author":[{"family":"Smith","given":"John"},{"literal":"others"}]})");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->authors, (std::vector{PersonName{.family = "Smith", .given = "John"}}));
  EXPECT_TRUE(record->hasMoreAuthors);
  EXPECT_EQ(authorsInOneLine(*record), "Smith, John; et al.");
}

TEST(BibliographicRecord, TakesAnInstitutionsNameAsAWhole) {
  const auto record = readBibliographicRecord(R"({"author":[{"literal":"the World Bank, IBRD"}]})");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->authors.front().invertedForm(), "the World Bank, IBRD");
}

TEST(BibliographicRecord, NamesTheEditorsWhereThereIsNoAuthor) {
  const auto record = readBibliographicRecord(R"({"editor":[{"family":"Sarton"}],"title":"Isis"})");
  ASSERT_TRUE(record);
  EXPECT_EQ(authorsInOneLine(*record), "Sarton");
}

TEST(BibliographicRecord, FindsTheYearInEveryFormOfADate) {
  const auto year = [](const char *issued) {
    const auto record = readBibliographicRecord(std::string(R"({"issued":)") + issued + "}");
    return record ? record->year : "no record";
  };
  EXPECT_EQ(year(R"({"date-parts":[[2001]]})"), "2001");
  EXPECT_EQ(year(R"({"date-parts":[["2001","5"]]})"), "2001");
  EXPECT_EQ(year(R"({"date-parts":[[2001,5],[2002]]})"), "2001");
  EXPECT_EQ(year(R"({"date-parts":[[-350]]})"), "-350");
  EXPECT_EQ(year(R"({"raw":"3 May 2001"})"), "2001");
  EXPECT_EQ(year(R"({"literal":"circa 1620"})"), "1620");
  EXPECT_EQ(year(R"("2001-05-03")"), "2001");
  EXPECT_EQ(year(R"({"literal":"forthcoming"})"), "");
  EXPECT_EQ(year(R"({"date-parts":[[]]})"), "");
  EXPECT_EQ(year(R"({"date-parts":[[0]]})"), "");
  EXPECT_EQ(year(R"({"date-parts":"2001"})"), "");
  EXPECT_EQ(year("[2001]"), "");
  EXPECT_EQ(year("null"), "");
}

TEST(BibliographicRecord, TakesMembersOfTheWrongKindForAbsent) {
  const auto record =
      readBibliographicRecord(R"({"title":["x"],"type":{},"author":"Smith",)"
                              R"("editor":[1,null,{"given":7},{"family":[]}],"issued":3})");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->title, "");
  EXPECT_EQ(record->kind, "");
  EXPECT_EQ(authorsInOneLine(*record), "7");
}

TEST(BibliographicRecord, RefusesWhatIsNoObject) {
  for (const char *text : {"", "[]", "null", "\"x\"", "{", "{\"a\":\"\xFF\"}", "nonsense"}) {
    EXPECT_FALSE(readBibliographicRecord(text)) << text;
  }
}

TEST(BibliographicRecord, ReadsDeeplyNestedTextWithoutHarm) {
  const std::string deep(200'000, '[');
  EXPECT_FALSE(readBibliographicRecord(deep));
  EXPECT_TRUE(readBibliographicRecord(R"({"x":)" + deep + std::string(200'000, ']') + "}"));
}
