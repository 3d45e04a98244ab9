// What the tool says of payloads, whole and damaged.
#include "Payloads.h"

#include <Formats/CitationResolution.h>
#include <Formats/Insertion.h>
#include <Formats/ScanReply.h>
#include <Formats/SmallMessages.h>
#include <Tools/AppleEvents/Payloads/Explanation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace appleevents;
using namespace appleevents_test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

EventKind kindOf(std::string_view eventClass, std::string_view eventID, bool isReply = false) {
  return findEventKind(readCode(eventClass).value(), readCode(eventID).value(), isReply).value();
}

// The event of each example of the page.
std::map<std::string, EventKind> kindsOfExamples() {
  return {{"handshake", kindOf("mLeL", "IMHR")},
          {"preferences", kindOf("mLeL", "PREF")},
          {"insertion", kindOf("BERB", "cite")},
          {"find", kindOf("mLeL", "FNDN")},
          {"preliminary-scan", kindOf("mLeL", "PRSQ")},
          {"citation-resolution", kindOf("mLeL", "PRSR")},
          {"final-scan", kindOf("mLeL", "SCNQ")},
          {"scan-reply", kindOf("mLeL", "SCNR")},
          {"cancel", kindOf("mLeL", "Rmcr")}};
}

// What a receiver of answers says; true of requests, which never fail to decode.
bool isTaken(const EventKind &kind, std::string_view payload) {
  switch (kind.layout) {
    case Layout::preferences:
      return formats::decodePreferences(payload).has_value();
    case Layout::insertion:
      return formats::decodeInsertion(payload).has_value();
    case Layout::citationResolution:
      return formats::decodeCitationResolution(payload).has_value();
    case Layout::scanReply:
      return formats::decodeScanReply(payload).has_value();
    case Layout::cancel:
      return formats::decodeCancel(payload).has_value();
    default:
      return true;
  }
}

void expectFieldsCover(std::string_view payload, const Explanation &explanation) {
  std::size_t position = 0;
  for (const Field &field : explanation.fields) {
    EXPECT_EQ(field.offset, position) << field.name;
    position += field.size;
  }
  EXPECT_EQ(position, payload.size());
}

std::vector<std::string> linesOf(const Explanation &explanation) {
  std::vector<std::string> lines;
  for (const Finding &finding : explanation.findings) {
    lines.push_back((finding.severity == Severity::broken ? "broken at " : "odd at ") +
                    std::to_string(finding.offset) + ": " + finding.line);
  }
  return lines;
}

std::vector<std::string> findingsOf(const EventKind &kind, std::string_view payload) {
  return linesOf(explain(kind, payload));
}

TEST(Explanation, NothingIsWrongWithTheExamplesOfThePage) {
  const auto kinds = kindsOfExamples();
  const auto payloads = examples();
  ASSERT_EQ(payloads.size(), kinds.size());
  for (const auto &[name, payload] : payloads) {
    const Explanation explanation = explain(kinds.at(name), payload);
    EXPECT_THAT(linesOf(explanation), IsEmpty()) << name;
    expectFieldsCover(payload, explanation);
  }
}

TEST(Explanation, AnExampleIsRecognisedByItsBytes) {
  for (const auto &[name, kind] : kindsOfExamples()) {
    const auto guessed = guessKind(examples().at(name));
    ASSERT_TRUE(guessed) << name;
    EXPECT_EQ(guessed->name, kind.name);
  }
  EXPECT_FALSE(guessKind("\xFF\xFF\xFF"));
}

TEST(Explanation, ABeginningOfAnExampleIsBrokenWhereverItEnds) {
  for (const auto &[name, kind] : kindsOfExamples()) {
    const std::string payload = examples().at(name);
    for (std::size_t size = 0; size < payload.size(); ++size) {
      const std::string_view cut = std::string_view(payload).substr(0, size);
      const Explanation explanation = explain(kind, cut);
      // A bibliography has no length: what is left of one is one.
      const bool isWhole = kind.layout == Layout::scanReply && isTaken(kind, cut);
      EXPECT_EQ(explanation.isBroken(), !isWhole) << name << ", " << size << " bytes";
      expectFieldsCover(cut, explanation);
    }
  }
}

TEST(Explanation, WhatTheReceiverRefusesIsBroken) {
  std::size_t refused = 0;
  for (const auto &[name, kind] : kindsOfExamples()) {
    std::string payload = examples().at(name);
    for (std::size_t bit = 0; bit < payload.size() * 8; ++bit) {
      const char whole = payload[bit / 8];
      payload[bit / 8] = static_cast<char>(whole ^ (1 << bit % 8));
      const Explanation explanation = explain(kind, payload);
      expectFieldsCover(payload, explanation);
      if (!isTaken(kind, payload)) {
        ++refused;
        EXPECT_TRUE(explanation.isBroken()) << name << ", bit " << bit;
      }
      payload[bit / 8] = whole;
    }
  }
  EXPECT_GT(refused, 50u);
}

TEST(Explanation, EachFieldHasItsPlaceItsValueAndItsMeaning) {
  const std::string payload = examples().at("scan-reply");
  const Explanation explanation = explain(kindOf("mLeL", "SCNR"), payload);
  std::vector<std::string> fields;
  for (const Field &field : explanation.fields) {
    fields.push_back(std::to_string(field.offset) + '+' + std::to_string(field.size) + ' ' +
                     field.name + ": " + field.meaning);
  }
  EXPECT_THAT(
      fields,
      ElementsAre("0+2 reserved: ", "2+4 document ID: ", "6+4 reserved: ", "10+1 reserved: ",
                  "11+1 superscript: the style sets its citations in superscript",
                  "12+1 bibliography flag: one follows", "13+1 reserved: ", "14+4 style: ",
                  "18+4 number of groups: ", "22+7 text of group 1: \"1\"",
                  "29+1 text of group 2: \"\"", "30+9 bibliography: "));
  EXPECT_EQ(explanation.fields[1].number, 7u);
  EXPECT_EQ(explanation.fields[7].bytes, "APA");
  EXPECT_EQ(explanation.summary, "document 7, 2 texts, style \"APA\", with a bibliography");
}

