// A reader of complete payloads, byte by byte: the slow reference of the strict decoders. It knows
// only whether a field was there; it has no error lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace test_support {

class SlowReader {
 public:
  explicit SlowReader(std::string_view payload) : payload_(payload) {}

  std::uint32_t integer(int bytes) {
    std::uint32_t value = 0;
    for (int index = 0; index < bytes; ++index) {
      value = value * 256 + next();
    }
    return value;
  }

  std::string string() {
    std::string text;
    for (;;) {
      const unsigned byte = next();
      if (byte == 0) {
        return text;
      }
      text += static_cast<char>(byte);
    }
  }

  std::string rest() {
    std::string text;
    while (position_ < payload_.size()) {
      text += payload_[position_++];
    }
    return text;
  }

  // Whether a byte was asked for that is not there.
  bool isCutShort() const { return isCutShort_; }
  bool isAtEnd() const { return position_ == payload_.size(); }

 private:
  unsigned next() {
    if (position_ == payload_.size()) {
      isCutShort_ = true;
      return 0;
    }
    return static_cast<unsigned char>(payload_[position_++]);
  }

  std::string payload_;
  std::size_t position_ = 0;
  bool isCutShort_ = false;
};

}  // namespace test_support
