// Text that needs no escape, nearly all of it, is found and copied in bulk. Escapes are put
// together from pieces of four code units that stand in tables. Memory is asked for once, as much
// as the text needs if it goes on as it begins; if it does not, what is left is counted: fresh
// memory costs more than all the rest, and counting the whole of a long text is a pass more.
// The groups are a set of bits in nesting order, the outermost lowest: a change at one bit closes
// and reopens that group and the groups above it, and leaves those below alone.

#include "PidginRTFWriter.h"

#include "BlockScan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string_view>
#include <utility>

namespace formats {

using std::string_view_literals::operator""sv;

namespace {

constexpr std::array<std::u16string_view, 5> groupOpeners = {u"{\\ul ", u"{\\i ", u"{\\b ",
                                                             u"{\\super ", u"{\\sub "};

constexpr std::size_t usualOverhead = 25;  // room for a few groups and escapes

unsigned groupsOf(const PidginAttributes &attributes) {
  return (attributes.underline ? 1u : 0) | (attributes.italic ? 2u : 0) |
         (attributes.bold ? 4u : 0) | (attributes.superscript ? 8u : 0) |
         (attributes.subscript ? 16u : 0);
}

constexpr std::size_t longestEscape = 13;  // "\uc0\u-32768 "

// Four code units, which one instruction copies; how many of them count, the user knows.
using FourUnits = std::array<char16_t, 4>;

char16_t *store(char16_t *output, const char16_t *fourUnits) {
  std::memcpy(output, fourUnits, sizeof(FourUnits));
  return output + 4;
}

constexpr std::size_t thousandsOfUnits = 33;  // 0 to 32, of numbers up to 32768

// What stands before the last three digits of a number, sign and thousands: "-32". The positive
// ones by their thousands, then the negative ones. The fourth unit is how many of the others count.
constexpr auto numberOpenings = [] {
  std::array<FourUnits, 2 * thousandsOfUnits> openings{};
  for (std::size_t index = 0; index < openings.size(); ++index) {
    FourUnits &opening = openings[index];
    const auto add = [&](std::size_t unit) { opening[opening[3]++] = static_cast<char16_t>(unit); };
    const std::size_t thousands = index % thousandsOfUnits;
    if (index >= thousandsOfUnits) {
      add(u'-');
    }
    if (thousands >= 10) {
      add(u'0' + thousands / 10);
    }
    if (thousands > 0) {
      add(u'0' + thousands % 10);
    }
  }
  return openings;
}();

// "000 001 002 ", up to 999. Who wants a number without its leading zeros copies four units from a
// later one on.
constexpr auto threeDigitsAndBlank = [] {
  std::array<char16_t, 4 * 1000> digits{};
  for (std::size_t number = 0; number < 1000; ++number) {
    digits[4 * number] = static_cast<char16_t>(u'0' + number / 100);
    digits[4 * number + 1] = static_cast<char16_t>(u'0' + number / 10 % 10);
    digits[4 * number + 2] = static_cast<char16_t>(u'0' + number % 10);
    digits[4 * number + 3] = u' ';
  }
  return digits;
}();

// RTF's \u takes a signed 16-bit number. "\uc0" says that no substitute for readers without
// Unicode follows. Nearly free of branches: the pieces are stored whole, and the next one over what
// of the last one was too long. Returns the end; up to longestEscape units are written.
inline char16_t *storeNumericEscape(char16_t *output, char16_t unit) {
  const bool isNegative = unit >= 0x8000;
  const unsigned number = isNegative ? 0x10000u - unit : unit;
  const unsigned thousands = number / 1000;
  const unsigned rest = number - 1000 * thousands;
  const FourUnits &opening = numberOpenings[thousands + (isNegative ? thousandsOfUnits : 0)];
  std::memcpy(output, u"\\uc0\\u  ", 2 * sizeof(FourUnits));
  store(output + 6, opening.data());
  output += 6 + opening[3];
  if (number >= 100) [[likely]] {
    return store(output, &threeDigitsAndBlank[4 * rest]);
  }
  const std::size_t leadingZeros = number < 10 ? 2 : 1;
  return store(output, &threeDigitsAndBlank[4 * rest + leadingZeros]) - leadingZeros;
}

// The blank belongs to the escape, and readers drop it; the apostrophe's escape has none, so
// that none may be dropped there.
char16_t *storeEscapeOfControlCharacter(char16_t *output, char16_t unit) {
  output[4] = u' ';
  switch (unit) {
    case u'\'':
      return store(output, u"\\'27");
    case u'{':
      return store(output, u"\\'7b") + 1;
    case u'}':
      return store(output, u"\\'7d") + 1;
    case u'\\':
      return store(output, u"\\'5c") + 1;
    default:
      return std::ranges::copy(u"\\\n"sv, output).out;
  }
}

constexpr auto isAboveASCII = [](char16_t unit) { return unit >= 0x80; };

constexpr auto isControlCharacter = [](char16_t unit) {
  return (unit == u'\'') | (unit == u'{') | (unit == u'}') | (unit == u'\\') | (unit == u'\n');
};

constexpr auto isAboveASCIIOrControlCharacter = [](char16_t unit) {
  return isAboveASCII(unit) | isControlCharacter(unit);
};

// Takes only a unit that needs one, and may write up to longestEscape.
inline char16_t *storeEscape(char16_t *output, char16_t unit) {
  return isAboveASCII(unit) ? storeNumericEscape(output, unit)
                            : storeEscapeOfControlCharacter(output, unit);
}

struct Stored {
  char16_t *end;
  std::size_t units;  // of the text
};

// Writes the text, or as much of it as there is surely room for; the room holds at least as many
// units as the text.
template <typename NeedsEscape>
Stored storeEscaped(char16_t *output, std::size_t room, std::u16string_view text,
                    NeedsEscape needsEscape) {
  // Up to here the text may reach without its rest coming too near to the end of the room.
  const char16_t *const lastStart = output + room - longestEscape;
  std::size_t position = 0;
  while (position < text.size()) {
    // Units that need an escape often stand side by side (a text in Chinese).
    const char16_t unit = text[position];
    if (!needsEscape(unit)) {
      const std::size_t end = copyLongPiece(text, position, output, needsEscape);
      output += end - position;
      position = end;
    } else if (lastStart - output < static_cast<std::ptrdiff_t>(text.size() - position)) {
      break;
    } else {
      output = storeEscape(output, unit);
      ++position;
    }
  }
  return {output, position};
}

// Room for the text, if it goes on as it begins: surely enough for a short one.
template <typename NeedsEscape>
std::size_t expectedRoom(std::u16string_view text, NeedsEscape needsEscape) {
  constexpr std::size_t sampleSize = 4096;
  const std::u16string_view sample = text.substr(0, sampleSize);
  const std::size_t escapes = count(sample, needsEscape);
  const std::size_t samples = text.size() / sampleSize + 1;
  return text.size() + longestEscape * (escapes * samples + 1);
}

template <typename NeedsEscape>
std::size_t sufficientRoom(std::u16string_view text, NeedsEscape needsEscape) {
  return text.size() + longestEscape * (count(text, needsEscape) + 1);
}

template <typename NeedsEscape>
void appendEscaped(std::u16string &output, std::u16string_view text, NeedsEscape needsEscape) {
  const auto append = [&](std::size_t room) {
    const std::size_t before = output.size();
    output.resize_and_overwrite(before + room, [&](char16_t *start, std::size_t) {
      const Stored stored = storeEscaped(start + before, room, text, needsEscape);
      text.remove_prefix(stored.units);
      return stored.end - start;
    });
  };
  append(expectedRoom(text, needsEscape));
  if (!text.empty()) {
    append(sufficientRoom(text, needsEscape));
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
    char16_t escape[longestEscape];
    output_.append(escape, storeEscape(escape, unit));
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
