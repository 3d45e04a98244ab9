#include "SlowRTF.h"

#include <Formats/Unicode.h>
#include <Tests/Support/ReferenceUnicode.h>

#include <array>
#include <cctype>
#include <cstdint>

namespace mellel_test {

namespace {

// Bytes 80 to 9F of code page 1252; the rest of it is Latin-1.
constexpr std::array<char32_t, 32> windows1252 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

bool isLetter(char byte) { return std::isalpha(static_cast<unsigned char>(byte)) != 0; }
bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }

struct Group {
  SlowFormat format;
  int leftIndent = 0;
  int firstLineIndent = 0;
  int fallbackLength = 1;
  bool isHidden = false;
};

struct Malformed {};

class Reader {
 public:
  explicit Reader(const std::string &rtf) : rtf_(rtf) {}

  SlowText read() {
    begin();
    while (!groups_.empty()) {
      readPiece();
    }
    for (; position_ < rtf_.size(); ++position_) {
      if (std::string(" \t\r\n\0\x1A", 6).find(rtf_[position_]) == std::string::npos) {
        throw Malformed();
      }
    }
    return text_;
  }

 private:
  char next() {
    if (position_ == rtf_.size()) {
      throw Malformed();
    }
    return rtf_[position_++];
  }
  // NUL at the end.
  char peek() const { return position_ < rtf_.size() ? rtf_[position_] : '\0'; }

  void begin() {
    while (peek() == '\r' || peek() == '\n') {
      ++position_;
    }
    if (next() != '{' || next() != '\\' || !isLetter(peek()) || readWord().first != "rtf") {
      throw Malformed();
    }
    groups_.emplace_back();
  }

  void readPiece() {
    const char byte = next();
    if (byte == '{') {
      endCharacter();
      groups_.push_back(groups_.back());
    } else if (byte == '}') {
      endCharacter();
      groups_.pop_back();
    } else if (byte == '\\') {
      readControl();
    } else if (byte != '\r' && byte != '\n') {
      addByte(byte);
    }
  }

  void readControl() {
    if (isLetter(peek())) {
      const auto [word, parameter] = readWord();
      obey(word, parameter);
      return;
    }
    const char symbol = next();
    if (symbol == '\'') {
      readByte();
    } else if (symbol == '\n' || symbol == '\r') {
      endParagraph();
    } else if (symbol == '\\' || symbol == '{' || symbol == '}' || symbol == '\t') {
      addCharacter(static_cast<unsigned char>(symbol));
    } else if (symbol == '~') {
      addCharacter(0xA0);
    } else if (symbol == '_') {
      addCharacter(0x2011);
    } else if (symbol == '-') {
      addCharacter(0xAD);
    } else if (symbol == '*') {
      groups_.back().isHidden = true;
    } else {
      highSurrogate_ = 0;
    }
  }

  void readByte() {
    if (rtf_.size() - position_ < 2) {
      throw Malformed();
    }
    const std::string digits = rtf_.substr(position_, 2);
    if (std::isxdigit(static_cast<unsigned char>(digits[0])) == 0 ||
        std::isxdigit(static_cast<unsigned char>(digits[1])) == 0) {
      return;
    }
    position_ += 2;
    addByte(static_cast<char>(std::stoi(digits, nullptr, 16)));
  }

  // A word without a number has none.
  std::pair<std::string, std::optional<int>> readWord() {
    std::string word;
    while (isLetter(peek())) {
      word += next();
    }
    std::string digits;
    if (peek() == '-' && position_ + 1 < rtf_.size() && isDigit(rtf_[position_ + 1])) {
      digits += next();
    }
    while (isDigit(peek())) {
      digits += next();
    }
    if (peek() == ' ') {
      ++position_;
    }
    if (digits.empty()) {
      return {word, std::nullopt};
    }
    return {word, std::stoi(digits)};
  }

