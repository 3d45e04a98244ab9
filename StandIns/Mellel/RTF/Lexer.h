// Cuts RTF into tokens.
//
// RTF is a stream of bytes with four kinds of marks: groups in braces, control words
// (backslash, letters, an optional number, an optional blank), control symbols (backslash and
// one other byte) and text. The lexer knows nothing of what they mean. Its tokens follow
// one another without gap or overlap, so that what is not understood can be kept byte
// for byte: the tokens put together are the input, whatever the input is.
//
// Linear time, no memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace mellel::rtf {

enum class TokenKind : std::uint8_t {
  groupBegin,
  groupEnd,
  controlWord,    // \par, \fs24 ; \bin has a kind of its own
  controlSymbol,  // \~, \*, and \' where no two hexadecimal digits follow
  hexByte,        // \'e9
  binary,         // \bin with its data
  text,           // bytes that are none of the others; line breaks of the source end it
  sourceBreak,    // CR and LF between the pieces: layout of the source, not text
  unfinished,     // the input ends within this token
  end             // empty, at the end of the input, as often as it is asked for
};

struct Token {
  TokenKind kind = TokenKind::end;
  bool hasParameter = false;
  // Whether a blank that belongs to the control word ends it. Without one the next byte ends
  // it, and must not become a letter, a digit or a blank.
  bool isDelimited = false;
  // The byte of a control symbol or of a hexByte.
  std::uint8_t byte = 0;
  // Clamped to 32 bits.
  std::int32_t parameter = 0;
  // Byte offsets in the input.
  std::size_t begin = 0;
  std::size_t end = 0;
  // The letters of a control word, as written (RTF's words are case-sensitive).
  std::string_view word;
};

class Lexer {
 public:
  // Borrows the bytes; they must outlive the lexer and its tokens.
  explicit Lexer(std::string_view bytes, std::size_t position = 0)
      : bytes_(bytes), position_(position) {}

  Token next();

 private:
  Token control(Token token);
  Token controlWord(Token token);
  Token hexByte(Token token);
  Token finish(Token token, TokenKind kind, std::size_t end);

  std::string_view bytes_;
  std::size_t position_;
};

}  // namespace mellel::rtf
