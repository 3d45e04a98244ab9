#include "PayloadWriter.h"

#include "BlockScan.h"
#include "Unicode.h"

#include <algorithm>

namespace formats {

namespace {

std::u16string_view upToNUL(std::u16string_view text) {
  return text.substr(0, findFirst(text, 0, [](char16_t unit) { return unit == 0; }));
}

}  // namespace

void PayloadWriter::writeUInt16(std::uint16_t value) {
  const char bytes[] = {static_cast<char>(value >> 8), static_cast<char>(value)};
  writeBytes({bytes, sizeof bytes});
}

void PayloadWriter::writeUInt32(std::uint32_t value) {
  writeUInt16(static_cast<std::uint16_t>(value >> 16));
  writeUInt16(static_cast<std::uint16_t>(value));
}

void PayloadWriter::writeBytes(std::string_view bytes) {
  const std::span<char> room = buffer_.subspan(stored());
  std::copy_n(bytes.data(), std::min(bytes.size(), room.size()), room.data());
  written_ += bytes.size();
}

void PayloadWriter::writeString(std::u16string_view text) {
  written_ += encodeUTF8(upToNUL(text), buffer_.subspan(stored()));
  writeBytes({"\0", 1});
}

void PayloadWriter::writeStringUTF8(std::string_view text) {
  writeBytes(text.substr(0, text.find('\0')));
  writeBytes({"\0", 1});
}

std::size_t sizeOfString(std::u16string_view text) { return lengthInUTF8(upToNUL(text)) + 1; }

}  // namespace formats
