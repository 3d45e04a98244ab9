// Byte encodings of RTF text.
//
// RTF is ASCII; every other character of its text is either \uN, or bytes in a code page that
// the document's header (\ansicpg) or the font in force (\fcharset, \cpg) names. In the East
// Asian code pages two bytes make one character, and the second byte may be any ASCII
// character, a brace or a backslash among them: who looks for braces in the bytes must know
// the code page.
//
// UTF-8 and windows-1252 are those of Formats; the others come from iconv, one call a byte when the
// code page is first used, one a character for the double-byte ones.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace mellel::rtf {

class CodePage {
 public:
  virtual ~CodePage() = default;
  // How many bytes make the character that this byte begins: 1 to 4. An ASCII byte is always
  // a character of its own.
  virtual std::size_t sequenceLength(std::uint8_t first) const = 0;
  // The character, U+FFFD for a sequence that is none.
  virtual char32_t decode(std::string_view sequence) const = 0;
};

// Makes each code page once and keeps it.
class CodePages {
 public:
  // A Windows code page number as in \ansicpg. An unknown one reads as windows-1252, as word
  // processors do. The reference lives as long as this object.
  const CodePage &codePage(int number);

 private:
  std::map<int, std::unique_ptr<CodePage>> pages_;
};

// The code page of a font's \fcharset; 0 where the character set says no more than "the
// document's own".
int codePageOfCharacterSet(int characterSet);

}  // namespace mellel::rtf
