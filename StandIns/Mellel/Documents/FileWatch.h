// Notices that a file was saved, however the editor does it: written in place, or written beside
// it and put in its place.
#pragma once

#include <StandIns/Mellel/Console/Failure.h>

#include <expected>
#include <string>

namespace mellel::documents {

class FileWatch {
 public:
  static std::expected<FileWatch, console::Failure> start(const std::string &path);
  ~FileWatch();
  FileWatch(FileWatch &&other) noexcept;
  FileWatch &operator=(FileWatch &&other) = delete;
  FileWatch(const FileWatch &) = delete;
  FileWatch &operator=(const FileWatch &) = delete;

  // Readable when something happened.
  int descriptor() const { return descriptor_; }
  // Whether the file was saved since the last call. Never waits.
  bool wasSaved();

 private:
  FileWatch(int descriptor, std::string name);

  int descriptor_;
  std::string name_;
};

}  // namespace mellel::documents
