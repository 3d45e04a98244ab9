// Writes a payload into a buffer whose size was computed in advance.
//
// The writer can never write outside its buffer, yet it keeps counting: written() is the
// number of bytes that the payload would have needed. A caller that computed the size
// from texts that changed in the meantime sees the difference, and the heap stays whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace formats {

class PayloadWriter {
 public:
  // Borrows the buffer.
  explicit PayloadWriter(std::span<char> buffer) : buffer_(buffer) {}

  void writeUInt16(std::uint16_t value);
  void writeUInt32(std::uint32_t value);
  void writeBytes(std::string_view bytes);
  // UTF-8 and one NUL. A NUL inside the text ends it, as it does for every reader of
  // NUL-terminated strings: what follows a NUL would otherwise be taken for the next field.
  void writeString(std::u16string_view text);
  void writeStringUTF8(std::string_view text);

  // Bytes that everything written so far needs, whether they fitted or not.
  std::size_t written() const { return written_; }
  // The bytes of the buffer that were really filled; never more than its size.
  std::size_t stored() const { return written_ < buffer_.size() ? written_ : buffer_.size(); }

 private:
  std::span<char> buffer_;
  std::size_t written_ = 0;
};

// Bytes that writeString needs for the text, its NUL among them.
std::size_t sizeOfString(std::u16string_view text);

}  // namespace formats
