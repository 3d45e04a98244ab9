// What one printing leaves behind in citeproc-js for the next: brackets that it counts as open, and
// that a range of dates has been printed. Remembered texts are still those that citeproc-js prints.
#include "EngineRandomDocuments.h"

#include <gtest/gtest.h>

using namespace korvo_test;

namespace {

std::string noteStyle(const std::string &macros, const std::string &layout) {
  const std::string sort = R"(<sort><key macro="key"/></sort>)";
  return R"(<style xmlns="http://purl.org/net/xbiblio/csl" class="note" version="1.0">
      <info><title>Leftovers</title><id>leftovers</id></info>
      <macro name="name"><names variable="author"><name form="short"/></names></macro>)" +
         macros + "<citation>" + sort + R"(<layout delimiter="; ">)" + layout +
         "</layout></citation><bibliography>" + sort + "<layout>" + layout +
         "</layout></bibliography></style>";
}

std::vector<std::string> textsBy(korvo::engine::CitationProcessor &processor,
                                 const std::string &styleText, const Items &items,
                                 const std::vector<CiteGroup> &groups) {
  return allTexts(formatIn(styleText, processor, items, groups));
}

// Documents of the same works, one after the other.
void expectTextsOfTheReference(const std::string &styleText, const Items &items,
                               const std::vector<std::string> &ids) {
  const auto group = [&](std::size_t place) { return CiteGroup{cite(ids[place])}; };
  const std::vector<std::vector<CiteGroup>> documents = {
      {group(0), group(1), group(2)},
      {group(1), group(2)},
      {group(2)},
      {{cite(ids[2]), cite(ids[1])}, group(2)},
      {group(0), group(1), group(2)},
      {group(2), group(0)},
  };
  for (const std::vector<CiteGroup> &groups : documents) {
    EXPECT_EQ(textsBy(processor(), styleText, items, groups),
              textsBy(referenceProcessor(), styleText, items, groups));
  }
}

// The brackets that close are no part of what opens.
TEST(EngineLeftovers, BracketsThatStayOpenMakeTheNextOnesSquare) {
  const std::string text =
      noteStyle(R"csl(<macro name="key"><group prefix="("><text macro="name"/></group></macro>)csl",
                R"csl(<text macro="name"/><group prefix=" ("><text variable="title"/></group>
                <text value=")"/>)csl");
  const auto texts = textsBy(processor(), text, library(),
                             {{cite("curie1903")}, {cite("jones1999")}, {cite("smith2001")}});
  ASSERT_EQ(texts.size(), 6u);
  EXPECT_NE(texts[3].find(" ["), std::string::npos) << texts[3];
  EXPECT_NE(texts[4].find(" ("), std::string::npos) << texts[4];
  EXPECT_NE(texts[5].find(" ["), std::string::npos) << texts[5];
  expectTextsOfTheReference(text, library(), {"curie1903", "jones1999", "smith2001"});
}

// Each first range of an engine is printed for a short form that nobody sees.
TEST(EngineLeftovers, RangesOfDatesAreNotTheFirstOnesOfTheirEngine) {
  const Items items = {
      {"a", R"({"type":"book","title":"A","issued":{"date-parts":[[1995,7],[1995,8]]}})"}};
  const std::string text = noteStyle(R"csl(<macro name="key"><text variable="title"/></macro>)csl",
                                     R"csl(<text variable="title"/>
      <date variable="issued" form="text" date-parts="year-month" prefix=", "/>
      <text variable="locator" prefix=", "/>
      <date variable="accessed" form="text" prefix=" "/>)csl");
  for (const std::u16string_view pages : {u"1", u"2"}) {
    const std::vector<CiteGroup> groups = {{cite("a", pages)}};
    EXPECT_EQ(textsBy(processor(), text, items, groups),
              textsBy(referenceProcessor(), text, items, groups));
  }
}

}  // namespace
