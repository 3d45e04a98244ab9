// The control words whose meaning matters to someone who looks for text.
//
// RTF has some 1,800 control words. The few here decide which bytes are text of the document
// and which characters they stand for; every other word is passed over and kept.
#pragma once

#include <cstdint>
#include <string_view>

namespace mellel::rtf {

enum class Keyword : std::uint8_t {
  unknown,
  // Header
  codePageOfHeader,  // \ansi, \mac, \pc, \pca, with the code page as value
  ansiCodePage,
  defaultFont,
  fontTable,
  fontCharacterSet,
  fontCodePage,
  // Destinations
  hiddenDestination,  // nothing in it is text of the document
  listText,           // the same, though some programs put an item's own text there
  storyDestination,   // a text of its own: footnote, header, text box
  unicodePair,        // \upr: the same text twice, first without Unicode
  unicodeText,        // \ud: the second of them
  embeddedObject,     // hidden, but it takes a place in the paragraph
  // Text
  character,             // stands for the character given as value
  unicodeCharacter,      // \u
  unicodeFallbackCount,  // \uc
  paragraphEnd,
  // Formatting
  resetCharacters,
  resetParagraph,
  font,
  fontSize,
  bold,
  italic,
  underline,
  noUnderline,
  superscript,
  subscript,
  noSuperscriptOrSubscript,
  smallCapitals,
  deleted,
  paragraphStyle,
  leftIndent,
  firstLineIndent,
  spaceBefore,
  spaceAfter,
  lineSpacing,
  lineSpacingRule,
  tabStop
};

struct KeywordMeaning {
  Keyword keyword = Keyword::unknown;
  char32_t value = 0;
};

KeywordMeaning meaningOfControlWord(std::string_view word);

}  // namespace mellel::rtf
