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
      format.isBold = switchesOn;
      break;
    case Keyword::italic:
      format.isItalic = switchesOn;
      break;
    case Keyword::underline:
      format.isUnderlined = switchesOn;
      break;
    case Keyword::noUnderline:
      format.isUnderlined = false;
      break;
    case Keyword::superscript:
      format.isSuperscript = switchesOn;
      format.isSubscript = false;
      break;
    case Keyword::subscript:
      format.isSubscript = switchesOn;
      format.isSuperscript = false;
      break;
    case Keyword::noSuperscriptOrSubscript:
      format.isSuperscript = format.isSubscript = false;
      break;
    case Keyword::smallCapitals:
      format.isSmallCapitals = switchesOn;
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
    default:
      break;
  }
}

}  // namespace

void applyFormatting(Keyword keyword, const Token &token, Formatting &formatting) {
  applyToCharacters(keyword, token, formatting.characters);
  applyToParagraph(keyword, token, formatting.paragraph);
}

}  // namespace mellel::rtf
