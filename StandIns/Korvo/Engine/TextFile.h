// Reads a text file in the encodings that reference managers write.
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

namespace korvo::engine {

struct TextFile {
  std::u16string text;  // without a byte order mark
  // Whether the bytes were no UTF and have been read as Windows-1252, which takes
  // anything: accented letters may be wrong.
  bool isGuessed = false;
};

// UTF-8, or UTF-16 with its byte order mark, or else Windows-1252.
TextFile decodeText(std::string_view bytes);

// The error is one line with the file's name.
std::expected<std::string, std::string> readFile(const std::filesystem::path &file);

}  // namespace korvo::engine
