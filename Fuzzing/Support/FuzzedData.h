// What a fuzz target makes of the bytes it is given: numbers, texts, and what is left.
//
// Values are taken from the front, in the order in which the target asks. Past the end everything
// is zero or empty, so every input means something, and cutting an input short keeps the meaning of
// what comes before: the fuzzer can mutate one decision and leave the others alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace fuzzing {

// UTF-16 code units from bytes: an ASCII byte stands for itself, so that seeds and dictionaries are
// legible; any other byte is followed by the two bytes of any code unit, the low one first.
inline std::u16string codeUnits(std::string_view bytes) {
  std::u16string units;
  const auto byteAt = [&](std::size_t index) {
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0U;
  };
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    if (byteAt(index) < 0x80) {
      units += static_cast<char16_t>(byteAt(index));
    } else {
      units += static_cast<char16_t>(byteAt(index + 1) | byteAt(index + 2) << 8U);
      index += 2;
    }
  }
  return units;
}

class FuzzedData {
 public:
  // Borrows the bytes.
  explicit FuzzedData(std::string_view bytes) : bytes_(bytes) {}

  bool isAtEnd() const { return bytes_.empty(); }

  std::uint8_t byte() {
    if (bytes_.empty()) {
      return 0;
    }
    const auto first = static_cast<std::uint8_t>(bytes_.front());
    bytes_.remove_prefix(1);
    return first;
  }

  bool flag() { return (byte() & 1U) != 0; }

  std::uint32_t number() {
    std::uint32_t value = 0;
    for (int index = 0; index < 4; ++index) {
      value = value << 8U | byte();
    }
    return value;
  }

  // 0 to `choices` - 1, of at most 256.
  std::size_t choice(std::size_t choices) { return byte() % choices; }

  // Up to 255 bytes, behind a byte that tells how many.
  std::string_view text() {
    const std::size_t length = byte();
    const std::string_view text = bytes_.substr(0, length);
    bytes_.remove_prefix(text.size());
    return text;
  }

  std::u16string units() { return codeUnits(text()); }

  std::string_view rest() {
    const std::string_view rest = bytes_;
    bytes_ = {};
    return rest;
  }

 private:
  std::string_view bytes_;
};

}  // namespace fuzzing
