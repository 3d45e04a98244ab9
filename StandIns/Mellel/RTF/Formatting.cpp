#include "Formatting.h"

namespace mellel::rtf {

namespace {

void applyToCharacters(Keyword keyword, const Token &token, CharacterFormat &format) {
  // \b switches on, \b0 switches off.
  const bool switchesOn = !token.hasParameter || token.parameter != 0;
  switch (keyword) {
    case Keyword::resetCharacters:
      format = CharacterFormat{};
      break;
    case Keyword::font:
      format.font = token.parameter;
      break;
    case Keyword::fontSize:
      format.size = token.hasParameter ? token.parameter : -1;
      break;
    case Keyword::bold:
      format.looks.isBold = switchesOn;
      break;
    case Keyword::italic:
      format.looks.isItalic = switchesOn;
      break;
    case Keyword::underline:
      format.looks.isUnderlined = switchesOn;
      break;
    case Keyword::noUnderline:
      format.looks.isUnderlined = false;
      break;
    case Keyword::superscript:
      format.looks.isSuperscript = switchesOn;
      format.looks.isSubscript = false;
      break;
    case Keyword::subscript:
      format.looks.isSubscript = switchesOn;
      format.looks.isSuperscript = false;
      break;
    case Keyword::noSuperscriptOrSubscript:
      format.looks.isSuperscript = format.looks.isSubscript = false;
      break;
    case Keyword::smallCapitals:
      format.looks.isSmallCapitals = switchesOn;
      break;
    case Keyword::deleted:
      format.isDeleted = switchesOn;
      break;
    default:
      break;
  }
}

void applyToParagraph(Keyword keyword, const Token &token, ParagraphFormat &format) {
  switch (keyword) {
    case Keyword::resetParagraph:
      format = ParagraphFormat{};
      break;
    case Keyword::paragraphStyle:
      format.style = token.parameter;
      break;
    case Keyword::leftIndent:
      format.leftIndent = token.parameter;
      break;
    case Keyword::firstLineIndent:
      format.firstLineIndent = token.parameter;
      break;
    case Keyword::spaceBefore:
      format.spaceBefore = token.parameter;
      break;
    case Keyword::spaceAfter:
      format.spaceAfter = token.parameter;
      break;
    case Keyword::lineSpacing:
      format.lineSpacing = token.parameter;
      break;
    case Keyword::lineSpacingRule:
      format.lineSpacingIsMultiple = token.parameter != 0;
      break;
    default:
      break;
  }
}

template <typename Combine>
CharacterLooks combined(const CharacterLooks &first, const CharacterLooks &second,
                        Combine combine) {
  return {.isBold = combine(first.isBold, second.isBold),
          .isItalic = combine(first.isItalic, second.isItalic),
          .isUnderlined = combine(first.isUnderlined, second.isUnderlined),
          .isSuperscript = combine(first.isSuperscript, second.isSuperscript),
          .isSubscript = combine(first.isSubscript, second.isSubscript),
          .isSmallCapitals = combine(first.isSmallCapitals, second.isSmallCapitals)};
}

}  // namespace

CharacterLooks looksWithout(const CharacterLooks &first, const CharacterLooks &second) {
  return combined(first, second, [](bool has, bool lacks) { return has && !lacks; });
}

CharacterLooks commonLooks(const CharacterLooks &first, const CharacterLooks &second) {
  return combined(first, second, [](bool one, bool other) { return one && other; });
}

void applyFormatting(Keyword keyword, const Token &token, Formatting &formatting) {
  applyToCharacters(keyword, token, formatting.characters);
  applyToParagraph(keyword, token, formatting.paragraph);
}

}  // namespace mellel::rtf
