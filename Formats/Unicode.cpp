// Almost every text that travels is almost entirely ASCII. Both directions therefore copy
// runs of ASCII in bulk and look only at what lies between the runs character by
// character. Each makes one allocation; the encoder measures first, which is cheap.

#include "Unicode.h"

#include "BlockScan.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace formats {

namespace {

constexpr char16_t replacementCharacter = 0xFFFD;

// What may follow a lead byte. All continuation bytes are 80..BF, but the first one is
// further restricted after E0 and F0 (overlong forms), ED (surrogates) and F4 (above U+10FFFF).
struct LeadByte {
  int continuations;
  std::uint8_t firstLow = 0x80;
  std::uint8_t firstHigh = 0xBF;
};

LeadByte leadByte(std::uint8_t byte) {
  if (byte < 0xC2 || byte > 0xF4) {
    return {0};
  }
  if (byte < 0xE0) {
    return {1};
  }
  if (byte < 0xF0) {
    const std::uint8_t low = byte == 0xE0 ? 0xA0 : 0x80;
    const std::uint8_t high = byte == 0xED ? 0x9F : 0xBF;
    return {2, low, high};
  }
  const std::uint8_t low = byte == 0xF0 ? 0x90 : 0x80;
  const std::uint8_t high = byte == 0xF4 ? 0x8F : 0xBF;
  return {3, low, high};
}

// Decodes the sequence that starts at the position with a byte above 7F and moves the position
// behind it. An ill-formed sequence ends before the first byte that cannot continue it.
char32_t decodeSequence(std::string_view bytes, std::size_t &position) {
  const auto byteAt = [&](std::size_t index) { return static_cast<std::uint8_t>(bytes[index]); };
  const std::uint8_t first = byteAt(position++);
  const LeadByte lead = leadByte(first);
  if (lead.continuations == 0) {
    return replacementCharacter;
  }
  char32_t codePoint = first & (0x3Fu >> lead.continuations);
  std::uint8_t low = lead.firstLow;
  std::uint8_t high = lead.firstHigh;
  for (int count = 0; count < lead.continuations; ++count) {
    if (position == bytes.size() || byteAt(position) < low || byteAt(position) > high) {
      return replacementCharacter;
    }
    codePoint = codePoint << 6 | (byteAt(position++) & 0x3Fu);
    low = 0x80;
    high = 0xBF;
  }
  return codePoint;
}

std::size_t storeUTF16(char32_t codePoint, char16_t *output) {
  if (codePoint < 0x10000) {
    output[0] = static_cast<char16_t>(codePoint);
    return 1;
  }
  output[0] = static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
  output[1] = static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF));
  return 2;
}

bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

// The character at the position, which moves behind it.
char32_t nextCharacter(std::u16string_view text, std::size_t &position) {
  const char16_t unit = text[position++];
  if (isHighSurrogate(unit) && position < text.size() && isLowSurrogate(text[position])) {
    return 0x10000u + ((unit & 0x3FFu) << 10) + (text[position++] & 0x3FFu);
  }
  return isHighSurrogate(unit) || isLowSurrogate(unit) ? replacementCharacter : unit;
}

std::size_t lengthOfCharacter(char32_t codePoint) {
  return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

// Stores the bytes of a character and returns how many they are.
std::size_t storeUTF8(char32_t codePoint, char *output) {
  const std::size_t length = lengthOfCharacter(codePoint);
  for (std::size_t index = length - 1; index > 0; --index) {
    output[index] = static_cast<char>(0x80 | (codePoint & 0x3F));
    codePoint >>= 6;
  }
  const char32_t lengthMark = length == 1 ? 0 : 0xF00u >> length;
  output[0] = static_cast<char>(lengthMark | codePoint);
  return length;
}

constexpr auto isAboveASCII = [](auto unit) {
  return std::make_unsigned_t<decltype(unit)>(unit) >= 0x80;
};

constexpr auto isNotPlain = [](auto unit) { return isAboveASCII(unit) | (unit == 0); };

// The output has room for all of it. Returns the bytes that were stored.
std::size_t storeWholeUTF8(std::u16string_view text, char *output) {
  const char *const start = output;
  std::size_t position = 0;
  while (position < text.size()) {
    if (isAboveASCII(text[position])) {
      output += storeUTF8(nextCharacter(text, position), output);
    } else {
      const std::size_t end = copyUpTo(text, position, output, isAboveASCII);
      output += end - position;
      position = end;
    }
  }
  return static_cast<std::size_t>(output - start);
}

// The buffer ends before the text does. That is rare, and goes character by character.
void storePartOfUTF8(std::u16string_view text, std::span<char> buffer) {
  std::size_t position = 0;
  while (!buffer.empty()) {
    char bytes[4];
    const std::size_t length = storeUTF8(nextCharacter(text, position), bytes);
    const std::size_t stored = std::min(length, buffer.size());
    std::copy_n(bytes, stored, buffer.data());
    buffer = buffer.subspan(stored);
  }
}

}  // namespace

