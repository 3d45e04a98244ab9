// Citations as people write them out, found in a library.
#include <StandIns/Korvo/Library/Library.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using korvo::library::Library;
using korvo::library::NewReference;
using korvo::library::ReferenceRow;
using testing::ElementsAre;
using testing::IsEmpty;

NewReference reference(const std::string &identifier, const std::string &authors,
                       const std::string &year, const std::string &title = "Some Title") {
  std::string json = R"({"type":"book","title":")" + title + R"(","author":[)" + authors + "]";
  if (!year.empty()) {
    json += R"(,"issued":{"date-parts":[[)" + year + "]]}";
  }
  return {.identifier = identifier, .cslJson = json + "}"};
}

class LooseMatching : public testing::Test {
 protected:
  LooseMatching() : library_(*Library::temporary("test")) {
    const std::vector<NewReference> references = {
        reference("tolkien", R"({"family":"Tolkien","given":"J. R. R."})", "1954"),
        reference("smith", R"({"family":"Smith","given":"John A."})", "2009"),
        reference("anne", R"({"family":"Smith","given":"Anne"})", "2010"),
        reference("bob", R"({"family":"Smith","given":"Bob"})", "2010"),
        reference("king", R"({"family":"King","given":"Martin Luther","suffix":"Jr."})", "1963"),
        reference("kings", R"({"family":"King","given":"Mary"})", "1963"),
        reference("nodate", R"({"family":"Nodate","given":"Ned"})", ""),
        reference("nodates", R"({"family":"Nodateson","given":"Ned"})", ""),
        reference("gogh", R"({"non-dropping-particle":"van","family":"Gogh","given":"Vincent"})",
                  "1888"),
        reference("pair",
                  R"({"family":"Knuth","given":"Donald E."},{"family":"Bendix","given":"Peter"})",
                  "1970"),
        reference("three",
                  R"({"family":"Aho","given":"Alfred"},{"family":"Sethi","given":"Ravi"},)"
                  R"({"family":"Ullman","given":"Jeffrey"})",
                  "1986"),
        reference("who", R"({"literal":"World Health Organization"})", "2020"),
        reference("sartre", R"({"family":"Sartre","given":"Jean-Paul"})", "1943"),
        reference("beowulf", "", "1815", "Beowulf"),
        reference("runner", "", "2017", "Blade Runner 2049"),
        reference("manual", "", "2017", "The Chicago Manual of Style: The Essential Guide"),
        reference("leaflet", "", "", "A Leaflet"),
        reference("sagan", R"({"family":"Sagan","given":"Carl"})", "1980", "Cosmos")};
    EXPECT_TRUE(library_.add(references));
  }

  std::vector<std::string> found(std::string_view text) {
    const auto rows = library_.matching(text);
    EXPECT_TRUE(rows) << rows.error();
    std::vector<std::string> identifiers;
    for (const ReferenceRow row : *rows) {
      identifiers.push_back((*library_.summary(row))->identifier);
    }
    return identifiers;
  }

  Library library_;
};

TEST_F(LooseMatching, InitialsBeforeTheNameFind) {
  for (const char *text : {"J.R.R. Tolkien, 1954", "J. R. R. Tolkien 1954", "J.R.R.Tolkien 1954",
                           "JRR Tolkien 1954", "J. Tolkien 1954", "John Ronald Reuel Tolkien 1954",
                           "Tolkien, J.R.R. 1954", "Tolkien, J. R. R., 1954"}) {
    EXPECT_THAT(found(text), ElementsAre("tolkien")) << text;
  }
}

TEST_F(LooseMatching, GivenNamesFindAndTellPeopleApart) {
  for (const char *text : {"John Smith 2009", "J. Smith 2009", "John A. Smith, 2009",
                           "John Albert Smith 2009", "Smith, John 2009", "JOHN SMITH 2009"}) {
    EXPECT_THAT(found(text), ElementsAre("smith")) << text;
  }
  EXPECT_THAT(found("Smith 2010"), ElementsAre("anne", "bob"));
  EXPECT_THAT(found("Anne Smith 2010"), ElementsAre("anne"));
  EXPECT_THAT(found("B. Smith 2010"), ElementsAre("bob"));
  for (const char *text : {"Jane Smith 2009", "K. Smith 2009", "John B. Smith 2009",
                           "John Smith 2008", "Smith John 2009", "Jo Smith 2009"}) {
    EXPECT_THAT(found(text), IsEmpty()) << text;
  }
}

TEST_F(LooseMatching, ASuffixFindsAndTellsPeopleApart) {
  EXPECT_THAT(found("King 1963"), ElementsAre("king", "kings"));
  for (const char *text : {"King Jr. 1963", "King, Jr. 1963", "King, Jr., 1963", "King jr 1963",
                           "Martin Luther King Jr. 1963", "Martin Luther King, Jr., 1963",
                           "King, Martin Luther, Jr. 1963", "Martin L. King 1963"}) {
    EXPECT_THAT(found(text), ElementsAre("king")) << text;
  }
  EXPECT_THAT(found("King Sr. 1963"), IsEmpty());
}

TEST_F(LooseMatching, WorksWithoutADateAreFound) {
  for (const char *text : {"Nodate n.d.", "Nodate, n.d.", "Nodate (n.d.)", "N. Nodate n. d.",
                           "Ned Nodate, n.d.", "Nodate no date"}) {
    EXPECT_THAT(found(text), ElementsAre("nodate")) << text;
  }
  EXPECT_THAT(found("Nodate"), IsEmpty());
  EXPECT_THAT(found("Smith n.d."), IsEmpty());
  EXPECT_THAT(found("Nodates n.d."), IsEmpty());
}

