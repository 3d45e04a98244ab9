// Macros of a style's sort keys are built once each, and sort as they always did.
#include "EngineDocument.h"
#include "EngineRandomDocuments.h"
#include "EngineSteps.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace korvo_test;

namespace {

std::string styleOf(const std::string &macros, const std::string &keys) {
  return R"(<style xmlns="http://purl.org/net/xbiblio/csl" class="in-text" version="1.0">
    <info><title>Macros</title><id>macros</id></info>)" +
         macros + R"(<citation><sort>)" + keys +
         R"(</sort><layout delimiter="; "><text variable="title"/></layout></citation>
    <bibliography><sort>)" +
         keys + R"(</sort><layout><text variable="title"/></layout></bibliography></style>)";
}

// The same macro in two keys, in another macro, in place of names that are not there, and
// backwards.
TEST(EngineMacros, SortAlikeWhereverTheyAreCalled) {
  const std::string macros = R"(
    <macro name="year"><date variable="issued"><date-part name="year"/></date></macro>
    <macro name="title"><choose>
      <if type="book"><text variable="title"/></if>
      <else><text macro="year"/><text variable="title"/></else>
    </choose></macro>
    <macro name="author"><names variable="author"><name form="short"/>
      <substitute><names variable="editor"/><text macro="title"/></substitute></names></macro>
    <macro name="both"><text macro="title"/><text macro="author"/></macro>)";
  std::mt19937 random(1950);
  Items items = collidingLibrary(random, 30);
  items["nobody"] = R"({"type":"book","title":"Anonymous"})";
  items["editor"] = R"({"type":"chapter","title":"Edited","editor":[{"family":"Miller"}]})";
  std::vector<CiteGroup> groups = randomGroups(random, 40, 30);
  groups.push_back({cite("nobody"), cite("editor"), cite("item3"), cite("item7")});
  for (const char *keys :
       {R"(<key macro="author"/><key macro="year"/><key macro="title"/>)",
        R"(<key macro="title"/><key macro="author" names-min="1" names-use-first="1"/>)",
        R"(<key macro="year" sort="descending"/><key macro="both"/>)",
        R"(<key macro="both" sort="descending"/><key macro="both"/>)"}) {
    const std::string text = styleOf(macros, keys);
    const auto fast = formatIn(text, processor(), items, groups);
    const auto slow = formatIn(text, referenceProcessor(), items, groups);
    ASSERT_EQ(fast.groups.size(), slow.groups.size());
    for (std::size_t group = 0; group < groups.size(); ++group) {
      EXPECT_EQ(markup(fast.group(group)), markup(slow.group(group))) << keys;
    }
    ASSERT_EQ(fast.bibliography.entries.size(), slow.bibliography.entries.size());
    for (std::size_t place = 0; place < fast.bibliography.entries.size(); ++place) {
      EXPECT_EQ(fast.bibliography.entries[place].itemId, slow.bibliography.entries[place].itemId)
          << keys << ", entry " << place;
    }
  }
}

// Each macro calls the next one twice, where it is not carried out: the work has no such field.
std::string doublingMacros(int levels) {
  std::string macros;
  for (int level = 0; level < levels; ++level) {
    const std::string next = R"(<text macro="m)" + std::to_string(level + 1) + R"("/>)";
    macros += R"(<macro name="m)" + std::to_string(level) + R"("><choose><if variable="DOI">)" +
              next + next + "</if></choose></macro>";
  }
  return macros + R"(<macro name="m)" + std::to_string(levels) +
         R"("><text variable="title"/></macro>)";
}

TEST(EngineMacros, OfSortKeysAreBuiltOnceHoweverOftenTheyAreCalled) {
  const auto stepsFor = [&](int levels) {
    const std::string text = styleOf(doublingMacros(levels), R"(<key macro="m0"/>)");
    StepCounter counter;
    return stepsOf(formatIn(text, counter.processor(), library(), {{cite("smith2001")}}));
  };
  const double few = stepsFor(4);
  EXPECT_GT(few, 0);
  EXPECT_LT(stepsFor(12), 4 * few);
}

}  // namespace