std::u16string decodeUTF8(std::string_view bytes) {
  std::u16string text;
  // No sequence makes more units than it has bytes.
  text.resize_and_overwrite(bytes.size(), [&](char16_t *output, std::size_t) {
    std::size_t length = 0;
    std::size_t position = 0;
    while (position < bytes.size()) {
      if (isAboveASCII(bytes[position])) {
        length += storeUTF16(decodeSequence(bytes, position), output + length);
      } else {
        const std::size_t end = copyUpTo(bytes, position, output + length, isAboveASCII);
        length += end - position;
        position = end;
      }
    }
    return length;
  });
  return text;
}

char32_t decodeUTF8Character(std::string_view sequence) {
  if (sequence.empty()) {
    return replacementCharacter;
  }
  std::size_t position = 0;
  const char32_t character = isAboveASCII(sequence.front())
                                 ? decodeSequence(sequence, position)
                                 : static_cast<char32_t>(sequence[position++]);
  return position == sequence.size() ? character : replacementCharacter;
}

void appendUTF8(std::string &text, char32_t character) {
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  char bytes[4];
  const std::size_t length =
      storeUTF8(character > 0x10FFFF || isSurrogate ? replacementCharacter : character, bytes);
  text.append(bytes, length);
}

bool isASCII(std::string_view text) { return findFirst(text, 0, isAboveASCII) == text.size(); }

std::size_t copyPlainASCII(std::u16string_view text, char *buffer) {
  return copyUpTo(text, 0, buffer, isNotPlain);
}

std::size_t copyPlainASCII(std::string_view text, char *buffer) {
  return copyUpTo(text, 0, buffer, isNotPlain);
}

std::size_t encodeUTF8(std::u16string_view text, std::span<char> buffer) {
  // No unit takes more: so nothing has to be measured but at the buffer's end.
  constexpr std::size_t mostBytesOfUnit = 3;
  if (text.size() <= buffer.size() / mostBytesOfUnit) {
    return storeWholeUTF8(text, buffer.data());
  }
  const std::size_t needed = lengthInUTF8(text);
  if (needed <= buffer.size()) {
    storeWholeUTF8(text, buffer.data());
  } else {
    storePartOfUTF8(text, buffer);
  }
  return needed;
}

std::string encodeUTF8(std::u16string_view text) {
  std::string bytes;
  const std::size_t length = lengthInUTF8(text);
  bytes.resize_and_overwrite(length, [&](char *output, std::size_t) {
    storeWholeUTF8(text, output);
    return length;
  });
  return bytes;
}

// Three bytes for each half of a pair are two too many.
std::size_t lengthInUTF8(std::u16string_view text) {
  // Most texts are short and end here.
  const std::size_t lengthOfASCII = findFirst(text, 0, isAboveASCII);
  if (lengthOfASCII == text.size()) {
    return lengthOfASCII;
  }
  text.remove_prefix(lengthOfASCII);
  const std::size_t length = text.size() + count(text, [](char16_t unit) { return unit >= 0x80; }) +
                             count(text, [](char16_t unit) { return unit >= 0x800; });
  std::size_t pairs = 0;
  const auto isHigh = [](char16_t unit) { return isHighSurrogate(unit); };
  for (std::size_t index = findFirst(text, 0, isHigh) + 1; index < text.size(); ++index) {
    pairs += isHighSurrogate(text[index - 1]) && isLowSurrogate(text[index]) ? 1 : 0;
  }
  return lengthOfASCII + length - 2 * pairs;
}

}  // namespace formats
