// Which code page the bytes of a document's text are in: that of the font in force, as the
// font table tells it, else the one that the header names.
#pragma once

#include "CodePage.h"
#include "Keywords.h"
#include "Lexer.h"

#include <cstdint>
#include <unordered_map>

namespace mellel::rtf {

class FontTable {
 public:
  // A control word of the header.
  void takeHeaderWord(const KeywordMeaning &meaning, const Token &token);
  // A control word inside the font table.
  void takeFontTableWord(Keyword keyword, const Token &token);

  // The code page of a font; -1 is the document's default font.
  const CodePage &codePageOfFont(std::int32_t font);

 private:
  CodePages codePages_;
  int documentCodePage_ = 1252;
  std::int32_t defaultFont_ = 0;
  std::int32_t definedFont_ = 0;
  std::unordered_map<std::int32_t, int> numberOfFont_;
  // The last answer: text asks again and again for one font.
  const CodePage *lastCodePage_ = nullptr;
  std::int32_t lastFont_ = 0;
};

}  // namespace mellel::rtf
