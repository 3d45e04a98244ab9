#include <StandIns/Korvo/Library/EditableFields.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>

using korvo::library::EditableField;
using korvo::library::editableFields;
using korvo::library::FieldForm;
using korvo::library::NewReference;
using korvo::library::withEditedFields;

namespace {

const NewReference letters{
    .identifier = "GOGH",
    .cslJson =
        R"({"type":"book","title":"Letters",)"
        R"("author":[{"given":"Vincent","family":"van Gogh","ORCID":"0"},)"
        R"({"literal":"the Museum"}],"issued":{"date-parts":[[1888,5]],"season":"2"},"volume":3,)"
        R"("custom":{"x":[1]}})"};

std::string value(const std::vector<EditableField> &fields, std::string_view key) {
  const auto field = std::ranges::find(fields, key, &EditableField::key);
  return field == fields.end() ? "no such field" : field->value;
}

std::vector<EditableField> changed(const NewReference &reference, std::string_view key,
                                   std::string text) {
  std::vector<EditableField> fields = *editableFields(reference);
  std::ranges::find(fields, key, &EditableField::key)->value = std::move(text);
  return fields;
}

NewReference edited(std::string_view key, std::string text) {
  return *withEditedFields(letters, changed(letters, key, std::move(text)));
}

}  // namespace

TEST(EditableFields, ShowTheReferenceForPeople) {
  const auto fields = editableFields(letters);
  ASSERT_TRUE(fields);
  EXPECT_EQ(value(*fields, ""), "GOGH");
  EXPECT_EQ(value(*fields, "type"), "book");
  EXPECT_EQ(value(*fields, "author"), "van Gogh, Vincent\nthe Museum");
  EXPECT_EQ(value(*fields, "issued"), "1888-05");
  EXPECT_EQ(value(*fields, "volume"), "3");
  EXPECT_EQ(value(*fields, "publisher"), "");
}

TEST(EditableFields, WithoutAChangeTheRecordStaysByteForByte) {
  const auto same = withEditedFields(letters, *editableFields(letters));
  ASSERT_TRUE(same);
  EXPECT_EQ(same->identifier, letters.identifier);
  EXPECT_EQ(same->cslJson, letters.cslJson);
}

TEST(EditableFields, WithoutAChangeTheRecordStaysWrittenAsItWas) {
  const NewReference spelt{.identifier = "A",
                           .cslJson = R"({ "title": "W\u00e4rme", "volume": 1.50 })"};
  EXPECT_EQ(withEditedFields(spelt, *editableFields(spelt))->cslJson, spelt.cslJson);
}

TEST(EditableFields, AChangeTouchesNothingElse) {
  std::string expected = letters.cslJson;
  expected.replace(expected.find("Letters"), 7, "Briefe");
  EXPECT_EQ(edited("title", "Briefe").cslJson, expected);
}

TEST(EditableFields, ANameThatWasThereKeepsWhatTheFormDoesNotShow) {
  const std::string json =
      edited("author", "Smith, John\n van Gogh, Vincent \n\nde Vries, Hugo, Jr.").cslJson;
  EXPECT_NE(
      json.find(
          R"("author":[{"family":"Smith","given":"John"},)"
          R"({"given":"Vincent","family":"van Gogh","ORCID":"0"},)"
          R"({"non-dropping-particle":"de","family":"Vries","suffix":"Jr.","given":"Hugo"}])"),
      std::string::npos)
      << json;
}

TEST(EditableFields, ADateIsNumbersWhereItCanBeAndWordsWhereNot) {
  const auto issued = [](const std::string &text) {
    const std::string json = edited("issued", text).cslJson;
    const std::size_t begin = json.find(R"("issued":)");
    return begin == std::string::npos ? "" : json.substr(begin, json.find('}', begin) + 1 - begin);
  };
  EXPECT_EQ(issued("1890"), R"("issued":{"date-parts":[[1890]]})");
  EXPECT_EQ(issued("1890-07-29"), R"("issued":{"date-parts":[[1890,7,29]]})");
  EXPECT_EQ(issued("-350"), R"("issued":{"date-parts":[[-350]]})");
  for (const char *words :
       {"in press", "1890-13", "1890-00", "1890-07-29-1", "1890-", "18900", "1890/soon"}) {
    EXPECT_EQ(issued(words), R"("issued":{"literal":")" + std::string(words) + "\"}") << words;
  }
  EXPECT_EQ(issued(" "), "");
}