TEST(Explanation, ACitationIsReadInItsSyntax) {
  const Explanation explanation =
      explain(kindOf("mLeL", "FNDN"), "!%\\see \\Smith 2001\\, fig. 2\\#SMI@45-47;;B\0"sv);
  EXPECT_EQ(explanation.fields.at(0).meaning,
            "search text \"Smith 2001\", tag \"SMI\", pages \"45-47\", before it \"see \", behind "
            "it \", fig. 2\", not in the text, the year only; no citation; search text \"B\"");
}

TEST(Explanation, AFormattedTextIsShownWithoutItsAttributes) {
  const auto meaning = [](std::string_view pidgin) {
    const std::string payload =
        "\0\0\0\0\0\x07\0\0\0\0\0\0\0\0A\0\0\0\0\x01"s + std::string(pidgin) + '\0';
    const Explanation explanation = explain(kindOf("mLeL", "SCNR"), payload);
    return explanation.fields.at(explanation.fields.size() - 1).meaning;
  };
  EXPECT_EQ(meaning("{\\b caf\\uc0\\u233 } it\\'27s \\'7b x\\'7d "), "\"café it's {x}\"");
  EXPECT_EQ(meaning("\\uc0\\u-10179 \\uc0\\u-8704 "), "\"\U0001F600\"");
  EXPECT_EQ(meaning("\\"), "\"\"");
  EXPECT_EQ(meaning("\\'4"), "\"'4\"");
}

TEST(Explanation, WhatBreaksARuleIsSaid) {
  const EventKind scan = kindOf("mLeL", "PRSQ");
  EXPECT_THAT(findingsOf(scan,
                         "\0\0\0\0\0\x07\0\0\0\x02"
                         "A\0\0"sv),
              ElementsAre("broken at 12: pair 1, second text announces 2 pairs, but 1 is there"));
  EXPECT_THAT(findingsOf(scan,
                         "\0\0\0\0\0\x07\0\0\0\x01"
                         "A\0B"sv),
              ElementsAre("broken at 12: pair 1, second text has no NUL at its end"));
  EXPECT_THAT(findingsOf(scan,
                         "\0\0\0\0\0\x07\0\0\0\x01"
                         "\xC3\0\0"sv),
              ElementsAre(HasSubstr("pair 1, citation is no well-formed UTF-8")));
  EXPECT_THAT(findingsOf(scan, "\0\0\0\0"sv), ElementsAre("broken at 2: document ID is cut short"));
  EXPECT_THAT(findingsOf(kindOf("mLeL", "PREF"), "\0\0\0\5\0\0\xFF\xFF\0\0\0\0\0\2"sv),
              ElementsAre("broken at 12: value 7 is 2, and 1 in this version"));
  EXPECT_THAT(findingsOf(kindOf("mLeL", "Rmcr"), "\0\1\0\0\0\7x"sv),
              ElementsAre("odd at 0: reserved is reserved, and not 0",
                          "broken at 6: surplus belongs to no field"));
  EXPECT_THAT(findingsOf(kindOf("mLeL", "FIND"), "x"), ElementsAre("odd at 0: data is not read"));
  EXPECT_THAT(findingsOf(kindOf("BERB", "cite"), "A\0<xml/>\0"sv),
              ElementsAre("broken at 2: record is not the record text of its citation"));
  EXPECT_THAT(linesOf(explain(scan, std::nullopt)),
              ElementsAre("broken at 0: there is no data at all"));
}

TEST(Explanation, ARequestBeyondALimitIsBroken) {
  const std::string longName(70000, 'x');
  const std::string payload = "\0\0\0\0\0\x07\xFF\0\0\0"s + longName + "\0\0\0\0\0"s;
  EXPECT_THAT(findingsOf(kindOf("mLeL", "SCNQ"), payload),
              ElementsAre(HasSubstr("refused as a whole: a citation or the style's name")));
}

TEST(Explanation, AnImpossibleNumberOfGroupsIsNotRead) {
  EXPECT_THAT(
      findingsOf(kindOf("mLeL", "SCNR"), "\0\0\0\0\0\x07\0\0\0\0\0\0\0\0A\0\xFF\0\0\0x\0"sv),
      ElementsAre("broken at 16: number of groups announces 4278190080 groups, but 0 are "
                  "there",
                  "broken at 20: surplus belongs to no field"));
}

TEST(Explanation, AReplyWithoutDataIsAllRight) {
  EXPECT_THAT(linesOf(explain(kindOf("mLeL", "LVBQ", true), std::nullopt)), IsEmpty());
  EXPECT_THAT(linesOf(explain(kindOf("mLeL", "IMHR", true), std::nullopt)), IsEmpty());
}

TEST(EventKinds, ACodeIsReadAsItIsWritten) {
  for (const std::uint32_t code : {0x6D4C654Cu, 0x2D2D2D2Du, 0x00000007u, 0x27272727u, 0u}) {
    EXPECT_EQ(readCode(inQuotes(code)), code);
  }
  EXPECT_EQ(readCode("mLeL"), 0x6D4C654Cu);
  for (const std::string_view wrong : {"", "mLe", "mLeLL", "'mLeL", "0x123456789", "0x1234567g"}) {
    EXPECT_FALSE(readCode(wrong)) << wrong;
  }
}

}  // namespace
