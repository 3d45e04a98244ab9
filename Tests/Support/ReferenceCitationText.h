// The citation syntax as a list of steps on one text that grows shorter, by indices and
// copies, in the order in which the rules are told.
#pragma once

#include <optional>
#include <string>

namespace reference {

struct CitationText {
  std::optional<std::u16string> pageRange;
  std::optional<std::u16string> tag;
  std::optional<std::u16string> prependText;
  std::optional<std::u16string> appendText;
  std::u16string searchText;
  bool excludeFromBody = false;
  bool excludeFromBibliography = false;
  bool useYearOnly = false;
  bool suppressSuperscript = false;
  bool stripEnclosure = false;
};

inline bool isWhitespace(char16_t unit) {
  return std::u16string(
             u"\t\u0020\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007"
             u"\u2008\u2009\u200A\u202F\u205F\u3000")
             .find(unit) != std::u16string::npos;
}

inline std::u16string trimmed(const std::u16string &text) {
  std::size_t start = 0;
  std::size_t end = text.size();
  while (start < end && isWhitespace(text[start])) {
    ++start;
  }
  while (end > start && isWhitespace(text[end - 1])) {
    --end;
  }
  return text.substr(start, end - start);
}

// The index of the first such character at or after `from`, or -1.
inline int indexOf(char16_t character, const std::u16string &text, int from = 0) {
  for (int index = from; index < static_cast<int>(text.size()); ++index) {
    if (text[static_cast<std::size_t>(index)] == character) {
      return index;
    }
  }
  return -1;
}

// The characters from `start` up to but not including `end`.
inline std::u16string between(const std::u16string &text, int start, int end) {
  std::u16string part;
  for (int index = start; index < end; ++index) {
    part += text[static_cast<std::size_t>(index)];
  }
  return part;
}

inline CitationText parseCitationText(std::u16string text) {
  CitationText result;
  const auto length = [&] { return static_cast<int>(text.size()); };

  const int at = indexOf(u'@', text);
  if (at >= 0 && length() - at - 1 >= 1) {
    result.pageRange = between(text, at + 1, length());
    text = between(text, 0, at);
  }

  const int hash = indexOf(u'#', text);
  if (hash >= 0 && length() - hash - 1 >= 1) {
    result.tag = trimmed(between(text, hash + 1, length()));
    text = between(text, 0, hash);
  }

  if (length() > 0 && text[0] == u'!') {
    result.excludeFromBody = true;
    text = between(text, 1, length());
  }
  if (length() > 0 && text[0] == u'^') {
    result.excludeFromBibliography = true;
    text = between(text, 1, length());
  }
  if (length() > 0 && text[0] == u'%') {
    result.useYearOnly = true;
    text = between(text, 1, length());
  }
  if (length() > 0 && text[0] == u'_') {
    result.suppressSuperscript = true;
    text = between(text, 1, length());
  }
  if (length() > 0 && text[0] == u'*') {
    result.stripEnclosure = true;
    text = between(text, 1, length());
  }

  if (length() > 0 && text[0] == u'\\') {
    const int second = indexOf(u'\\', text, 1);
    const int charactersBetween = second - 1;
    if (second >= 0 && charactersBetween >= 1 && charactersBetween < length() - 3) {
      result.prependText = between(text, 1, second);
      text = between(text, second + 1, length());
    }
  }

  const int first = indexOf(u'\\', text);
  if (first >= 0 && length() - first - 1 >= 1) {
    const int further = indexOf(u'\\', text, first + 1);
    if (further >= 0 && further - first - 1 >= 1) {
      result.appendText = between(text, first + 1, further);
    } else {
      result.appendText = between(text, first + 1, length());
    }
    text = between(text, 0, first);
  }

  result.searchText = trimmed(text);
  return result;
}

}  // namespace reference
