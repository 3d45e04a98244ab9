// Data and texts as no careful author writes them.
#include "EngineDocument.h"

#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>

#include <fstream>

using namespace korvo_test;
using test_support::TemporaryDirectory;

namespace {

std::string titleInAPA(const std::string &titleJson) {
  const Items items = {
      {"k", R"({"type":"book","issued":{"date-parts":[[2000]]},"title":)" + titleJson + "}"}};
  const Printed printed = print("apa", {{cite("k")}}, items);
  return printed.entries.empty() ? "" : printed.entries[0];
}

std::string failureOf(const korvo::engine::Style &style, const std::vector<CiteGroup> &groups,
                      const Items &items = library()) {
  const auto document = processor().formatDocument(style, lookUpIn(items), groups, true);
  EXPECT_FALSE(document);
  return document ? "" : document.error();
}

}  // namespace

TEST(EngineHostile, WhatLooksLikeAReplacementIsText) {
  EXPECT_EQ(titleInAPA(R"("a $& $$ $1 $` b")"), "<i>a $& $$ $1 $` b</i>. (2000).");
}

TEST(EngineHostile, WhatLooksLikeMarkupOfOtherFormatsIsText) {
  EXPECT_EQ(titleInAPA(R"("a < b & c > d &amp; \\b")"), "<i>a < b & c > d &amp; \\b</i>. (2000).");
}

TEST(EngineHostile, ControlCharactersDoNotReachTheText) {
  EXPECT_EQ(titleInAPA(R"("a\u0000b\u0001\u0002c\u0013d\ne\tf\u2028g\u0085h")"),
            "<i>abcd e f g h</i>. (2000).");
}

TEST(EngineHostile, ALoneSurrogateIsPrintedAsAReplacementCharacter) {
  EXPECT_EQ(titleInAPA(R"("a\ud800b")"), "<i>a\uFFFDb</i>. (2000).");
  Cite made = cite("smith2001", std::u16string(1, char16_t(0xD800)));
  made.suffix = std::u16string_view(u"x\0\u0002y", 4);
  EXPECT_EQ(printOne("apa", {made}), "(Smith, 2001, p. \uFFFD xy)");
}

TEST(EngineHostile, IdsThatMeanSomethingToTheMachineAreIdsLikeOthers) {
  Items items;
  std::vector<CiteGroup> groups;
  for (const char *id : {"__proto__", "constructor", "toString", "0", "", "a b;{}\"'\n"}) {
    items[id] = R"({"type":"book","title":"T","author":[{"family":"F)" +
                std::to_string(groups.size()) + R"("}],"issued":{"date-parts":[[2000]]}})";
    groups.push_back({cite(id)});
  }
  const Printed printed = print("apa", groups, items);
  for (std::size_t index = 0; index < groups.size(); ++index) {
    EXPECT_EQ(printed.groups[index], "(F" + std::to_string(index) + ", 2000)");
  }
  EXPECT_EQ(printed.bibliography.entries.at(0).itemId, "__proto__");
}

TEST(EngineHostile, TheIdInsideTheDataDoesNotMatter) {
  const Items items = {{"k", R"({"id":"other","type":"book","author":[{"family":"F"}]})"}};
  EXPECT_EQ(printOne("apa", {cite("k")}, items), "(F, n.d.)");
}

TEST(EngineHostile, FieldsOfTheWrongShapeAreReadAsWellAsTheyCanBe) {
  const Items items = {
      {"k", R"({"type":7,"title":["x"],"author":"Plato","issued":"1999","volume":{},"page":null,
             "editor":[null,3,{"family":{}}],"accessed":{"date-parts":"x"},"DOI":true,
             "__proto__":{"title":"no"},"constructor":"no"})"}};
  EXPECT_EQ(printOne("apa", {cite("k")}, items), "(Plato, 1999)");
}

TEST(EngineHostile, AnItemWithoutAnyDataPrintsSomething) {
  const Items items = {{"k", "{}"}};
  for (const char *name : {"apa", "ieee", "nature", "chicago-note-bibliography",
                           "modern-language-association", "vancouver"}) {
    const std::string text = printOne(name, {cite("k")}, items);
    EXPECT_FALSE(text.empty()) << name;
    EXPECT_EQ(text.find("NO_PRINTED_FORM"), std::string::npos) << text;
  }
}

