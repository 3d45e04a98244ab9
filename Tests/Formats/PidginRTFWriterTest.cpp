#include "Payloads.h"

#include <Formats/PidginRTFWriter.h>
#include <Tests/Support/AllStrings.h>
#include <Tests/Support/Effort.h>
#include <Tests/Support/ReferencePidginRTF.h>

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace formats;

struct Run {
  std::u16string text;
  PidginAttributes attributes;
};

std::u16string written(const std::vector<Run> &runs) {
  PidginRTFWriter writer;
  for (const Run &run : runs) {
    writer.append(run.text, run.attributes);
  }
  return writer.finish();
}

std::u16string escaped(std::u16string_view text) {
  return pidginRTF(text, ControlCharacters::escaped);
}

std::u16string raw(std::u16string_view text) { return pidginRTF(text, ControlCharacters::raw); }

TEST(PidginRTFWriter, AnEmptyTextYieldsNothing) {
  EXPECT_EQ(written({}), u"");
  EXPECT_EQ(escaped(u""), u"");
  EXPECT_EQ(raw(u""), u"");
}

TEST(PidginRTFWriter, BracesAreEscapedOrRaw) {
  EXPECT_EQ(written({{u"a{b}", {}}}), u"a\\'7b b\\'7d ");
  EXPECT_EQ(escaped(u"a{b}"), u"a\\'7b b\\'7d ");
  EXPECT_EQ(raw(u"a{b}"), u"a{b}");
}

TEST(PidginRTFWriter, TheApostropheIsEscapedWithoutABlank) {
  EXPECT_EQ(written({{u"it's", {}}}), u"it\\'27s");
}

TEST(PidginRTFWriter, ABackslashIsEscapedOrRaw) {
  EXPECT_EQ(escaped(u"a\\b"), u"a\\'5c b");
  EXPECT_EQ(raw(u"a\\b"), u"a\\b");
}

TEST(PidginRTFWriter, ALineFeedGetsABackslashAndOtherControlCodesStayRaw) {
  EXPECT_EQ(escaped(u"a\nb"), u"a\\\nb");
  EXPECT_EQ(raw(u"a\nb"), u"a\nb");
  EXPECT_EQ(escaped(u"\r\t\x01\x7F"), u"\r\t\x01\x7F");
  EXPECT_EQ(escaped(u"\0"s), u"\0"s);
}

TEST(PidginRTFWriter, EverythingAboveASCIIIsASignedNumber) {
  EXPECT_EQ(escaped(u"\u00A0"), u"\\uc0\\u160 ");
  EXPECT_EQ(escaped(u"é"), u"\\uc0\\u233 ");
  EXPECT_EQ(escaped(u"\u2019"), u"\\uc0\\u8217 ");
  EXPECT_EQ(escaped(u"\x7FFF"), u"\\uc0\\u32767 ");
  EXPECT_EQ(escaped(u"\x8000"), u"\\uc0\\u-32768 ");
  EXPECT_EQ(escaped(u"\xFFFD"), u"\\uc0\\u-3 ");
  EXPECT_EQ(escaped(u"\xFFFF"), u"\\uc0\\u-1 ");
  EXPECT_EQ(raw(u"é"), u"\\uc0\\u233 ");
}

TEST(PidginRTFWriter, ACharacterOutsideTheBasicPlaneIsTwoEscapes) {
  EXPECT_EQ(escaped(u"\U0001F600"), u"\\uc0\\u-10179 \\uc0\\u-8704 ");
}

TEST(PidginRTFWriter, EachAttributeHasItsGroup) {
  EXPECT_EQ(written({{u"x", {.bold = true}}}), u"{\\b x}");
  EXPECT_EQ(written({{u"x", {.italic = true}}}), u"{\\i x}");
  EXPECT_EQ(written({{u"x", {.underline = true}}}), u"{\\ul x}");
  EXPECT_EQ(written({{u"x", {.superscript = true}}}), u"{\\super x}");
  EXPECT_EQ(written({{u"x", {.subscript = true}}}), u"{\\sub x}");
}

TEST(PidginRTFWriter, AllAttributesNestInTheirOrder) {
  EXPECT_EQ(written({{u"x", {true, true, true, true, true}}}),
            u"{\\ul {\\i {\\b {\\super {\\sub x}}}}}");
}

