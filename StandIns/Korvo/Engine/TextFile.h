// Reads a text file in the encodings that reference managers write.
#pragma once

#include <cstddef>
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

// More than ten times the largest library that anybody keeps in one text file.
inline constexpr std::size_t largestTextFile = 268'435'456;

// The error is one line with the file's name. A file of more than largestTextFile bytes is one,
// also where its size cannot be asked for.
std::expected<std::string, std::string> readFile(const std::filesystem::path &file);

}  // namespace korvo::engine
