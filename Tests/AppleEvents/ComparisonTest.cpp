// Two answers compared, and what is said of their differences.
#include "Payloads.h"

#include <Tools/AppleEvents/Recordings/Comparison.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace appleevents;
using namespace appleevents_test;
using testing::ElementsAre;
using testing::IsEmpty;

RecordedParameter directObject(const std::string &bytes, const std::string &type = "TEXT") {
  return {readCode("----").value(), readCode(type).value(), bytes};
}

Comparison compareReplies(const std::string &recorded, const std::string &arrived) {
  return compare(findEventKind(readCode("mLeL").value(), readCode("SCNR").value(), false),
                 {directObject(recorded)}, {directObject(arrived)});
}

std::string edited(const std::string &from, const std::string &to) {
  std::string reply = examples().at("scan-reply");
  return reply.replace(reply.find(from), from.size(), to);
}

TEST(Comparison, TheSameIsTheSame) {
  const std::string reply = examples().at("scan-reply");
  const Comparison comparison = compareReplies(reply, reply);
  EXPECT_THAT(comparison.differences, IsEmpty());
  EXPECT_FALSE(comparison.documents);
}

TEST(Comparison, AnotherDocumentIsTold) {
  const Comparison comparison =
      compareReplies(examples().at("scan-reply"), edited("\0\0\0\7"s, "\0\0\1\0"s));
  EXPECT_THAT(comparison.differences, IsEmpty());
  EXPECT_EQ(comparison.documents, (std::pair{7u, 256u}));
}

TEST(Comparison, TheFieldIsNamedAndItsPlace) {
  const std::string reply = examples().at("scan-reply");
  EXPECT_THAT(compareReplies(reply, edited("\\b 1", "\\b 2")).differences,
              ElementsAre("text of group 1 (byte 22): was \"{\\b 1}\", is \"{\\b 2}\""));
  EXPECT_THAT(compareReplies(reply, edited("\0\xFF\xFF\0"s, "\0\0\xFF\0"s)).differences,
              ElementsAre("superscript (byte 11): was 255, is 0"));
  EXPECT_THAT(compareReplies(reply, edited("APA", "MLA style")).differences,
              ElementsAre("style (byte 14): was \"APA\", is \"MLA style\""));
  EXPECT_THAT(compareReplies(reply, edited("rtf1 x", "rtf1 y")).differences,
              ElementsAre("bibliography (byte 30): was \"{\\rtf1 x}\", is \"{\\rtf1 y}\""));
}

TEST(Comparison, OfALongTextTheSurroundingsOfTheDifferenceAreShown) {
  const std::string text(1000, 'x');
  const Comparison comparison = compareReplies(edited("rtf1 x", "rtf1 " + text + "a"),
                                               edited("rtf1 x", "rtf1 " + text + "b"));
  EXPECT_THAT(comparison.differences,
              ElementsAre("bibliography (byte 30): was …\"" + std::string(24, 'x') +
                          "a}\", is …\"" + std::string(24, 'x') + "b}\""));
}

TEST(Comparison, WhatIsMissingAndWhatIsNewIsNamed) {
  const std::string reply = examples().at("scan-reply");
  EXPECT_THAT(
      compareReplies(reply, reply.substr(0, 29)).differences,
      ElementsAre("in place of text of group 2 stands bibliography", "bibliography is missing"));
  EXPECT_THAT(compareReplies(reply.substr(0, 29), reply).differences, testing::Not(IsEmpty()));
}

TEST(Comparison, AnyOtherByteIsADifference) {
  const std::string reply = examples().at("scan-reply");
  for (std::size_t position = 0; position < reply.size(); ++position) {
    std::string other = reply;
    other[position] = static_cast<char>(other[position] ^ 0x20);
    const Comparison comparison = compareReplies(reply, other);
    const bool isDocument = position >= 2 && position < 6;
    EXPECT_EQ(comparison.differences.empty(), isDocument) << position;
    EXPECT_EQ(comparison.documents.has_value(), isDocument) << position;
  }
}

TEST(Comparison, MoreThanAHandfulIsCounted) {
  const std::string request = "\0\0\0\0\0\7\0\0\0\x14"s;
  const auto kind = findEventKind(readCode("mLeL").value(), readCode("PRSQ").value(), false);
  std::string before = request;
  std::string now = request;
  for (int count = 0; count < 20; ++count) {
    before += "a\0\0"s;
    now += "b\0\0"s;
  }
  const auto differences = compare(kind, {directObject(before)}, {directObject(now)}).differences;
  ASSERT_EQ(differences.size(), 7u);
  EXPECT_EQ(differences.back(), "and 14 more differences");
}

TEST(Comparison, OtherParametersAreCompared) {
  const auto lines = [](const std::vector<RecordedParameter> &recorded,
                        const std::vector<RecordedParameter> &arrived) {
    return compare(std::nullopt, recorded, arrived).differences;
  };
  EXPECT_THAT(lines({directObject("a")}, {directObject("a")}), IsEmpty());
  EXPECT_THAT(lines({directObject("a")}, {directObject("b")}),
              ElementsAre("the data of parameter '----' 'TEXT' is another"));
  EXPECT_THAT(lines({directObject("a")}, {directObject("a", "BUFF")}),
              ElementsAre("in place of parameter '----' 'TEXT' stands '----' 'BUFF'"));
  EXPECT_THAT(lines({directObject("a")}, {}), ElementsAre("parameter '----' 'TEXT' is missing"));
  EXPECT_THAT(lines({}, {directObject("a")}),
              ElementsAre("parameter '----' 'TEXT' was not recorded"));
}

}  // namespace
