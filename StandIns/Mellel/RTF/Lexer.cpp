#include "Lexer.h"

#include <algorithm>
#include <array>
#include <limits>

namespace mellel::rtf {

namespace {

bool isLetter(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }

bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

bool isSourceBreak(char byte) { return byte == '\r' || byte == '\n'; }

constexpr std::array<bool, 256> textEndingBytes = [] {
  std::array<bool, 256> ends{};
  for (const char byte : {'\\', '{', '}', '\r', '\n'}) {
    ends[static_cast<unsigned char>(byte)] = true;
  }
  return ends;
}();

int hexadecimalDigit(char byte) {
  if (isDigit(byte)) {
    return byte - '0';
  }
  if (byte >= 'a' && byte <= 'f') {
    return byte - 'a' + 10;
  }
  if (byte >= 'A' && byte <= 'F') {
    return byte - 'A' + 10;
  }
  return -1;
}

}  // namespace

Token Lexer::finish(Token token, TokenKind kind, std::size_t end) {
  token.kind = kind;
  token.end = end;
  position_ = end;
  return token;
}

Token Lexer::next() {
  Token token;
  token.begin = token.end = position_;
  if (position_ >= bytes_.size()) {
    return token;
  }
  const char first = bytes_[position_];
  if (first == '{') {
    return finish(token, TokenKind::groupBegin, position_ + 1);
  }
  if (first == '}') {
    return finish(token, TokenKind::groupEnd, position_ + 1);
  }
  if (first == '\\') {
    return control(token);
  }
  std::size_t end = position_ + 1;
  if (isSourceBreak(first)) {
    while (end < bytes_.size() && isSourceBreak(bytes_[end])) {
      ++end;
    }
    return finish(token, TokenKind::sourceBreak, end);
  }
  while (end < bytes_.size() && !textEndingBytes[static_cast<unsigned char>(bytes_[end])]) {
    ++end;
  }
  return finish(token, TokenKind::text, end);
}

Token Lexer::control(Token token) {
  const std::size_t second = token.begin + 1;
  if (second >= bytes_.size()) {
    return finish(token, TokenKind::unfinished, bytes_.size());
  }
  if (isLetter(bytes_[second])) {
    return controlWord(token);
  }
  if (bytes_[second] == '\'') {
    return hexByte(token);
  }
  token.byte = static_cast<std::uint8_t>(bytes_[second]);
  return finish(token, TokenKind::controlSymbol, second + 1);
}

Token Lexer::controlWord(Token token) {
  std::size_t end = token.begin + 1;
  while (end < bytes_.size() && isLetter(bytes_[end])) {
    ++end;
  }
  token.word = bytes_.substr(token.begin + 1, end - token.begin - 1);
  const bool isNegative = end + 1 < bytes_.size() && bytes_[end] == '-' && isDigit(bytes_[end + 1]);
  if (isNegative) {
    ++end;
  }
  std::int64_t parameter = 0;
  for (; end < bytes_.size() && isDigit(bytes_[end]); ++end) {
    token.hasParameter = true;
    parameter = std::min<std::int64_t>(parameter * 10 + (bytes_[end] - '0'),
                                       std::numeric_limits<std::int32_t>::max());
  }
  token.parameter = static_cast<std::int32_t>(isNegative ? -parameter : parameter);
  token.isDelimited = end < bytes_.size() && bytes_[end] == ' ';
  if (token.isDelimited) {
    ++end;
  }
  if (token.word == "bin") {
    const auto length = static_cast<std::size_t>(std::max(token.parameter, 0));
    if (length > bytes_.size() - end) {
      return finish(token, TokenKind::unfinished, bytes_.size());
    }
    return finish(token, TokenKind::binary, end + length);
  }
  return finish(token, TokenKind::controlWord, end);
}

Token Lexer::hexByte(Token token) {
  const std::size_t digits = token.begin + 2;
  if (digits + 2 > bytes_.size()) {
    return finish(token, TokenKind::unfinished, bytes_.size());
  }
  const int high = hexadecimalDigit(bytes_[digits]);
  const int low = hexadecimalDigit(bytes_[digits + 1]);
  if (high < 0 || low < 0) {
    token.byte = '\'';
    return finish(token, TokenKind::controlSymbol, digits);
  }
  token.byte = static_cast<std::uint8_t>(high * 16 + low);
  return finish(token, TokenKind::hexByte, digits + 2);
}

}  // namespace mellel::rtf
