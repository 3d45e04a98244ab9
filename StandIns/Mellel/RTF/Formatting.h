// The formatting that RTF's control words switch, as far as someone needs it who moves text
// from one document into another.
#pragma once

#include "Keywords.h"
#include "Lexer.h"

#include <cstdint>

namespace mellel::rtf {

// What characters keep when they move into another document.
struct CharacterLooks {
  bool isBold = false;
  bool isItalic = false;
  bool isUnderlined = false;
  bool isSuperscript = false;
  bool isSubscript = false;
  bool isSmallCapitals = false;

  bool operator==(const CharacterLooks &) const = default;
};

// The looks of the first that the second lacks.
CharacterLooks looksWithout(const CharacterLooks &first, const CharacterLooks &second);
// The looks that both have.
CharacterLooks commonLooks(const CharacterLooks &first, const CharacterLooks &second);

struct CharacterFormat {
  // Font number and size in half points; -1 where the document's default holds.
  std::int32_t font = -1;
  std::int32_t size = -1;
  CharacterLooks looks;
  // By a tracked change: still in the file, but no text of the document.
  bool isDeleted = false;
};

// Lengths in twips (twentieths of a point).
struct ParagraphFormat {
  std::int32_t style = -1;  // -1: none named
  std::int32_t leftIndent = 0;
  std::int32_t firstLineIndent = 0;
  std::int32_t spaceBefore = 0;
  std::int32_t spaceAfter = 0;
  // Of \sl: at least so much, or exactly where it is negative; 0 where nothing is told.
  std::int32_t lineSpacing = 0;
  // Of \slmult: the number is a multiple of a line, 240 for a single one.
  bool lineSpacingIsMultiple = false;
};

struct Formatting {
  CharacterFormat characters;
  ParagraphFormat paragraph;
};

// Does what the control word says. A keyword that is not about formatting changes nothing.
void applyFormatting(Keyword keyword, const Token &token, Formatting &formatting);

}  // namespace mellel::rtf
