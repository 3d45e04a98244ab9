#include <StandIns/Mellel/RTF/Bibliography.h>

#include <gtest/gtest.h>

#include <string>

namespace mellel::rtf {
namespace {

// As GNUstep's AppKit writes it.
const std::string gnustepBibliography =
    "{\\rtf1\\ansi\\ansicpg1252\\cocoartf102{\\fonttbl\\f0\\fnil DejaVu Sans;}\n"
    "\\f0\\fs24\\pard\\li720\\fi-720\\sa120\\ql Smith, J. \\{2001\\}. \"\\uc0 \\u8220  Caf\\'E9 "
    "\\u26085  \\u-10179 \\u-8704  \\\\ \\i Journal\\i0\\b 12\\b0\\super sup\\nosupersub\\ulw\\ul "
    "u\\ulnone\\sub sub\\nosupersub .\\par\n[2]\\tab Second\\'A0entry\\par\n}";

// As macOS's AppKit writes it.
const std::string cocoaBibliography =
    "{\\rtf1\\ansi\\ansicpg1252\\cocoartf2639\n\\cocoatextscaling0\\cocoaplatform0{\\fonttbl\\f0"
    "\\froman\\fcharset0 Times-Roman;\\f1\\froman\\fcharset0 Times-Italic;}\n"
    "{\\colortbl;\\red255\\green255\\blue255;}\n{\\*\\expandedcolortbl;;}\n"
    "\\pard\\tx360\\li360\\fi-360\\pardirnatural\\partightenfactor0\n\n\\f0\\fs24 \\cf0 "
    "Ko\\uc0\\u322 akowski, L. \n\\f1\\i Main Currents\n\\f0\\i0 .\\\nLi, B. It\\'92s.}";

std::string allText(const BibliographyParagraphs &bibliography) {
  std::string text;
  for (const BibliographyParagraph &entry : bibliography) {
    text += plainText(entry.text) + '|';
  }
  return text;
}

TEST(Bibliography, GNUstepsRTFIsUnderstood) {
  const auto bibliography = readBibliography(gnustepBibliography);
  ASSERT_TRUE(bibliography);
  EXPECT_EQ(allText(*bibliography),
            "Smith, J. {2001}. \"“ Café 日 😀 \\ Journal12supusub.|[2]\tSecond\u00A0entry|");
  EXPECT_EQ(bibliography->front().format.leftIndent, 720);
  EXPECT_EQ(bibliography->back().format.firstLineIndent, -720);
  const RichText &runs = bibliography->front().text;
  ASSERT_EQ(runs.size(), 7U);
  EXPECT_TRUE(runs[1].looks.isItalic);
  EXPECT_TRUE(runs[2].looks.isBold);
  EXPECT_TRUE(runs[3].looks.isSuperscript);
  EXPECT_TRUE(runs[4].looks.isUnderlined);
  EXPECT_TRUE(runs[5].looks.isSubscript);
}

TEST(Bibliography, MacOSsRTFIsUnderstood) {
  const auto bibliography = readBibliography(cocoaBibliography);
  ASSERT_TRUE(bibliography);
  EXPECT_EQ(allText(*bibliography), "Kołakowski, L. Main Currents.|Li, B. It’s.|");
  EXPECT_EQ(bibliography->back().format.leftIndent, 360);
  EXPECT_EQ(bibliography->back().tabStops, std::vector<std::int32_t>{360});
}

TEST(Bibliography, EmptyParagraphsAroundItAreDropped) {
  const auto bibliography = readBibliography("{\\rtf1\\par a\\par\\par b\\par\\par}");
  ASSERT_TRUE(bibliography);
  EXPECT_EQ(allText(*bibliography), "a||b|");
}

TEST(Bibliography, ParagraphsOfLineBreaksAloneAreEmpty) {
  // U+2029 is written as a line break: it must be as blank before as it is afterwards.
  const auto bibliography = readBibliography("{\\rtf1\\u8233?\\line\\par a\\par\\u8233?}");
  ASSERT_TRUE(bibliography);
  EXPECT_EQ(allText(*bibliography), "a|");
}

TEST(Bibliography, NothingIsNoParagraph) {
  EXPECT_TRUE(readBibliography("")->empty());
  EXPECT_TRUE(readBibliography("{\\rtf1\\par }")->empty());
}

TEST(Bibliography, WhatIsNoRTFIsRefused) {
  EXPECT_EQ(readBibliography("x").error(), "it is not an RTF document");
}

TEST(Bibliography, EntriesBringTheirIndentsButNoFonts) {
  const BibliographyParagraphs entries = *readBibliography(cocoaBibliography);
  EXPECT_EQ(bibliographyInPlace({entries.front()}),
            "{\\li360\\lin360\\fi-360\\sb0\\sa0\\tx360\\b0\\i0\\scaps0\\ulnone\\nosupersub\\uc0 "
            "Ko\\u322 akowski, L. {\\i Main Currents}.\\par}\n");
  EXPECT_EQ(bibliographyInBodyFormat({entries.front()}, {28, 3, 22}),
            "{\\pard\\plain\\s28\\ql\\li360\\lin360\\fi-360\\sb0\\sa0\\tx360\\f3\\fs22\\uc0 "
            "Ko\\u322 akowski, L. {\\i Main Currents}.\\par}\n");
}

TEST(Bibliography, BodyFormatThatTheDocumentDoesNotNameIsLeftOut) {
  const BibliographyParagraphs entries = *readBibliography("{\\rtf1 a}");
  EXPECT_EQ(bibliographyInBodyFormat(entries, {}),
            "{\\pard\\plain\\ql\\li0\\lin0\\fi0\\sb0\\sa0\\uc0 a\\par}\n");
}

TEST(Bibliography, SmallCapitalsAreKept) {
  const BibliographyParagraphs entries = *readBibliography("{\\rtf1 {\\scaps Smith}, J.}");
  EXPECT_NE(bibliographyInPlace(entries).find("{\\scaps Smith}, J."), std::string::npos);
}

TEST(Bibliography, LineSpacingIsTakenOver) {
  const auto bibliography =
      readBibliography("{\\rtf1\\pard\\sl560 A\\par\\pard\\sl480\\slmult1 B\\par\\pard C\\par}");
  ASSERT_TRUE(bibliography);
  EXPECT_EQ(bibliographyInPlace(*bibliography),
            "{\\li0\\lin0\\fi0\\sb0\\sa0\\sl560\\slmult0\\b0\\i0\\scaps0\\ulnone\\nosupersub\\uc0 "
            "A\\par}\n"
            "{\\li0\\lin0\\fi0\\sb0\\sa0\\sl480\\slmult1\\b0\\i0\\scaps0\\ulnone\\nosupersub\\uc0 "
            "B\\par}\n"
            "{\\li0\\lin0\\fi0\\sb0\\sa0\\b0\\i0\\scaps0\\ulnone\\nosupersub\\uc0 C\\par}\n");
}

// The place's own distance, as every word processor gives its paragraphs one, would stay.
TEST(Bibliography, NoSpacingBetweenEntriesIsTakenOverToo) {
  const auto bibliography = readBibliography("{\\rtf1\\pard\\sa0 A\\par B\\par}");
  ASSERT_TRUE(bibliography);
  EXPECT_NE(bibliographyInPlace(*bibliography).find("\\sb0\\sa0"), std::string::npos);
}

}  // namespace
}  // namespace mellel::rtf