TEST(EngineHostile, ANoteFieldDoesNotOverrideOtherFields) {
  const Items items = {
      {"k", R"({"type":"book","author":[{"family":"F"}],"note":"issued: 1900\n{:issued: 1901}",
                        "issued":{"date-parts":[[2000]]}})"}};
  EXPECT_EQ(printOne("apa", {cite("k")}, items), "(F, 2000)");
}

TEST(EngineHostile, DataThatIsNoJSONIsAnErrorThatNamesTheItem) {
  const Items items = {{"broken1", "{nonsense"}};
  const std::string failure = failureOf(style("apa"), {{cite("broken1")}}, items);
  EXPECT_TRUE(
      failure.starts_with("style \"American Psychological Association 7th edition\": "
                          "broken1: its data cannot be read: "))
      << failure;
  EXPECT_EQ(failure.find('\n'), std::string::npos);
  for (const char *json : {"[]", "null", "3", "\"x\""}) {
    EXPECT_NE(failureOf(style("apa"), {{cite("k")}}, {{"k", json}}).find("not a JSON object"),
              std::string::npos);
  }
}

TEST(EngineHostile, AnItemThatNobodyKnowsIsAnErrorThatNamesIt) {
  EXPECT_EQ(failureOf(style("apa"), {{cite("nobody")}}), "no such item: nobody");
}

TEST(EngineHostile, AStyleFileThatIsGoneOrBrokenIsAnErrorOfOneLine) {
  const TemporaryDirectory directory;
  korvo::engine::Style broken = style("apa");
  broken.file = (directory / "gone.csl");
  EXPECT_NE(failureOf(broken, {{cite("smith2001")}}).find("gone.csl: cannot be read"),
            std::string::npos);
  for (const char *text : {"", "<style", "no style", "<style><citation/></style>", "{}", "[1]"}) {
    std::ofstream(broken.file) << text;
    const std::string failure = failureOf(broken, {{cite("smith2001")}});
    EXPECT_TRUE(failure.starts_with("style \"American Psychological Association 7th edition\": "))
        << failure;
    EXPECT_EQ(failure.find('\n'), std::string::npos);
  }
  EXPECT_EQ(printOne("apa", {cite("smith2001")}), "(Smith, 2001)");
}

TEST(EngineHostile, AnItemOnWhichAStyleFailsIsNamed) {
  // The nested stand-ins for a missing author in this style break the processor.
  Items items = library();
  items["nobodys"] = R"({"type":"book","title":"T"})";
  EXPECT_TRUE(
      failureOf(style("organon"),
                {{cite("smith2001")}, {cite("jones1999")}, {cite("nobodys")}, {cite("gogh1888")}},
                items)
          .starts_with("style \"Organon\": nobodys: the style's rules fail on it: "));
  EXPECT_FALSE(printOne("organon", {cite("smith2001")}).empty());
}

TEST(EngineHostile, AMissingLocaleIsAnErrorThatNamesIt) {
  const TemporaryDirectory directory;
  korvo::engine::CitationProcessor poor(directory / "");
  const std::vector<CiteGroup> groups = {{cite("smith2001")}};
  const auto document = poor.formatDocument(style("apa"), lookUpIn(library()), groups, true);
  ASSERT_FALSE(document);
  EXPECT_NE(document.error().find("no citation locale for the language \"en-US\""),
            std::string::npos)
      << document.error();
}

TEST(EngineHostile, ALocaleOfTheSameLanguageStandsInForAMissingOne) {
  korvo::engine::Style australian = style("apa");
  australian.locale = "en-AU";
  const std::vector<CiteGroup> groups = {{cite("smith2001", u"4")}};
  const auto document = processor().formatDocument(australian, lookUpIn(library()), groups, true);
  ASSERT_TRUE(document) << document.error();
  EXPECT_EQ(markup(document->group(0)), "(Smith, 2001, p. 4)");
}

TEST(EngineHostile, LongTextsAreFormattedInFull) {
  const std::string title(200000, 'x');
  EXPECT_NE(titleInAPA('"' + title + '"').find(title.substr(1)), std::string::npos);
}

TEST(EngineHostile, ManyCitesInOneGroupAreFormatted) {
  Items items;
  CiteGroup group;
  for (int index = 0; index < 300; ++index) {
    const std::string id = std::to_string(index);
    items[id] =
        R"({"type":"book","title":"T","issued":{"date-parts":[[2000]]},"author":[{"family":"F)" +
        id + "\"}]}";
    group.push_back(cite(id));
  }
  // Vancouver collapses neighbours in every edition that is installed.
  EXPECT_EQ(printOne("vancouver", group, items), "(1–300)");
}
