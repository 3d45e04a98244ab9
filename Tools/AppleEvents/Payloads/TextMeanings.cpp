#include "TextMeanings.h"

#include <Formats/CitationText.h>
#include <Formats/RecordMarkup.h>
#include <Formats/Unicode.h>

#include <charconv>
#include <cstddef>

namespace appleevents {

namespace {

using formats::CitationText;

void say(std::string &line, std::string_view what, std::u16string_view text) {
  line.append(", ").append(what).append(" \"").append(formats::encodeUTF8(text)).append("\"");
}

std::string meaningOfPart(std::u16string_view part) {
  const CitationText parsed = formats::parseCitationText(part);
  if (parsed.searchText.empty()) {
    return "no citation";
  }
  std::string line = "search text \"" + formats::encodeUTF8(parsed.searchText) + '"';
  if (parsed.tag) {
    say(line, "tag", *parsed.tag);
  }
  if (parsed.pageRange) {
    say(line, "pages", *parsed.pageRange);
  }
  if (parsed.prependText) {
    say(line, "before it", *parsed.prependText);
  }
  if (parsed.appendText) {
    say(line, "behind it", *parsed.appendText);
  }
  line += parsed.excludeFromBody ? ", not in the text" : "";
  line += parsed.excludeFromBibliography ? ", not in the bibliography" : "";
  line += parsed.useYearOnly ? ", the year only" : "";
  line += parsed.suppressSuperscript ? ", no superscript" : "";
  line += parsed.stripEnclosure ? ", without enclosure" : "";
  return line;
}

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

// Pidgin RTF, read one piece after the other.
class PidginReader {
 public:
  explicit PidginReader(std::string_view pidgin) : rest_(pidgin) {}

  std::string read() {
    while (!rest_.empty()) {
      if (rest_.front() == '\\') {
        readControl();
      } else if (rest_.front() == '{' || rest_.front() == '}') {
        flush();
        depth_ += rest_.front() == '{' ? 1 : -1;
        isUnbalanced_ = isUnbalanced_ || depth_ < 0;
        rest_.remove_prefix(1);
      } else {
        flush();
        text_ += rest_.front();
        rest_.remove_prefix(1);
      }
    }
    flush();
    return formats::encodeUTF8(formats::decodeUTF8(text_));
  }

  bool isUnbalanced() const { return isUnbalanced_ || depth_ != 0; }

 private:
  void readControl() {
    rest_.remove_prefix(1);
    if (rest_.starts_with('\'') && rest_.size() >= 3) {
      flush();
      unsigned character = 0;
      std::from_chars(rest_.data() + 1, rest_.data() + 3, character, 16);
      text_ += formats::encodeUTF8(std::u16string(1, static_cast<char16_t>(character)));
      rest_.remove_prefix(3);
      // The writer ends every such escape but the apostrophe's with a blank.
      rest_.remove_prefix(character != '\'' && rest_.starts_with(' ') ? 1 : 0);
      return;
    }
    std::size_t length = 0;
    while (length < rest_.size() && isLetter(rest_[length])) {
      ++length;
    }
    const std::string_view word = rest_.substr(0, length);
    if (word.empty()) {
      flush();
      text_ += rest_.substr(0, 1);
      rest_.remove_prefix(rest_.empty() ? 0 : 1);
      return;
    }
    const std::size_t sign = rest_.substr(length).starts_with('-') ? 1 : 0;
    std::size_t end = length + sign;
    while (end < rest_.size() && isDigit(rest_[end])) {
      ++end;
    }
    int number = 0;
    std::from_chars(rest_.data() + length, rest_.data() + end, number);
    rest_.remove_prefix(end);
    rest_.remove_prefix(rest_.starts_with(' ') ? 1 : 0);
    if (word == "u" && end > length) {
      units_ += static_cast<char16_t>(number);
    }
  }

  // Surrogates come one after the other: they are put together before they become UTF-8.
  void flush() {
    text_ += formats::encodeUTF8(units_);
    units_.clear();
  }

  std::string_view rest_;
  std::string text_;
  std::u16string units_;
  int depth_ = 0;
  bool isUnbalanced_ = false;
};

}  // namespace

std::string meaningOfCitation(std::string_view group) {
  const std::u16string text = formats::decodeUTF8(group);
  std::string meaning;
  for (const std::u16string_view part : formats::citationComponents(text)) {
    meaning += (meaning.empty() ? "" : "; ") + meaningOfPart(part);
  }
  return meaning;
}

std::string textOfPidgin(std::string_view pidgin) { return PidginReader(pidgin).read(); }

std::string faultOfPidgin(std::string_view pidgin) {
  if (!formats::isASCII(pidgin)) {
    return "is no pidgin RTF: it holds characters beyond ASCII";
  }
  PidginReader reader(pidgin);
  reader.read();
  return reader.isUnbalanced() ? "is no pidgin RTF: its braces do not match" : "";
}

}  // namespace appleevents