TEST_F(LooseMatching, BracketsAroundTheYearDoNotMatter) {
  EXPECT_THAT(found("Smith (2009)"), ElementsAre("smith"));
  EXPECT_THAT(found("Smith [2009]"), ElementsAre("smith"));
  EXPECT_THAT(found("Knuth and Bendix (1970)"), ElementsAre("pair"));
  EXPECT_THAT(found("Aho et al. (1986)"), ElementsAre("three"));
}

TEST_F(LooseMatching, SeveralAuthorsMayBeWrittenOut) {
  for (const char *text :
       {"Donald Knuth and Peter Bendix 1970", "D.E. Knuth & P. Bendix, 1970",
        "Knuth, D. E., & Bendix, P. 1970", "Donald E. Knuth et al. 1970", "D. Knuth 1970"}) {
    EXPECT_THAT(found(text), ElementsAre("pair")) << text;
  }
  for (const char *text :
       {"A. Aho, R. Sethi, and J. Ullman 1986", "A. Aho et al., 1986",
        "Aho, A., Sethi, R., Ullman, J. (1986)", "A. Aho, R. Sethi et al. 1986"}) {
    EXPECT_THAT(found(text), ElementsAre("three")) << text;
  }
  for (const char *text :
       {"A. Aho and R. Sethi 1986", "D. Knuth and J. Bendix 1970", "P. Bendix and D. Knuth 1970"}) {
    EXPECT_THAT(found(text), IsEmpty()) << text;
  }
}

TEST_F(LooseMatching, ParticlesHyphensAndInstitutionsAreUnderstood) {
  EXPECT_THAT(found("Vincent van Gogh 1888"), ElementsAre("gogh"));
  EXPECT_THAT(found("V. van Gogh (1888)"), ElementsAre("gogh"));
  EXPECT_THAT(found("van Gogh (1888)"), ElementsAre("gogh"));
  EXPECT_THAT(found("J.-P. Sartre 1943"), ElementsAre("sartre"));
  EXPECT_THAT(found("Jean-Paul Sartre 1943"), ElementsAre("sartre"));
  EXPECT_THAT(found("J. Sartre 1943"), ElementsAre("sartre"));
  EXPECT_THAT(found("World Health Organization (2020)"), ElementsAre("who"));
  EXPECT_THAT(found("The World Health Organization 2020"), IsEmpty());
}

TEST_F(LooseMatching, AWorkWithoutAuthorIsFoundByItsTitle) {
  for (const char *text :
       {"Beowulf", "Beowulf 1815", "beowulf (1815)", "\"Beowulf\"", "“Beowulf”, 1815"}) {
    EXPECT_THAT(found(text), ElementsAre("beowulf")) << text;
  }
  EXPECT_THAT(found("Blade Runner 2049"), ElementsAre("runner"));
  EXPECT_THAT(found("Blade Runner 2049 2017"), ElementsAre("runner"));
  EXPECT_THAT(found("The Chicago Manual of Style 2017"), ElementsAre("manual"));
  EXPECT_THAT(found("A Leaflet n.d."), ElementsAre("leaflet"));
  for (const char *text :
       {"Beowulf 1816", "Beo", "Cosmos", "Cosmos 1980", "The Chicago Manual", "A Leaflet 2001"}) {
    EXPECT_THAT(found(text), IsEmpty()) << text;
  }
}

TEST_F(LooseMatching, WhatMayHaveBeenMeantIsSuggested) {
  const auto similar = [this](std::string_view text) {
    std::vector<std::string> identifiers;
    const auto rows = library_.similar(text);
    EXPECT_TRUE(rows) << rows.error();
    for (const ReferenceRow row : *rows) {
      identifiers.push_back((*library_.summary(row))->identifier);
    }
    return identifiers;
  };
  EXPECT_THAT(similar("Sagan 1981"), ElementsAre("sagan"));
  EXPECT_THAT(similar("Tolkein 1954"), ElementsAre("tolkien"));
  EXPECT_THAT(similar("J. Tolkein (1954)"), ElementsAre("tolkien"));
  EXPECT_THAT(similar("Smith 1950"), ElementsAre("smith", "anne", "bob"));
  EXPECT_THAT(similar("sagan"), ElementsAre("sagan"));
  for (const char *text : {"Nobody 1900", "Nobody", "1954", "Tolkein 1955", "Xy 1954"}) {
    EXPECT_THAT(similar(text), IsEmpty()) << text;
  }
}

TEST_F(LooseMatching, TextsWithMarkersAndTextsWithoutEndFindNothing) {
  EXPECT_THAT(found("John Smith 2009#other"), IsEmpty());
  EXPECT_THAT(found("Beowulf@12"), IsEmpty());
  std::string manyPeople;
  for (int index = 0; index < 5000; ++index) {
    manyPeople += "Smith, J., ";
  }
  EXPECT_THAT(found(manyPeople + "2009"), IsEmpty());
  EXPECT_THAT(found(std::string(100'000, 'a') + " 2009"), IsEmpty());
  EXPECT_THAT(found("2009"), IsEmpty());
  EXPECT_THAT(found("n.d."), IsEmpty());
  EXPECT_THAT(found("and 2009"), IsEmpty());
  EXPECT_THAT(found("et al. 2009"), IsEmpty());
}

}  // namespace
