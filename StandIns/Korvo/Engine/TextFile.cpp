#include "TextFile.h"

#include <Formats/Unicode.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace korvo::engine {

namespace {

// 0x80 to 0x9F; what Windows-1252 leaves undefined are the controls of Latin-1.
constexpr std::array<char16_t, 32> windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::u16string decodeWindows1252(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text +=
        value >= 0x80 && value < 0xA0 ? windows1252[value - 0x80u] : static_cast<char16_t>(value);
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
    bytes.append(buffer.data(), count);
  }
  if (std::ferror(stream.get()) != 0) {
    return failure();
  }
  return bytes;
}

}  // namespace korvo::engine
