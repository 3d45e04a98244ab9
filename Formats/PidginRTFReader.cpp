// Two scans, each in bulk: text runs up to a line feed, a brace or a backslash; a control word
// runs up to a blank, a tab or a right brace, whatever lies between. So one "word" may be
// several ("{\b\rquote"), and an escape without a blank takes the following letters with it
// ("\'27s"): that is how the texts that come here have always been read.

#include "PidginRTFReader.h"

#include <algorithm>
#include <utility>

#include "BlockScan.h"

namespace formats {

namespace {

constexpr auto endsText = [](char16_t unit) {
  return (unit == u'\n') | (unit == u'{') | (unit == u'}') | (unit == u'\\');
};

constexpr auto endsControlWord = [](char16_t unit) {
  return (unit == u' ') | (unit == u'\t') | (unit == u'}');
};

// One pass over the input.
class Extractor {
 public:
  Extractor(std::u16string_view rtf, const UnknownControlCharacterHandler &onUnknown)
      : rtf_(rtf), onUnknown_(onUnknown) {
    text_.reserve(rtf.size());
  }

  std::u16string extract() {
    while (position_ < rtf_.size()) {
      const std::size_t end = findFirst(rtf_, position_, endsText);
      text_.append(rtf_, position_, end - position_);
      position_ = end;
      if (position_ < rtf_.size()) {
        readControl();
      }
    }
    return std::move(text_);
  }

 private:
  void readControl() {
    const std::u16string_view rest = rtf_.substr(position_);
    switch (rest.front()) {
      case u'\\':
        readBackslash(rest);
        break;
      case u'{':
        if (rest.starts_with(u"{\\")) {
          skipControlWord();
        } else {
          position_ += 1;
        }
        break;
      case u'}':
      case u'\n':
        position_ += 1;
        break;
      default:
        // Out of reach as long as endsText names no other characters than the cases above.
        if (onUnknown_) {
          onUnknown_(rest);
        }
        position_ += 1;
    }
  }

  void readBackslash(std::u16string_view rest) {
    if (rest.starts_with(u"\\\\")) {
      text_.push_back(u'\\');
      position_ += 2;
    } else if (rest.starts_with(u"\\rquote")) {
      text_.push_back(u'\'');
      position_ += 7;
    } else if (rest.starts_with(u"\\uc")) {
      position_ += 4;  // with the digit of "\uc0"
    } else {
      skipControlWord();
    }
  }

  // Skips the control words up to the next end of one, and that end. An apostrophe among
  // them is kept.
  void skipControlWord() {
    const std::size_t end = findFirst(rtf_, position_, endsControlWord);
    std::u16string_view words = rtf_.substr(position_, end - position_);
    while (!words.empty()) {
      const std::size_t length = std::min(words.find(u'\\'), words.size());
      if (words.substr(0, length) == u"rquote") {
        text_.push_back(u'\'');
      }
      words.remove_prefix(std::min(length + 1, words.size()));
    }
    position_ = end + 1;
  }

  std::u16string_view rtf_;
  const UnknownControlCharacterHandler &onUnknown_;
  std::size_t position_ = 0;  // may come to lie past the end
  std::u16string text_;
};

}  // namespace

std::u16string textOfPidginRTF(std::u16string_view rtf,
                               const UnknownControlCharacterHandler &onUnknown) {
  return Extractor(rtf, onUnknown).extract();
}

}  // namespace formats