  void obey(const std::string &word, std::optional<int> parameter) {
    Group &group = groups_.back();
    const bool isOn = parameter != 0;
    if (word == "u") {
      addUnit(parameter.value_or(0));
      return;
    }
    toSkip_ = 0;
    if (word != "uc") {
      highSurrogate_ = 0;
    }
    if (word == "uc") {
      group.fallbackLength = std::max(parameter.value_or(0), 0);
    } else if (word == "ansicpg") {
      isUTF8_ = parameter == 65001;
    } else if (word == "par") {
      endParagraph();
    } else if (word == "line") {
      addCharacter(0x2028);
    } else if (word == "tab") {
      addCharacter('\t');
    } else if (word == "fonttbl" || word == "tc") {
      group.isHidden = true;
    } else if (word == "b") {
      group.format.bold = isOn;
    } else if (word == "i") {
      group.format.italic = isOn;
    } else if (word == "ul") {
      group.format.underlined = isOn;
    } else if (word == "super") {
      group.format.superscript = isOn;
      group.format.subscript = false;
    } else if (word == "sub") {
      group.format.subscript = isOn;
      group.format.superscript = false;
    } else if (word == "nosupersub") {
      group.format.superscript = group.format.subscript = false;
    } else if (word == "ulnone") {
      group.format.underlined = false;
    } else if (word == "plain") {
      group.format = {};
    } else if (word == "pard") {
      group.leftIndent = group.firstLineIndent = 0;
    } else if (word == "li") {
      group.leftIndent = parameter.value_or(0);
    } else if (word == "fi") {
      group.firstLineIndent = parameter.value_or(0);
    }
  }

  void addUnit(int number) {
    const auto unit = static_cast<char32_t>(number < 0 ? number + 0x10000 : number);
    toSkip_ = 0;
    if (unit >= 0xD800 && unit < 0xDC00) {
      highSurrogate_ = unit;
    } else if (highSurrogate_ != 0 && unit >= 0xDC00 && unit < 0xE000) {
      addCharacter(0x10000 + ((highSurrogate_ - 0xD800) << 10) + (unit - 0xDC00));
    } else if (unit != 0) {
      const bool isNone = unit > 0x10FFFF || (unit >= 0xD800 && unit < 0xE000);
      addCharacter(isNone ? 0xFFFD : unit);
    }
    toSkip_ = groups_.back().fallbackLength;
  }

  // Bytes of several make a character only where it is well-formed.
  void addByte(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    if (toSkip_ > 0) {
      --toSkip_;
    } else if (!isUTF8_ || value < 0x80) {
      const bool isText = (value >= 0x20 && value != 0x7F) || value == '\t';
      if (isText) {
        addCharacter(value >= 0x80 && value < 0xA0 ? windows1252[value - 0x80] : value);
      }
    } else {
      std::string sequence(1, byte);
      while ((static_cast<unsigned char>(peek()) & 0xC0) == 0x80) {
        sequence += next();
      }
      for (const char16_t unit : reference::decodeUTF8(sequence)) {
        addUnit(static_cast<std::int16_t>(unit));
        toSkip_ = 0;
      }
    }
  }

  void addCharacter(char32_t character) {
    highSurrogate_ = 0;
    if (toSkip_ > 0) {
      --toSkip_;
    } else if (!groups_.back().isHidden) {
      const Group &group = groups_.back();
      text_.push_back({character, group.format, group.leftIndent, group.firstLineIndent});
    }
  }

  void endParagraph() {
    endCharacter();
    addCharacter(paragraphEnd);
  }

  void endCharacter() {
    toSkip_ = 0;
    highSurrogate_ = 0;
  }

  const std::string &rtf_;
  std::size_t position_ = 0;
  bool isUTF8_ = false;
  std::vector<Group> groups_;
  int toSkip_ = 0;
  char32_t highSurrogate_ = 0;
  SlowText text_;
};

}  // namespace

std::optional<SlowText> slowText(const std::string &rtf) {
  try {
    return Reader(rtf).read();
  } catch (const Malformed &) {
    return std::nullopt;
  }
}

std::string plainText(const SlowText &text) {
  std::u16string units;
  for (const SlowCharacter &character : text) {
    reference::appendUTF16(units, character.character == paragraphEnd ? U'¶' : character.character);
  }
  return formats::encodeUTF8(units);
}

void PrintTo(const SlowText &text, std::ostream *stream) { *stream << plainText(text); }

}  // namespace mellel_test
