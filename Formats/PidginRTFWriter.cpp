// Text that needs no escape, nearly all of it, is found and copied in bulk. The groups are a
// set of bits in nesting order, the outermost lowest: a change at one bit closes and reopens that
// group and the groups above it, and leaves those below alone.

#include "PidginRTFWriter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <utility>

#include "BlockScan.h"

namespace formats {

namespace {

constexpr std::array<std::u16string_view, 5> groupOpeners = {u"{\\ul ", u"{\\i ", u"{\\b ",
                                                             u"{\\super ", u"{\\sub "};

constexpr std::size_t usualOverhead = 25;  // room for a few groups and escapes

unsigned groupsOf(const PidginAttributes &attributes) {
  return (attributes.underline ? 1u : 0) | (attributes.italic ? 2u : 0) |
         (attributes.bold ? 4u : 0) | (attributes.superscript ? 8u : 0) |
         (attributes.subscript ? 16u : 0);
}

// RTF's \u takes a signed 16-bit number. "\uc0" says that no substitute for readers without
// Unicode follows. Put together from its end, and appended once.
void appendNumericEscape(std::u16string &output, char16_t unit) {
  constexpr std::u16string_view opening = u"\\uc0\\u";
  char16_t escape[opening.size() + 7];  // "-32768 " is the longest rest
  char16_t *const end = std::end(escape);
  char16_t *start = end;
  *--start = u' ';
  const bool isNegative = unit >= 0x8000;
  for (unsigned rest = isNegative ? 0x10000u - unit : unit; rest != 0; rest /= 10) {
    *--start = static_cast<char16_t>(u'0' + rest % 10);
  }
  if (isNegative) {
    *--start = u'-';
  }
  start -= opening.size();
  std::ranges::copy(opening, start);
  output.append(start, static_cast<std::size_t>(end - start));
}

// The blank belongs to the escape, and readers drop it; the apostrophe's escape has none, so
// that none may be dropped there.
std::u16string_view escapeOfControlCharacter(char16_t unit) {
  switch (unit) {
    case u'\'':
      return u"\\'27";
    case u'{':
      return u"\\'7b ";
    case u'}':
      return u"\\'7d ";
    case u'\\':
      return u"\\'5c ";
    default:
      return u"\\\n";
  }
}

constexpr auto isAboveASCII = [](char16_t unit) { return unit >= 0x80; };

constexpr auto isAboveASCIIOrControlCharacter = [](char16_t unit) {
  return (unit >= 0x80) | (unit == u'\'') | (unit == u'{') | (unit == u'}') | (unit == u'\\') |
         (unit == u'\n');
};

void appendEscape(std::u16string &output, char16_t unit) {
  if (isAboveASCII(unit)) {
    appendNumericEscape(output, unit);
  } else {
    output.append(escapeOfControlCharacter(unit));
  }
}

template <typename NeedsEscape>
void appendEscaped(std::u16string &output, std::u16string_view text, NeedsEscape needsEscape) {
  std::size_t position = 0;
  for (;;) {
    const std::size_t end = findFirst(text, position, needsEscape);
    output.append(text, position, end - position);
    if (end == text.size()) {
      return;
    }
    appendEscape(output, text[end]);
    position = end + 1;
  }
}

}  // namespace

void appendPidginRTF(std::u16string &output, std::u16string_view text,
                     ControlCharacters controlCharacters) {
  if (controlCharacters == ControlCharacters::raw) {
    appendEscaped(output, text, isAboveASCII);
  } else {
    appendEscaped(output, text, isAboveASCIIOrControlCharacter);
  }
}

std::u16string pidginRTF(std::u16string_view text, ControlCharacters controlCharacters) {
  std::u16string output;
  output.reserve(text.size() + usualOverhead);
  appendPidginRTF(output, text, controlCharacters);
  return output;
}

PidginRTFWriter::PidginRTFWriter(std::size_t expectedLength) {
  output_.reserve(expectedLength + usualOverhead);
}

void PidginRTFWriter::append(std::u16string_view text, const PidginAttributes &attributes) {
  // An empty run has no character whose attributes could matter.
  if (text.empty()) {
    return;
  }
  changeGroups(groupsOf(attributes));
  appendPidginRTF(output_, text, ControlCharacters::escaped);
}

void PidginRTFWriter::append(char16_t unit, const PidginAttributes &attributes) {
  changeGroups(groupsOf(attributes));
  if (isAboveASCIIOrControlCharacter(unit)) {
    appendEscape(output_, unit);
  } else {
    output_.push_back(unit);
  }
}

std::u16string PidginRTFWriter::finish() {
  changeGroups(0);
  return std::exchange(output_, {});
}

void PidginRTFWriter::changeGroups(unsigned groups) {
  const unsigned changed = openGroups_ ^ groups;
  if (changed == 0) {
    return;
  }
  const auto outermost = static_cast<std::size_t>(std::countr_zero(changed));
  output_.append(static_cast<std::size_t>(std::popcount(openGroups_ >> outermost)), u'}');
  for (std::size_t group = outermost; group < groupOpeners.size(); ++group) {
    if ((groups >> group & 1) != 0) {
      output_.append(groupOpeners[group]);
    }
  }
  openGroups_ = groups;
}

}  // namespace formats
