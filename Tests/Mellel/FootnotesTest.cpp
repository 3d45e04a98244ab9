#include <StandIns/Mellel/RTF/DocumentRewriting.h>
#include <StandIns/Mellel/RTF/Footnotes.h>
#include <Tests/Support/ReadDocument.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace mellel::rtf {
namespace {

using test_support::documentWith;
using test_support::textOf;

const std::string note =
    "{\\super\\chftn}{\\footnote\\pard\\plain\\fs20 {\\super\\chftn} \\uc0 N.}";

// The body with a footnote "N." for each citation.
std::string withNotes(std::string_view body, std::string_view pidgin = "N.") {
  const std::string rtf = documentWith(body);
  const auto document = readDocumentText(rtf);
  const std::vector<std::optional<RichText>> texts(document->citations.size(),
                                                   *readPidginRTF(pidgin));
  const std::string result =
      formattedDocument(rtf, *document, texts, {}, PlaceOfCitations::inFootnotes);
  EXPECT_TRUE(textOf(result)) << result;
  const std::size_t header = documentWith("").size() - 1;
  return result.substr(header, result.size() - header - 1);
}

bool areSentencesOf(const std::vector<std::string> &pidgins) {
  std::vector<std::optional<RichText>> texts;
  for (const std::string &pidgin : pidgins) {
    texts.push_back(pidgin.empty() ? std::nullopt : std::optional(*readPidginRTF(pidgin)));
  }
  return areSentences(texts);
}

TEST(Footnotes, TakeTheCitationsPlaceWithoutTheBlankBeforeIt) {
  EXPECT_EQ(withNotes("word \\{Smith\\} more"), "word" + note + " more");
  EXPECT_EQ(withNotes("word\\{Smith\\} more"), "word" + note + " more");
  EXPECT_EQ(withNotes("word\\~\\{Smith\\} more"), "word" + note + " more");
  EXPECT_EQ(withNotes("w{\\b ord} {\\i \\{Smith\\}} more"), "w{\\b ord}{\\i " + note + "} more");
}

TEST(Footnotes, StandBehindTheStopThatFollows) {
  EXPECT_EQ(withNotes("word \\{Smith\\}. More"), "word." + note + " More");
  EXPECT_EQ(withNotes("word \\{Sm{\\i ith\\}}, more"), "word{\\i }," + note + " more");
  EXPECT_EQ(withNotes("word \\{Smith\\}) more"), "word" + note + ") more");
  EXPECT_EQ(withNotes("word \\{Smith\\}\\par . More"), "word" + note + "\\par . More");
}

TEST(Footnotes, StayApartWhereCitationsFollowEachOther) {
  EXPECT_EQ(withNotes("a \\{A\\} \\{B\\} b"), "a" + note + " " + note + " b");
  EXPECT_EQ(withNotes("a \\{A\\}. B \\{B\\}."), "a." + note + " B." + note);
}

TEST(Footnotes, LeaveCitationsInNotesAndHeadersWhereTheyAre) {
  EXPECT_EQ(withNotes("a{\\footnote See \\{Smith\\}.} b"), "a{\\footnote See {N}.} b");
  EXPECT_EQ(withNotes("{\\header \\{Smith\\}}b"), "{\\header {N.}}b");
}

TEST(Footnotes, LookLikeSmallBodyText) {
  const std::string result = withNotes("\\f2\\fs30 A long body text, and \\{Smith\\} in it.");
  EXPECT_NE(result.find("\\footnote\\pard\\plain\\f2\\fs26 "), std::string::npos) << result;
}

TEST(Footnotes, AreMadeOfNoEmptyText) { EXPECT_EQ(withNotes("a \\{!S\\} b", ""), "a {} b"); }

TEST(Footnotes, AreOfferedForSentencesOnly) {
  EXPECT_TRUE(areSentencesOf({"John Smith, {\\i On Heat}, 45."}));
  EXPECT_TRUE(areSentencesOf({"Smith, \\u8220 Heat.\\u8221  ", "Ibid.", "(Smith 2001)"}));
  EXPECT_FALSE(areSentencesOf({"(Smith, 2001)", "(Jones et al.)", "Ibid."}));
  EXPECT_FALSE(areSentencesOf({"[1]", "", "[2]"}));
  EXPECT_FALSE(areSentencesOf({}));
}

TEST(Footnotes, AreCountedInTheMainTextOnly) {
  const auto document =
      readDocumentText(documentWith("a \\{A\\}{\\footnote \\{B\\}} \\{C\\} \\{D\\}"));
  std::vector<std::optional<RichText>> texts(4, *readPidginRTF("N."));
  texts[2].reset();
  EXPECT_EQ(countForFootnotes(*document, texts), 2U);
}

}  // namespace
}  // namespace mellel::rtf
