// What the writers of payloads promise, whatever they write: they need the size that was computed,
// and a buffer that is too small gets the beginning and nothing outside of it.
#pragma once

#include <Formats/PayloadWriter.h>
#include <Formats/Unicode.h>
#include <Fuzzing/Support/FuzzedData.h>
#include <Fuzzing/Support/Target.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

namespace fuzzing {

// The payload that `write` makes, of which `size` was computed in advance. It is written once more,
// into a buffer of about `room`/255 of its size.
template <typename Write>
std::string written(std::size_t size, std::size_t room, Write write) {
  std::string payload(size, '?');
  formats::PayloadWriter writer(payload);
  write(writer);
  require(writer.written() == size);
  require(writer.stored() == size);

  // Allocated, so that the address sanitizer sees the first byte outside.
  const std::size_t smallerSize = std::min(size, room * size / 255);
  const std::unique_ptr<char[]> smaller(new char[smallerSize]);
  formats::PayloadWriter smallerWriter({smaller.get(), smallerSize});
  write(smallerWriter);
  require(smallerWriter.written() == size);
  require(smallerWriter.stored() == smallerSize);
  require(payload.starts_with(std::string_view(smaller.get(), smallerSize)));
  return payload;
}

// What a reader finds of a text that was written: invalid code units replaced, cut at a NUL.
inline std::string asRead(std::u16string_view text) {
  return formats::encodeUTF8(text.substr(0, text.find(u'\0')));
}

}  // namespace fuzzing
