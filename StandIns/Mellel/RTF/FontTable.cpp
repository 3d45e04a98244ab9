#include "FontTable.h"

namespace mellel::rtf {

void FontTable::takeHeaderWord(const KeywordMeaning &meaning, const Token &token) {
  lastCodePage_ = nullptr;
  switch (meaning.keyword) {
    case Keyword::codePageOfHeader:
      documentCodePage_ = static_cast<int>(meaning.value);
      break;
    case Keyword::ansiCodePage:
      documentCodePage_ = token.parameter;
      break;
    case Keyword::defaultFont:
      defaultFont_ = token.parameter;
      break;
    default:
      break;
  }
}

void FontTable::takeFontTableWord(Keyword keyword, const Token &token) {
  lastCodePage_ = nullptr;
  switch (keyword) {
    case Keyword::font:
      definedFont_ = token.parameter;
      break;
    case Keyword::fontCharacterSet:
      numberOfFont_[definedFont_] = codePageOfCharacterSet(token.parameter);
      break;
    case Keyword::fontCodePage:
      numberOfFont_[definedFont_] = token.parameter;
      break;
    default:
      break;
  }
}

const CodePage &FontTable::codePageOfFont(std::int32_t font) {
  if (lastCodePage_ == nullptr || lastFont_ != font) {
    const auto found = numberOfFont_.find(font < 0 ? defaultFont_ : font);
    const bool isTold = found != numberOfFont_.end() && found->second != 0;
    lastCodePage_ = &codePages_.codePage(isTold ? found->second : documentCodePage_);
    lastFont_ = font;
  }
  return *lastCodePage_;
}

}  // namespace mellel::rtf
