#include "Documents.h"

#include <array>
#include <cctype>
#include <cstdint>

namespace endtoend {

namespace {

void appendUTF8(std::string &text, std::uint32_t codePoint) {
  const auto byte = [&text](std::uint32_t value) { text += static_cast<char>(value); };
  if (codePoint < 0x80) {
    byte(codePoint);
  } else if (codePoint < 0x800) {
    byte(0xC0 | codePoint >> 6);
    byte(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    byte(0xE0 | codePoint >> 12);
    byte(0x80 | (codePoint >> 6 & 0x3F));
    byte(0x80 | (codePoint & 0x3F));
  } else {
    byte(0xF0 | codePoint >> 18);
    byte(0x80 | (codePoint >> 12 & 0x3F));
    byte(0x80 | (codePoint >> 6 & 0x3F));
    byte(0x80 | (codePoint & 0x3F));
  }
}

// Bytes 80 to 9F of code page 1252; the rest of it is Latin-1.
constexpr std::array<std::uint16_t, 32> windows1252 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

class TextReader {
 public:
  explicit TextReader(std::string_view rtf) : rtf_(rtf) {}

  std::string read() {
    while (position_ < rtf_.size()) {
      const char character = rtf_[position_++];
      if (character == '{') {
        groups_.push_back(groups_.back());
      } else if (character == '}') {
        leaveGroup();
      } else if (character == '\\') {
        readControl();
      } else if (character != '\r' && character != '\n') {
        add(static_cast<unsigned char>(character));
      }
    }
    return std::move(text_);
  }

 private:
  struct Group {
    bool hidden = false;
    int fallbackLength = 1;
  };

  // A piece of a document may close more groups than it opens.
  void leaveGroup() {
    if (groups_.size() > 1) {
      groups_.pop_back();
    }
    toSkip_ = 0;
  }

  void add(std::uint32_t codePoint) {
    if (toSkip_ > 0) {
      --toSkip_;
    } else if (!groups_.back().hidden) {
      appendUTF8(text_, codePoint);
    }
  }

  void readControl() {
    if (position_ >= rtf_.size()) {
      return;
    }
    if (std::isalpha(static_cast<unsigned char>(rtf_[position_])) != 0) {
      readWord();
    } else {
      readSymbol(rtf_[position_++]);
    }
  }

  void readSymbol(char symbol) {
    if (symbol == '\'') {
      const std::uint32_t byte = static_cast<std::uint32_t>(
          std::stoi(std::string(rtf_.substr(position_, 2)), nullptr, 16));
      position_ += 2;
      add(byte >= 0x80 && byte < 0xA0 ? windows1252[byte - 0x80] : byte);
    } else if (symbol == '*') {
      groups_.back().hidden = true;
    } else if (symbol == '\n' || symbol == '\r') {
      add('\n');
    } else if (symbol == '~') {
      add(0xA0);
    } else if (symbol == '_') {
      add(0x2011);
    } else if (symbol != '-') {
      add(static_cast<unsigned char>(symbol));
    }
  }

  void readWord() {
    const std::size_t begin = position_;
    while (position_ < rtf_.size() &&
           std::isalpha(static_cast<unsigned char>(rtf_[position_])) != 0) {
      ++position_;
    }
    const std::string_view word = rtf_.substr(begin, position_ - begin);
    const std::size_t digits = position_;
    while (position_ < rtf_.size() &&
           (std::isdigit(static_cast<unsigned char>(rtf_[position_])) != 0 ||
            (rtf_[position_] == '-' && position_ == digits))) {
      ++position_;
    }
    const std::string parameter(rtf_.substr(digits, position_ - digits));
    if (position_ < rtf_.size() && rtf_[position_] == ' ') {
      ++position_;
    }
    obey(word, parameter.empty() || parameter == "-" ? 0 : std::stoi(parameter));
  }

  void obey(std::string_view word, int parameter) {
    if (word == "u") {
      readUnicode(static_cast<std::uint32_t>(parameter & 0xFFFF));
    } else if (word == "uc") {
      groups_.back().fallbackLength = parameter;
    } else if (word == "par" || word == "line" || word == "row" || word == "sect" ||
               word == "page") {
      add('\n');
    } else if (word == "cell" || word == "tab") {
      add('\t');
    } else if (word == "fonttbl" || word == "colortbl" || word == "stylesheet" || word == "info" ||
               word == "pict" || word == "listtext") {
      groups_.back().hidden = true;
    }
  }

  void readUnicode(std::uint32_t unit) {
    toSkip_ = 0;
    if (unit >= 0xD800 && unit < 0xDC00) {
      highSurrogate_ = unit;
    } else if (unit >= 0xDC00 && unit < 0xE000) {
      add(0x10000 + ((highSurrogate_ - 0xD800) << 10) + (unit - 0xDC00));
    } else {
      add(unit);
    }
    toSkip_ = groups_.back().fallbackLength;
  }

  std::string_view rtf_;
  std::size_t position_ = 0;
  std::vector<Group> groups_ = std::vector<Group>(1);
  int toSkip_ = 0;
  std::uint32_t highSurrogate_ = 0xD800;
  std::string text_;
};

}  // namespace

std::string textOf(std::string_view rtf) { return TextReader(rtf).read(); }

Cut cutAtBraces(const std::string &rtf) {
  Cut cut;
  std::size_t literalBegin = 0;
  // In what comes before the first paragraph, braces belong to the names of list markers.
  std::size_t position = rtf.find("\\pard");
  while ((position = rtf.find("\\{", position)) != std::string::npos) {
    const std::size_t end = rtf.find("\\}", position);
    if (end == std::string::npos) {
      break;
    }
    cut.literals.push_back(rtf.substr(literalBegin, position - literalBegin));
    cut.spans.push_back(rtf.substr(position, end + 2 - position));
    position = literalBegin = end + 2;
  }
  cut.literals.push_back(rtf.substr(literalBegin));
  return cut;
}

std::optional<std::vector<std::string>> whatReplaced(const Cut &original, const std::string &copy) {
  if (!copy.starts_with(original.literals.front()) || !copy.ends_with(original.literals.back())) {
    return std::nullopt;
  }
  std::vector<std::string> replacements;
  std::size_t position = original.literals.front().size();
  for (std::size_t index = 0; index < original.spans.size(); ++index) {
    const std::string &next = original.literals[index + 1];
    const bool last = index + 1 == original.spans.size();
    const std::size_t found = last ? copy.size() - next.size() : copy.find(next, position);
    if (found == std::string::npos || found < position) {
      return std::nullopt;
    }
    replacements.push_back(copy.substr(position, found - position));
    position = found + next.size();
  }
  return replacements;
}

}  // namespace endtoend
