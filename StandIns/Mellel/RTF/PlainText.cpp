#include "PlainText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace mellel::rtf {

namespace {

using namespace std::string_view_literals;

constexpr std::array<std::pair<std::string_view, std::string_view>, 10> replacements = {
    {{"\xC2\xA0"sv, " "sv},       // no-break space
     {"\xE2\x80\xAF"sv, " "sv},   // narrow no-break space
     {"\xE2\x80\xA8"sv, " "sv},   // line separator
     {"\xE2\x80\xA9"sv, " "sv},   // paragraph separator
     {"\xE2\x80\x91"sv, "-"sv},   // no-break hyphen
     {"\xC2\xAD"sv, ""sv},        // optional hyphen
     {"\xE2\x80\x8B"sv, ""sv},    // zero-width space
     {"\xE2\x80\x8E"sv, ""sv},    // left-to-right mark
     {"\xE2\x80\x8F"sv, ""sv},    // right-to-left mark
     {"\xE2\x81\xA0"sv, ""sv}}};  // word joiner

bool isPrintableASCII(char byte) { return byte >= 0x20 && byte <= 0x7E; }

bool isControlCharacter(char byte) {
  return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

bool separatesWords(char byte) { return byte >= '\t' && byte <= '\r'; }

char lowerCase(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

}  // namespace

void appendPlainText(std::string &plain, std::string_view text) {
  while (!text.empty()) {
    const auto end = std::find_if_not(text.begin(), text.end(), isPrintableASCII);
    const auto length = static_cast<std::size_t>(end - text.begin());
    plain += text.substr(0, length);
    text.remove_prefix(length);
    if (text.empty()) {
      return;
    }
    if (isControlCharacter(text.front())) {
      plain.append(separatesWords(text.front()) ? 1 : 0, ' ');
      text.remove_prefix(1);
      continue;
    }
    const auto *const replaced =
        std::find_if(replacements.begin(), replacements.end(),
                     [&](const auto &entry) { return text.starts_with(entry.first); });
    if (replaced != replacements.end()) {
      plain += replaced->second;
      text.remove_prefix(replaced->first.size());
    } else {
      plain += text.front();
      text.remove_prefix(1);
    }
  }
}

bool isBlankText(std::string_view text) {
  if (std::all_of(text.begin(), text.end(), [](char byte) { return byte == ' '; })) {
    return true;
  }
  std::string plain;
  appendPlainText(plain, text);
  return plain.find_first_not_of(' ') == std::string::npos;
}

bool isBibliographyWord(std::string_view text) {
  constexpr std::string_view word = "bibliography";
  const std::size_t first = text.find_first_not_of(' ');
  const std::size_t last = text.find_last_not_of(' ');
  if (first == std::string_view::npos) {
    return false;
  }
  text = text.substr(first, last - first + 1);
  return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                    [](char left, char right) { return lowerCase(left) == right; });
}

}  // namespace mellel::rtf
