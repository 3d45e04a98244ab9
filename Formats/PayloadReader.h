// Reads a payload: big-endian integers and NUL-terminated strings, unaligned.
//
// One rule covers everything that is cut short: a payload reads as if endless NUL bytes
// followed it. Integers past the end are 0, strings past the end are empty, and a string
// without its NUL ends with the data. No byte outside the payload is ever touched, so
// no caller needs a length check of its own; loops run while atEnd() is false.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace formats {

class PayloadReader {
 public:
  // Borrows the bytes; they must outlive the reader and the views it returns.
  explicit PayloadReader(std::string_view payload) : payload_(payload) {}

  // Whether the position has reached the real end of the payload.
  bool atEnd() const { return position_ >= payload_.size(); }
  // Byte offset of the next read; may lie past the end.
  std::size_t position() const { return position_; }

  std::uint8_t readUInt8();
  std::uint16_t readUInt16();
  std::uint32_t readUInt32();
  void skip(std::size_t bytes);
  // The bytes up to the next NUL; the position moves past that NUL.
  std::string_view readString();

 private:
  std::string_view payload_;
  std::size_t position_ = 0;
};

}  // namespace formats
