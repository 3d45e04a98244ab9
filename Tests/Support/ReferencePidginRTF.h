// Pidgin RTF as a list of rules: one character after the other, five attributes by name, no
// bits and no blocks.
#pragma once

#include <Formats/PidginRTFWriter.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace reference {

inline std::u16string widened(const std::string &text) { return {text.begin(), text.end()}; }

inline std::u16string escaped(char16_t character, bool includingControlCodes) {
  char number[16];
  if (character >= 0x8000) {
    std::snprintf(number, sizeof number, "%d", character - 65536);
    return u"\\uc0\\u" + widened(number) + u" ";
  }
  if (character >= 0x80) {
    std::snprintf(number, sizeof number, "%d", character);
    return u"\\uc0\\u" + widened(number) + u" ";
  }
  if (includingControlCodes) {
    if (character == u'\'') {
      return u"\\'27";
    }
    if (character == u'{') {
      return u"\\'7b ";
    }
    if (character == u'}') {
      return u"\\'7d ";
    }
    if (character == u'\\') {
      return u"\\'5c ";
    }
    if (character == u'\n') {
      return u"\\\n";
    }
  }
  return std::u16string(1, character);
}

inline std::u16string pidginRTF(const std::u16string &text, bool escapingControlSequences) {
  std::u16string result;
  for (const char16_t character : text) {
    result += escaped(character, escapingControlSequences);
  }
  return result;
}

// One element of `attributes` for each code unit of the text.
inline std::u16string pidginRTF(const std::u16string &text,
                                const std::vector<formats::PidginAttributes> &attributes) {
  std::u16string result;
  formats::PidginAttributes previous;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const formats::PidginAttributes current = attributes[index];
    const bool boldChanged = previous.bold != current.bold;
    const bool italicChanged = previous.italic != current.italic;
    const bool underlineChanged = previous.underline != current.underline;
    const bool superscriptChanged = previous.superscript != current.superscript;

    if (previous.subscript && (!current.subscript || superscriptChanged || boldChanged ||
                               italicChanged || underlineChanged)) {
      result += u"}";
    }
    if (previous.superscript &&
        (!current.superscript || boldChanged || italicChanged || underlineChanged)) {
      result += u"}";
    }
    if (previous.bold && (!current.bold || italicChanged || underlineChanged)) {
      result += u"}";
    }
    if (previous.italic && (!current.italic || underlineChanged)) {
      result += u"}";
    }
    if (previous.underline && !current.underline) {
      result += u"}";
    }

    if (current.underline && !previous.underline) {
      result += u"{\\ul ";
    }
    if (current.italic && (!previous.italic || underlineChanged)) {
      result += u"{\\i ";
    }
    if (current.bold && (!previous.bold || italicChanged || underlineChanged)) {
      result += u"{\\b ";
    }
    if (current.superscript &&
        (!previous.superscript || boldChanged || italicChanged || underlineChanged)) {
      result += u"{\\super ";
    }
    if (current.subscript && (!previous.subscript || superscriptChanged || boldChanged ||
                              italicChanged || underlineChanged)) {
      result += u"{\\sub ";
    }

    result += escaped(text[index], true);
    previous = current;
  }
  if (previous.subscript) {
    result += u"}";
  }
  if (previous.superscript) {
    result += u"}";
  }
  if (previous.bold) {
    result += u"}";
  }
  if (previous.italic) {
    result += u"}";
  }
  if (previous.underline) {
    result += u"}";
  }
  return result;
}

// A scanner over a text: the location, and reading up to the next of some characters.
struct Scanner {
  std::u16string_view text;
  std::size_t location = 0;

  bool isAtEnd() const { return location >= text.size(); }
  std::u16string_view scanUpTo(std::u16string_view stops) {
    const std::size_t start = location;
    while (!isAtEnd() && !stops.contains(text[location])) {
      ++location;
    }
    return text.substr(start, location - start);
  }
};

inline std::vector<std::u16string_view> splitAtBackslashes(std::u16string_view text) {
  std::vector<std::u16string_view> pieces;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(u'\\', start), text.size());
    pieces.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return pieces;
}

inline std::u16string textOfPidginRTF(std::u16string_view rtf) {
  std::u16string result;
  Scanner scanner{rtf};
  while (!scanner.isAtEnd()) {
    result += scanner.scanUpTo(u"\n{}\\");
    const std::size_t position = scanner.location;
    if (position >= rtf.size()) {
      continue;
    }
    const std::u16string_view rest = rtf.substr(position);
    bool controlWordIsPending = false;
    std::size_t advance = 1;
    if (rest.substr(0, 2) == u"\\\\") {
      result += u"\\";
      advance = 2;
    } else if (rest.substr(0, 7) == u"\\rquote") {
      result += u"'";
      advance = 7;
    } else if (rest.substr(0, 2) == u"{\\") {  // NOLINT(bugprone-branch-clone): one row a case
      controlWordIsPending = true;
    } else if (rest.substr(0, 3) == u"\\uc") {
      advance = 4;
    } else if (rest.substr(0, 1) == u"\\") {
      controlWordIsPending = true;
    }
    if (!controlWordIsPending) {
      scanner.location = position + advance;
      continue;
    }
    for (const std::u16string_view piece : splitAtBackslashes(scanner.scanUpTo(u" \t}"))) {
      if (piece == u"rquote") {
        result += u"'";
      }
    }
    if (!scanner.isAtEnd()) {
      scanner.location += 1;
    }
  }
  return result;
}

}  // namespace reference
