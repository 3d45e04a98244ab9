// Two scans, each in bulk: text runs up to a line feed, a brace or a backslash; a control word
// runs up to a blank, a tab or a right brace, whatever lies between. So one "word" may be
// several ("{\b\rquote"), and an escape without a blank takes the following letters with it
// ("\'27s"): that is how the texts that come here have always been read.

#include "PidginRTFReader.h"

#include "BlockScan.h"

#include <algorithm>
#include <cstddef>

namespace formats {

namespace {

constexpr auto endsText = [](char16_t unit) {
  return (unit == u'\n') | (unit == u'{') | (unit == u'}') | (unit == u'\\');
};

constexpr auto endsControlWord = [](char16_t unit) {
  return (unit == u' ') | (unit == u'\t') | (unit == u'}');
};

// One pass over the input. The output has room for as many units as the input has.
class Extractor {
 public:
  Extractor(std::u16string_view rtf, const UnknownControlCharacterHandler &onUnknown,
            char16_t *output)
      : rtf_(rtf), onUnknown_(onUnknown), output_(output) {}

  // Returns the end of the text.
  char16_t *extract() {
    while (position_ < rtf_.size()) {
      if (endsText(rtf_[position_])) {
        readControl();
      } else {
        const std::size_t end = copyUpTo(rtf_, position_, output_, endsText);
        output_ += end - position_;
        position_ = end;
      }
    }
    return output_;
  }

 private:
  // A unit behind the current one; 0, which means nothing here, where the text has ended.
  char16_t following(std::size_t distance) const {
    return distance < rtf_.size() - position_ ? rtf_[position_ + distance] : u'\0';
  }

  void readControl() {
    switch (rtf_[position_]) {
      case u'\\':
        readBackslash();
        break;
      case u'{':
        if (following(1) == u'\\') {
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
          onUnknown_(rtf_.substr(position_));
        }
        position_ += 1;
    }
  }

  void readBackslash() {
    constexpr std::u16string_view apostrophe = u"\\rquote";
    switch (following(1)) {
      case u'\\':
        *output_++ = u'\\';
        position_ += 2;
        return;
      case u'r':
        if (rtf_.substr(position_).starts_with(apostrophe)) {
          *output_++ = u'\'';
          position_ += apostrophe.size();
          return;
        }
        break;
      case u'u':
        if (following(2) == u'c') {
          position_ += 4;  // with the digit of "\uc0"
          return;
        }
        break;
      default:
        break;
    }
    skipControlWord();
  }

  // Skips the control words up to the next end of one, and that end.
  void skipControlWord() {
    const std::size_t end = endOfControlWord();
    keepApostrophes(rtf_.substr(position_, end - position_));
    position_ = end + 1;
  }

  // Nearly all words are a few units long. Looking at these one by one leaves the place where a
  // word ends to the processor's guess; a block would have to be tested before anything behind it.
  std::size_t endOfControlWord() const {
    constexpr std::size_t usualLength = 8;
    const std::size_t usualEnd = std::min(position_ + usualLength, rtf_.size());
    for (std::size_t end = position_; end < usualEnd; ++end) {
      if (endsControlWord(rtf_[end])) {
        return end;
      }
    }
    return findFirst(rtf_, usualEnd, endsControlWord);
  }

  // An apostrophe among control words stays. The words start with a backslash, or with one behind
  // a brace.
  void keepApostrophes(std::u16string_view words) {
    constexpr std::u16string_view apostrophe = u"rquote";
    while (words.size() >= apostrophe.size()) {
      const std::size_t length = std::min(words.find(u'\\'), words.size());
      if (words.substr(0, length) == apostrophe) {
        *output_++ = u'\'';
      }
      words.remove_prefix(std::min(length + 1, words.size()));
    }
  }

  std::u16string_view rtf_;
  const UnknownControlCharacterHandler &onUnknown_;
  std::size_t position_ = 0;  // may come to lie past the end
  char16_t *output_;
};

}  // namespace

std::u16string textOfPidginRTF(std::u16string_view rtf,
                               const UnknownControlCharacterHandler &onUnknown) {
  std::u16string text;
  // No control becomes longer than it was.
  text.resize_and_overwrite(rtf.size(), [&](char16_t *output, std::size_t) {
    return Extractor(rtf, onUnknown, output).extract() - output;
  });
  return text;
}

}  // namespace formats