TEST(PidginRTFWriter, AnOuterAttributeClosesAndReopensTheInnerOne) {
  EXPECT_EQ(written({{u"A", {.bold = true}}, {u"B", {.bold = true, .italic = true}}}),
            u"{\\b A}{\\i {\\b B}}");
  EXPECT_EQ(written({{u"A", {.bold = true, .underline = true}}, {u"B", {.bold = true}}}),
            u"{\\ul {\\b A}}{\\b B}");
}

TEST(PidginRTFWriter, AnInnerAttributeLeavesTheOuterOneOpen) {
  EXPECT_EQ(written({{u"A", {.italic = true}}, {u"B", {.bold = true, .italic = true}}}),
            u"{\\i A{\\b B}}");
}

TEST(PidginRTFWriter, GroupsOfTheLastCharacterAreClosed) {
  const std::u16string text =
      written({{u"a", {}}, {u"b", {.bold = true, .italic = true, .underline = true}}});
  EXPECT_TRUE(text.ends_with(u"b}}}")) << testing::PrintToString(text);
}

TEST(PidginRTFWriter, SubscriptFollowsSuperscript) {
  EXPECT_EQ(written({{u"x", {.superscript = true}}, {u"y", {.subscript = true}}}),
            u"{\\super x}{\\sub y}");
  EXPECT_EQ(written({{u"x", {.superscript = true, .subscript = true}}}), u"{\\super {\\sub x}}");
}

TEST(PidginRTFWriter, NeighbouringRunsWithTheSameAttributesShareTheirGroups) {
  EXPECT_EQ(written({{u"a", {.bold = true}}, {u"b", {.bold = true}}}), u"{\\b ab}");
}

TEST(PidginRTFWriter, AnEmptyRunChangesNothing) {
  EXPECT_EQ(written({{u"a", {.bold = true}}, {u"", {.italic = true}}, {u"b", {.bold = true}}}),
            u"{\\b ab}");
  EXPECT_EQ(written({{u"", {.bold = true}}}), u"");
}

TEST(PidginRTFWriter, FinishingLeavesTheWriterAsNew) {
  PidginRTFWriter writer(100);
  writer.append(u"a", {.bold = true});
  EXPECT_EQ(writer.finish(), u"{\\b a}");
  EXPECT_EQ(writer.finish(), u"");
  writer.append(u"b", {.bold = true});
  EXPECT_EQ(writer.finish(), u"{\\b b}");
}

TEST(PidginRTFWriter, AppendingAPlainTextKeepsWhatIsThere) {
  std::u16string output = u"{\\b ";
  appendPidginRTF(output, u"it's", ControlCharacters::escaped);
  appendPidginRTF(output, u"{}", ControlCharacters::raw);
  EXPECT_EQ(output, u"{\\b it\\'27s{}");
}

TEST(PidginRTFWriter, EveryCodeUnitIsEscapedAsByTheReference) {
  for (char32_t value = 0; value <= 0xFFFF; ++value) {
    const auto unit = static_cast<char16_t>(value);
    ASSERT_EQ(escaped({&unit, 1}), reference::escaped(unit, true)) << static_cast<unsigned>(value);
    ASSERT_EQ(raw({&unit, 1}), reference::escaped(unit, false)) << static_cast<unsigned>(value);
    PidginRTFWriter writer;
    writer.append(unit, {});
    ASSERT_EQ(writer.finish(), reference::escaped(unit, true)) << static_cast<unsigned>(value);
  }
}

TEST(PidginRTFWriter, EveryShortTextIsEscapedAsByTheReference) {
  forEachString<char16_t>({u"a", u"'", u"{", u"}", u"\\", u"\n", u"é", u"\xFFFF"}, 5,
                          [](const std::u16string &text) {
                            ASSERT_EQ(escaped(text), reference::pidginRTF(text, true));
                            ASSERT_EQ(raw(text), reference::pidginRTF(text, false));
                          });
}

// Bulk copying works in blocks: whatever stands at any place of a text longer than several
// blocks must be found.
TEST(PidginRTFWriter, FindsWhatNeedsAnEscapeAtEveryPlaceOfALongText) {
  for (const char16_t special : u"'{}\\\né\xFFFF"sv) {
    for (std::size_t length = 0; length < 100; ++length) {
      for (std::size_t place = 0; place < length; ++place) {
        std::u16string text(length, u'a');
        text[place] = special;
        ASSERT_EQ(escaped(text), reference::pidginRTF(text, true));
      }
    }
  }
}

