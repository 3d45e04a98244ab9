#include <Formats/ScanReply.h>
#include <StandIns/Mellel/Commands/Report.h>
#include <StandIns/Mellel/Conversation/Answers.h>
#include <StandIns/Mellel/Conversation/ScanRequests.h>

#include <gtest/gtest.h>

#include <string>

namespace mellel::conversation {
namespace {

using commands::checkJSON;
using commands::checkTable;
using commands::formattingReport;
using rtf::Citation;
using rtf::plainText;

constexpr std::uint32_t documentID = 7;

std::vector<Citation> citations(const std::vector<std::string> &texts) {
  std::vector<Citation> result;
  for (const std::string &text : texts) {
    result.push_back({text, {}});
  }
  return result;
}

std::string replyWith(const std::vector<std::string> &groups,
                      const std::optional<std::string> &bibliography = std::nullopt) {
  std::string payload(10'000, '\0');
  formats::PayloadWriter writer(payload);
  formats::writeScanReplyHeader(writer, {documentID, false, bibliography.has_value(), u"Style",
                                         static_cast<std::uint32_t>(groups.size())});
  for (const std::string &group : groups) {
    writer.writeStringUTF8(group);
  }
  writer.writeBytes(bibliography.value_or(""));
  payload.resize(writer.written());
  return payload;
}

TEST(ScanRequests, SecondTextOfAPairHasNoMarkers) {
  const auto texts = citations({"verified Smith", "Jones"});
  const auto pairs = citationPairs(texts);
  EXPECT_EQ(pairs[0].first, "verified Smith");
  EXPECT_EQ(pairs[0].second, "Smith");
  EXPECT_EQ(pairs[1].second, "Jones");
}

TEST(Answers, FormattedCitationsAreGivenInOrder) {
  const auto formatted =
      readScanReply(replyWith({"(A)", "(B)"}), documentID, citations({"a", "b"}), true);
  ASSERT_TRUE(formatted);
  EXPECT_EQ(formatted->styleName, "Style");
  EXPECT_EQ(formatted->count(), 2U);
  EXPECT_EQ(plainText(*formatted->texts[1]), "(B)");
  EXPECT_FALSE(formatted->bibliography);
}

TEST(Answers, TextInBracesMeansThatNothingWasFormatted) {
  const auto formatted = readScanReply(replyWith({"\\'7b a\\'7d ", "\\{b\\}", "\\'7b c\\'7d  (C)"}),
                                       documentID, citations({"a", "b", "c"}), true);
  ASSERT_TRUE(formatted);
  EXPECT_FALSE(formatted->texts[0]);
  EXPECT_FALSE(formatted->texts[1]);
  EXPECT_TRUE(formatted->texts[2]);
}

TEST(Answers, NoTextIsAnAnswerOnlyToCitationsThatAskToBeHidden) {
  const auto formatted = readScanReply(
      replyWith({"", "", "", "", ""}), documentID,
      citations({"!Smith", "Smith", "!Smith; Jones", " ; ", "verified !Smith;!Jones"}), true);
  ASSERT_TRUE(formatted);
  EXPECT_TRUE(formatted->texts[0]);
  EXPECT_FALSE(formatted->texts[1]);
  EXPECT_FALSE(formatted->texts[2]);
  EXPECT_FALSE(formatted->texts[3]);
  EXPECT_TRUE(formatted->texts[4]);
}

TEST(Answers, TextThatCannotBeSeenTakesNoCitationsPlace) {
  const auto formatted = readScanReply(replyWith({"\\u2?", " \\~", "\\u8203?"}), documentID,
                                       citations({"Smith", "!Smith", "Jones"}), true);
  ASSERT_TRUE(formatted);
  EXPECT_FALSE(formatted->texts[0]);
  EXPECT_TRUE(formatted->texts[1]);
  EXPECT_FALSE(formatted->texts[2]);
}

TEST(Answers, BytesThatAreNoUTF8SwallowNothing) {
  const auto formatted =
      readScanReply(replyWith({"(a\xC3)"}), documentID, citations({"Smith"}), true);
  ASSERT_TRUE(formatted);
  EXPECT_EQ(plainText(*formatted->texts[0]), "(a\uFFFD)");
}

TEST(Answers, AnswersSayWhichDocumentTheyAreForUnlessTheyAreTooShort) {
  const std::string reply = replyWith({});
  EXPECT_EQ(documentIDOfAnswer(reply), documentID);
  EXPECT_EQ(documentIDOfAnswer(reply.substr(0, 6)), documentID);
  EXPECT_EQ(documentIDOfAnswer(reply.substr(0, 5)), std::nullopt);
}

TEST(Answers, BibliographyThatWasNotAskedForIsIgnored) {
  const std::string reply = replyWith({"(A)"}, "{\\rtf1 x}");
  EXPECT_FALSE(readScanReply(reply, documentID, citations({"a"}), false)->bibliography);
  EXPECT_TRUE(readScanReply(reply, documentID, citations({"a"}), true)->bibliography);
}

TEST(Answers, AnswersThatDoNotFitAreRefused) {
  const auto errorOf = [](const std::string &payload, std::uint32_t id,
                          const std::vector<std::string> &texts) {
    const auto formatted = readScanReply(payload, id, citations(texts), true);
    return formatted ? "" : formatted.error();
  };
  EXPECT_EQ(errorOf(replyWith({"(A)"}), 8, {"a"}), "scan reply belongs to another document");
  EXPECT_EQ(errorOf(replyWith({"(A)"}), documentID, {"a", "b"}),
            "scan reply holds 1 citations where 2 were asked for");
  EXPECT_NE(errorOf(replyWith({"(A}"}), documentID, {"a"}), "");
  EXPECT_NE(errorOf(replyWith({"(A)"}, "x"), documentID, {"a"}), "");
  const std::string reply = replyWith({"(A)", "(B)"});
  for (std::size_t length = 0; length < reply.size(); ++length) {
    EXPECT_NE(errorOf(reply.substr(0, length), documentID, {"a", "b"}), "") << length;
  }
}

TEST(Report, JSONEscapesWhatItMust) {
  const std::vector<CheckedCitation> checked = {{"a\"\\\x01ü", {"r1", "r2"}}, {"b", {}}};
  EXPECT_EQ(checkJSON(checked, {true, false}).text(),
            "[\n  {\"citation\": \"a\\\"\\\\\\u0001ü\", \"found\": true, \"records\": [\"r1\", "
            "\"r2\"]},\n"
            "  {\"citation\": \"b\", \"found\": false, \"records\": []}\n]\n");
  EXPECT_EQ(checkJSON({}, {}).text(), "[]\n");
}

TEST(Report, NothingThatTheHostSendsEndsALineOrCommandsTheTerminal) {
  EXPECT_EQ(checkTable(std::vector<CheckedCitation>{{"a\nb", {"c\rd", "\te"}}}, {true}).text(),
            "#  Citation  Found  Looked up as\n1  a b       yes    c d |  e\n");
  EXPECT_EQ(checkJSON(std::vector<CheckedCitation>{{"\u202Ea\x7F", {"\u009B\xFF"}}}, {true}).text(),
            "[\n  {\"citation\": \"\\u202ea\\u007f\", \"found\": true, \"records\": "
            "[\"\\u009b\uFFFD\"]}\n]\n");
}

TEST(Report, ANameForgesNoLine) {
  const conversation::FormattedCitations formatted{
      .styleName = "apa\x1B[2J\nwrote: y", .texts = {}, .bibliography = {}};
  const rtf::DocumentText document;
  const commands::FormattedCopy copy{.output = "x\x1B[2J\nstyle: z\u2028",
                                     .askedStyle = "q\"\x1B",
                                     .formatted = formatted,
                                     .document = document,
                                     .wantsBibliography = false};
  EXPECT_EQ(formattingReport(copy).text(),
            "wrote: x [2J style: z \nstyle: apa [2J wrote: y\nformatted: 0 of 0 citations\n");
  EXPECT_EQ(formattingJSON(copy).text(),
            "{\"wrote\": \"x\\u001b[2J\\u000astyle: z\\u2028\",\n"
            " \"style\": \"apa\\u001b[2J\\u000awrote: y\",\n"
            " \"askedStyle\": \"q\\\"\\u001b\",\n"
            " \"citations\": [],\n \"footnotes\": 0,\n \"bibliography\": null}\n");
}

TEST(Report, TableLinesUpItsColumns) {
  EXPECT_EQ(checkTable(
                std::vector<CheckedCitation>{{"Müller 2002", {"Müller 2002"}}, {"a;b", {"a", "b"}}},
                {true, false})
                .text(),
            "#  Citation     Found  Looked up as\n"
            "1  Müller 2002  yes    Müller 2002\n"
            "2  a;b          no     a | b\n");
}

}  // namespace
}  // namespace mellel::conversation