TEST(EditableFields, AnEmptiedFieldIsRemoved) {
  EXPECT_EQ(edited("volume", "").cslJson.find("volume"), std::string::npos);
  EXPECT_EQ(edited("author", "\n \n").cslJson.find("author"), std::string::npos);
}

TEST(EditableFields, TheIdentifierIsTheReferencesOwn) {
  const NewReference reference = edited("", " VG1888 ");
  EXPECT_EQ(reference.identifier, "VG1888");
}

TEST(EditableFields, AnIdentifierThatWouldBreakCitationsIsRefusedWithTheReason) {
  const auto refusalOf = [](const std::string &identifier) {
    const auto result = withEditedFields(letters, changed(letters, "", identifier));
    return result ? "" : result.error();
  };
  EXPECT_EQ(refusalOf(" "),
            "Citation identifier: without one the reference is found by author and year only");
  for (const char *sign : {";", "{", "}", "#", "@", "\\"}) {
    EXPECT_EQ(
        refusalOf(std::string("a") + sign + "b"),
        "Citation identifier: \"" + std::string(sign) + "\" has a meaning of its own in citations");
  }
  EXPECT_EQ(refusalOf("van Gogh: 1888, (a)/b"), "");
}

TEST(EditableFields, ADayThatNoMonthHasIsRefused) {
  const auto isRefused = [](const std::string &date) {
    return !withEditedFields(letters, changed(letters, "issued", date));
  };
  EXPECT_TRUE(isRefused("2001-02-31"));
  EXPECT_TRUE(isRefused("1900-02-29"));
  EXPECT_FALSE(isRefused("2000-02-29"));
  EXPECT_FALSE(isRefused("2001-02"));
  EXPECT_TRUE(isRefused("2001-02-28/2001-02-30"));
  EXPECT_FALSE(isRefused("2001-02-28/2001-03-30"));
}

TEST(EditableFields, KindsHaveNamesForPeople) {
  std::set<std::string> names;
  for (const std::string_view kind : korvo::library::referenceKinds()) {
    names.insert(korvo::library::nameOfKind(kind));
  }
  EXPECT_EQ(names.size(), korvo::library::referenceKinds().size()) << "each has a name of its own";
  EXPECT_TRUE(std::ranges::none_of(names, [](const std::string &name) {
    return name.find_first_of("-_") != std::string::npos || std::islower(name.front());
  }));
  EXPECT_EQ(korvo::library::nameOfKind("article-journal"), "Journal article");
  EXPECT_EQ(korvo::library::nameOfKind("no-such-kind"), "no-such-kind");
}

TEST(EditableFields, ARangeOfDatesIsShownAndReadBack) {
  const NewReference war = edited("issued", "1914-07-28/1918");
  EXPECT_NE(war.cslJson.find(R"("issued":{"date-parts":[[1914,7,28],[1918]]})"), std::string::npos);
  EXPECT_EQ(value(*editableFields(war), "issued"), "1914-07-28/1918");
}

TEST(EditableFields, WhatIsWrittenReadsBackTheSame) {
  for (const char *text : {"A", "Ünï ©ode", "quote \" and \\ and </tag>", "a\tb"}) {
    const NewReference once = edited("title", text);
    EXPECT_EQ(value(*editableFields(once), "title"), text);
  }
}

TEST(EditableFields, OddRecordsAndBytesAreSurvived) {
  EXPECT_FALSE(editableFields({.identifier = "", .cslJson = "[]"}));
  EXPECT_FALSE(withEditedFields({.identifier = "", .cslJson = "{"}, {}));
  const NewReference odd{.identifier = "", .cslJson = R"({"author":7,"issued":[1],"title":null})"};
  const std::vector<EditableField> fields = editableFields(odd).value();
  for (const EditableField &field : fields) {
    const auto result = withEditedFields(odd, changed(odd, field.key, "\xFFx"));
    ASSERT_TRUE(result) << field.label;
    EXPECT_TRUE(editableFields(*result)) << result->cslJson;
  }
}

TEST(EditableFields, RecordsThatCannotBeWrittenAgainAreRefused) {
  const auto nested = [](std::size_t depth) {
    return NewReference{.identifier = "A",
                        .cslJson = R"({"title":"\"[","x":)" + std::string(depth - 1, '[') +
                                   std::string(depth - 1, ']') + "}"};
  };
  EXPECT_TRUE(editableFields(nested(200)));
  EXPECT_EQ(editableFields(nested(201)).error(), "the reference's JSON is nested too deeply");
  EXPECT_FALSE(withEditedFields(nested(1'000'000), {}));
}
