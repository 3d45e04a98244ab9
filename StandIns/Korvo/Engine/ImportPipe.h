// What the reader of a library file tells the process that started it: a stream of frames, each a
// kind and two texts. Both ends are of the same build.
#pragma once

#include "LibraryImporter.h"

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

namespace korvo::engine {

// On which descriptor the reader finds the pipe.
inline constexpr int importPipe = 3;

class ImportWriter {
 public:
  explicit ImportWriter(int descriptor) : descriptor_(descriptor) {}

  // False where nobody reads any more.
  bool writeProgress(std::string_view soFar);
  bool write(const std::expected<ImportResult, std::string> &imported);

 private:
  bool writeFrame(char kind, std::string_view first, std::string_view second);
  bool flush();

  int descriptor_;
  std::string waiting_;
};

class ImportReading {
 public:
  ImportReading(std::filesystem::path file, const ImportProgress &progress)
      : file_(std::move(file)), progress_(progress) {}

  // False for bytes that no reader writes.
  bool take(std::string_view bytes);
  bool isWhole() const { return isWhole_; }
  // Only once it is whole.
  std::expected<ImportResult, std::string> result() { return std::move(result_); }

 private:
  bool takeFrame(char kind, std::string_view first, std::string_view second);

  std::filesystem::path file_;
  const ImportProgress &progress_;
  std::string waiting_;
  bool isWhole_ = false;
  std::expected<ImportResult, std::string> result_;
};

}  // namespace korvo::engine