// Whatever surrounds an escape, and wherever in a block it stands: pairs of special units at
// every two places of a text of a few blocks.
TEST(PidginRTFWriter, EveryTwoEscapesInALongTextAreWrittenAsByTheReference) {
  const std::u16string_view specials = u"'\n\x7F\x80\xFFFF\x8000";
  for (const std::size_t length : {15u, 16u, 17u, 31u, 32u, 33u, 50u}) {
    for (std::size_t first = 0; first < length; ++first) {
      for (std::size_t second = first + 1; second < length; ++second) {
        std::u16string text(length, u'a');
        text[first] = specials[(first + second) % specials.size()];
        text[second] = specials[first % specials.size()];
        ASSERT_EQ(escaped(text), reference::pidginRTF(text, true));
        ASSERT_EQ(raw(text), reference::pidginRTF(text, false));
      }
    }
  }
}

// The longest escape in every unit fills the memory asked for to its last unit.
TEST(PidginRTFWriter, NothingButTheLongestEscapesIsWrittenAtEveryLength) {
  for (std::size_t length = 0; length < 300; ++length) {
    const std::u16string text(length, u'\x8000');
    ASSERT_EQ(escaped(text), reference::pidginRTF(text, true));
    std::u16string appended = u"{\\b ";
    appendPidginRTF(appended, text, ControlCharacters::raw);
    ASSERT_EQ(appended, u"{\\b " + reference::pidginRTF(text, false));
  }
}

// How much memory a long text gets depends on how it begins.
TEST(PidginRTFWriter, ALongTextThatGoesOnUnlikeItsBeginningIsWrittenWhole) {
  const auto expectWhole = [](const std::u16string &text) {
    ASSERT_EQ(escaped(text), reference::pidginRTF(text, true));
    ASSERT_EQ(raw(text), reference::pidginRTF(text, false));
  };
  for (const std::size_t beginning : {4080U, 4095U, 4096U, 4097U, 5000U, 9000U}) {
    for (const std::size_t rest : {1U, 2U, 12U, 13U, 14U, 40U, 400U, 9000U}) {
      const std::u16string letters(beginning, u'a');
      const std::u16string escapes(rest, u'\x8000');
      expectWhole(letters + escapes);
      expectWhole(letters + escapes + letters);
      expectWhole(std::u16string(beginning, u'\u2019') + std::u16string(rest, u'a'));
      expectWhole(letters + std::u16string(rest, u'}') + letters + escapes);
    }
  }
}

PidginAttributes attributesOf(unsigned pattern) {
  return {.bold = (pattern & 1) != 0,
          .italic = (pattern & 2) != 0,
          .underline = (pattern & 4) != 0,
          .superscript = (pattern & 8) != 0,
          .subscript = (pattern & 16) != 0};
}

// Calls visit(attributes) for every choice of attributes of so many characters.
template <typename Visit>
void forEachAttributes(unsigned characters, Visit visit) {
  std::vector<PidginAttributes> attributes(characters);
  for (unsigned patterns = 0; patterns < 1u << (5 * characters); ++patterns) {
    for (unsigned index = 0; index < characters; ++index) {
      attributes[index] = attributesOf(patterns >> (5 * index) & 31);
    }
    visit(attributes);
  }
}

std::u16string written(const std::u16string &text,
                       const std::vector<PidginAttributes> &attributes) {
  PidginRTFWriter writer(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    writer.append(text[index], attributes[index]);
  }
  return writer.finish();
}

TEST(PidginRTFWriter, EveryChoiceOfAttributesForFourCharactersIsWrittenAsByTheReference) {
  const std::u16string text = u"ABCD";
  for (unsigned characters = 0; characters <= test_support::effort(4u, 3u); ++characters) {
    const std::u16string part = text.substr(0, characters);
    forEachAttributes(characters, [&](const std::vector<PidginAttributes> &attributes) {
      ASSERT_EQ(written(part, attributes), reference::pidginRTF(part, attributes));
    });
  }
}

// The group in which a character stands: its opener and where it was opened.
struct Group {
  std::u16string opener;
  std::size_t place;
  bool operator==(const Group &) const = default;
};

