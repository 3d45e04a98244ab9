#include "TextFile.h"

#include <Formats/Unicode.h>
#include <Formats/Windows1252.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace korvo::engine {

namespace {

std::u16string decodeWindows1252(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    text += formats::characterOfWindows1252(static_cast<std::uint8_t>(byte));
  }
  return text;
}

std::u16string decodeUTF16(std::string_view bytes, bool bigEndian) {
  std::u16string text;
  for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
    const auto first = static_cast<unsigned char>(bytes[index]);
    const auto second = static_cast<unsigned char>(bytes[index + 1]);
    text += static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
  }
  return text;
}

}  // namespace

TextFile decodeText(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) {
    bytes.remove_prefix(3);
  } else if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    return {.text = decodeUTF16(bytes.substr(2), bytes[0] == '\xFE')};
  }
  std::u16string text = formats::decodeUTF8(bytes);
  // Only valid UTF-8 comes back as the same bytes.
  if (formats::encodeUTF8(text) != bytes) {
    return {.text = decodeWindows1252(bytes), .isGuessed = true};
  }
  return {.text = std::move(text)};
}

std::expected<std::string, std::string> readFile(const std::filesystem::path &file) {
  const auto failure = [&] {
    return std::unexpected(file.string() + ": cannot be read: " + std::strerror(errno));
  };
  const std::unique_ptr<std::FILE, int (*)(std::FILE *)> stream(std::fopen(file.c_str(), "rb"),
                                                                &std::fclose);
  if (stream == nullptr) {
    return failure();
  }
  std::string bytes;
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stream.get())) {
    // Asked of what is read: a pipe or a device has no size, and may have no end.
    if (bytes.size() + count > largestTextFile) {
      return std::unexpected(file.string() + ": it is larger than " +
                             std::to_string(largestTextFile / 1'048'576) +
                             " MiB, which no library is");
    }
    bytes.append(buffer.data(), count);
  }
  if (std::ferror(stream.get()) != 0) {
    return failure();
  }
  return bytes;
}

}  // namespace korvo::engine
