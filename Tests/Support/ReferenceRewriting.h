// What finding and replacing citations comes to, told by the characters that a document shows.
#pragma once

#include "ReadDocument.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace test_support {

// Blanks, what only guides the layout, and control characters.
inline bool isBlankCharacter(const std::string &text) {
  static const std::set<std::string> blanks = {"\x7F",   "\u00A0", "\u00AD", "\u200B", "\u200E",
                                               "\u200F", "\u2028", "\u2029", "\u202F", "\u2060"};
  return (text.size() == 1 && text[0] >= '\0' && text[0] <= ' ') || blanks.contains(text);
}

// The rules of citations once more, as plainly as they can be written: positions of the
// opening and the closing brace among the characters.
inline std::vector<std::pair<std::size_t, std::size_t>> citationsAmong(
    const std::vector<Character> &characters) {
  std::vector<std::pair<std::size_t, std::size_t>> citations;
  for (std::size_t begin = 0; begin < characters.size(); ++begin) {
    if (characters[begin].text != "{") {
      continue;
    }
    bool isBlank = true;
    for (std::size_t end = begin + 1; end < characters.size(); ++end) {
      const Character &character = characters[end];
      if (character.story != characters[begin].story) {
        continue;
      }
      if (character.endsParagraph || character.text == "{") {
        break;
      }
      if (character.text == "}") {
        if (!isBlank) {
          citations.emplace_back(begin, end);
        }
        break;
      }
      isBlank = isBlank && isBlankCharacter(character.text);
    }
  }
  return citations;
}

// The formatting of the opening brace, as far as all characters of the citation have it.
inline Character lookOfCitation(const std::vector<Character> &characters, std::size_t begin,
                                std::size_t end) {
  Character look = characters[begin];
  for (std::size_t index = begin; index <= end; ++index) {
    if (characters[index].story == look.story) {
      look.isBold = look.isBold && characters[index].isBold;
      look.isItalic = look.isItalic && characters[index].isItalic;
    }
  }
  return look;
}

// Each citation is one character, with these looks.
inline std::vector<Character> withCitationsReplaced(const std::vector<Character> &characters,
                                                    const std::string &replacementText) {
  std::map<std::size_t, std::size_t> endOfCitation;
  for (const auto &[begin, end] : citationsAmong(characters)) {
    endOfCitation[begin] = end;
  }
  std::vector<Character> result;
  std::map<std::size_t, std::size_t> skipUntil;  // by story
  for (std::size_t index = 0; index < characters.size(); ++index) {
    const Character &character = characters[index];
    const auto skipped = skipUntil.find(character.story);
    if (skipped != skipUntil.end() && index <= skipped->second) {
      continue;
    }
    if (endOfCitation.contains(index)) {
      Character replacement = lookOfCitation(characters, index, endOfCitation[index]);
      replacement.text = replacementText;
      result.push_back(replacement);
      skipUntil[character.story] = endOfCitation[index];
      continue;
    }
    result.push_back(character);
  }
  return result;
}

}  // namespace test_support