// For each character of the text the groups around it, from the outside. Fails if braces do
// not balance or something else than an opener follows an opening brace.
std::vector<std::vector<Group>> groupsAroundCharacters(const std::u16string &rtf) {
  std::vector<std::vector<Group>> result;
  std::vector<Group> open;
  for (std::size_t position = 0; position < rtf.size();) {
    if (rtf[position] == u'{') {
      const std::size_t end = rtf.find(u' ', position);
      open.push_back({rtf.substr(position, end - position), position});
      position = end + 1;
    } else if (rtf[position] == u'}') {
      if (open.empty()) {
        ADD_FAILURE() << "a brace too many in " << testing::PrintToString(rtf);
        return result;
      }
      open.pop_back();
      ++position;
    } else {
      result.push_back(open);
      ++position;
    }
  }
  EXPECT_TRUE(open.empty()) << testing::PrintToString(rtf);
  return result;
}

std::vector<std::u16string> expectedOpeners(const PidginAttributes &attributes) {
  std::vector<std::u16string> openers;
  const auto add = [&](bool isOn, std::u16string_view opener) {
    if (isOn) {
      openers.emplace_back(opener);
    }
  };
  add(attributes.underline, u"{\\ul");
  add(attributes.italic, u"{\\i");
  add(attributes.bold, u"{\\b");
  add(attributes.superscript, u"{\\super");
  add(attributes.subscript, u"{\\sub");
  return openers;
}

std::vector<std::u16string> openersOf(const std::vector<Group> &groups) {
  std::vector<std::u16string> openers;
  for (const Group &group : groups) {
    openers.push_back(group.opener);
  }
  return openers;
}

TEST(PidginRTFWriter, EachCharacterStandsInExactlyTheGroupsOfItsAttributes) {
  const std::u16string text = u"ABC";
  forEachAttributes(3, [&](const std::vector<PidginAttributes> &attributes) {
    const auto around = groupsAroundCharacters(written(text, attributes));
    ASSERT_EQ(around.size(), text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
      ASSERT_EQ(openersOf(around[index]), expectedOpeners(attributes[index]));
    }
  });
}

// Two neighbours share their outer groups down to the first attribute in which they
// differ: nothing is closed and reopened without need.
TEST(PidginRTFWriter, NoGroupIsClosedAndReopenedWithoutNeed) {
  const std::u16string text = u"ABC";
  forEachAttributes(3, [&](const std::vector<PidginAttributes> &attributes) {
    const auto around = groupsAroundCharacters(written(text, attributes));
    ASSERT_EQ(around.size(), text.size());
    for (std::size_t index = 1; index < text.size(); ++index) {
      const auto &before = around[index - 1];
      const auto &after = around[index];
      const std::array<std::pair<bool, bool>, 5> fromTheOutside = {
          {{attributes[index - 1].underline, attributes[index].underline},
           {attributes[index - 1].italic, attributes[index].italic},
           {attributes[index - 1].bold, attributes[index].bold},
           {attributes[index - 1].superscript, attributes[index].superscript},
           {attributes[index - 1].subscript, attributes[index].subscript}}};
      std::size_t shared = 0;
      for (const auto &[wasOn, isOn] : fromTheOutside) {
        if (wasOn != isOn) {
          break;
        }
        shared += isOn ? 1 : 0;
      }
      for (std::size_t level = 0; level < shared; ++level) {
        ASSERT_EQ(before[level], after[level]);
      }
    }
  });
}

TEST(PidginRTFWriter, RunsAndSingleUnitsYieldTheSame) {
  const std::u16string first = u"it's";
  const std::u16string second = u"{é}";
  forEachAttributes(2, [&](const std::vector<PidginAttributes> &attributes) {
    std::vector<PidginAttributes> perUnit(first.size(), attributes[0]);
    perUnit.insert(perUnit.end(), second.size(), attributes[1]);
    ASSERT_EQ(written({{first, attributes[0]}, {second, attributes[1]}}),
              written(first + second, perUnit));
  });
}

// A text that is announced needs no second, larger piece of memory while it is written.
TEST(PidginRTFWriter, AnAnnouncedTextTakesLittleMoreMemoryThanItNeeds) {
  constexpr std::size_t length = 1000;
  PidginRTFWriter writer(length);
  for (std::size_t index = 0; index < length; ++index) {
    writer.append(u'a', {.italic = true});
  }
  const std::u16string rtf = writer.finish();
  EXPECT_GE(rtf.size(), length);
  EXPECT_LT(rtf.capacity(), length + length / 10);
}

}  // namespace
