#include "MarkedText.h"

#include <utility>
#include <vector>

namespace korvo::engine {

namespace {

enum class Mark : char16_t {
  end = 1,
  italic = 2,
  upright = 3,
  bold = 4,
  notBold = 5,
  underline = 6,
  notUnderlined = 7,
  smallCaps = 8,
  notSmallCaps = 14,
  superscript = 15,
  subscript = 16,
  baseline = 17,
  block = 18,
  leftMargin = 19,
  rightInline = 20,
  indent = 21,
};

// A Run without its text serves as the looks in force.
void changeLooks(Run &looks, Mark mark) {
  switch (mark) {
    case Mark::italic:
    case Mark::upright:
      looks.italic = mark == Mark::italic;
      break;
    case Mark::bold:
    case Mark::notBold:
      looks.bold = mark == Mark::bold;
      break;
    case Mark::underline:
    case Mark::notUnderlined:
      looks.underline = mark == Mark::underline;
      break;
    case Mark::smallCaps:
    case Mark::notSmallCaps:
      looks.smallCaps = mark == Mark::smallCaps;
      break;
    case Mark::superscript:
      looks.verticalPosition = VerticalPosition::superscript;
      break;
    case Mark::subscript:
      looks.verticalPosition = VerticalPosition::subscript;
      break;
    case Mark::baseline:
      looks.verticalPosition = VerticalPosition::normal;
      break;
    default:
      break;
  }
}

bool sameLooks(Run left, const Run &right) {
  left.text = right.text;
  return left == right;
}

void append(FormattedText &text, const Run &looks, std::u16string_view characters) {
  if (characters.empty()) {
    return;
  }
  if (text.runs.empty() || !sameLooks(looks, text.runs.back())) {
    text.runs.push_back(looks);
  }
  text.runs.back().text += characters;
}

constexpr std::u16string_view blanks = u" \n";

void trim(FormattedText &text) {
  std::vector<Run> &runs = text.runs;
  while (!runs.empty()) {
    std::u16string &last = runs.back().text;
    last.erase(last.find_last_not_of(blanks) + 1);
    if (!last.empty()) {
      break;
    }
    runs.pop_back();
  }
  while (!runs.empty()) {
    std::u16string &first = runs.front().text;
    first.erase(0, first.find_first_not_of(blanks));
    if (!first.empty()) {
      break;
    }
    runs.erase(runs.begin());
  }
}

class Reader {
 public:
  MarkedText read(std::u16string_view marked) {
    std::size_t start = 0;
    for (std::size_t index = 0; index <= marked.size(); ++index) {
      if (index < marked.size() && marked[index] >= u' ') {
        continue;
      }
      write(marked.substr(start, index - start));
      start = index + 1;
      if (index < marked.size()) {
        follow(static_cast<Mark>(marked[index]));
      }
    }
    trim(text_);
    trim(firstField_);
    MarkedText result{.firstField = {}, .text = std::move(text_)};
    if (!firstField_.isEmpty()) {
      result.firstField = std::move(firstField_);
    }
    return result;
  }

 private:
  struct Frame {
    Run looks;
    Mark mark;
  };

  static bool isBlock(Mark mark) { return mark == Mark::block || mark == Mark::indent; }

  void write(std::u16string_view characters) {
    if (characters.empty()) {
      return;
    }
    FormattedText &target = inFirstField_ ? firstField_ : text_;
    if (std::exchange(startsLine_, false) && !target.isEmpty()) {
      append(target, Run{}, u"\n");
    }
    append(target, looks_, characters);
  }

  void follow(Mark mark) {
    if (mark == Mark::end) {
      if (!frames_.empty()) {
        leave();
      }
      return;
    }
    frames_.push_back({looks_, mark});
    changeLooks(looks_, mark);
    if (isBlock(mark)) {
      startsLine_ = true;
    }
    if (mark == Mark::leftMargin && text_.isEmpty()) {
      inFirstField_ = true;
    }
  }

  void leave() {
    looks_ = frames_.back().looks;
    const Mark mark = frames_.back().mark;
    frames_.pop_back();
    if (isBlock(mark)) {
      startsLine_ = true;
    }
    if (mark == Mark::leftMargin) {
      inFirstField_ = false;
    }
  }

  FormattedText firstField_;
  FormattedText text_;
  Run looks_;
  std::vector<Frame> frames_;
  bool inFirstField_ = false;
  bool startsLine_ = false;
};

}  // namespace

MarkedText readMarkedText(std::u16string_view marked) { return Reader().read(marked); }

}  // namespace korvo::engine
