#include "StyleName.h"

#include <algorithm>
#include <string>
#include <vector>

namespace mellel::commands {

namespace {

using Words = std::vector<std::string>;

// Letters of other alphabets count as letters, in the case that they are written in.
Words wordsIn(std::string_view text) {
  Words words(1);
  for (char byte : text) {
    if (byte >= 'A' && byte <= 'Z') {
      byte = static_cast<char>(byte - 'A' + 'a');
    }
    const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
                          static_cast<unsigned char>(byte) >= 0x80;
    if (isLetter) {
      words.back() += byte;
    } else if (!words.back().empty()) {
      words.emplace_back();
    }
  }
  if (words.back().empty()) {
    words.pop_back();
  }
  return words;
}

std::string initialsOf(const Words &words, bool countsSmallWords) {
  constexpr std::string_view smallWords[] = {"of", "the", "and", "for", "in", "de"};
  std::string initials;
  for (const std::string &word : words) {
    if (countsSmallWords || std::ranges::find(smallWords, word) == std::end(smallWords)) {
      initials += word.front();
    }
  }
  return initials;
}

bool isAmong(const std::string &word, const Words &words) {
  constexpr std::size_t leastStem = 4;
  return std::ranges::any_of(words, [&](const std::string &other) {
    return other.starts_with(word) || (other.size() >= leastStem && word.starts_with(other));
  });
}

}  // namespace

bool mayBeNamed(std::string_view asked, std::string_view title) {
  const Words wanted = wordsIn(asked);
  const Words present = wordsIn(title);
  const std::string initials = initialsOf(present, true);
  const std::string greatInitials = initialsOf(present, false);
  const auto known = std::ranges::count_if(wanted, [&](const std::string &word) {
    return isAmong(word, present) ||
           (word.size() > 1 && (initials.find(word) != std::string::npos ||
                                greatInitials.find(word) != std::string::npos));
  });
  return asked == title ||
         (!wanted.empty() && static_cast<std::size_t>(2 * known) >= wanted.size());
}

}  // namespace mellel::commands
