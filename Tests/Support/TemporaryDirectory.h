// A directory of one test's own, gone with the object.
#pragma once

#include <filesystem>
#include <string>

namespace test_support {

class TemporaryDirectory {
 public:
  // In the system's directory for temporary files, or in another. Throws std::system_error if it
  // cannot be made.
  explicit TemporaryDirectory(
      const std::filesystem::path &parent = std::filesystem::temp_directory_path());
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory &) = delete;
  TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;

  const std::filesystem::path &path() const { return path_; }
  std::filesystem::path operator/(const std::string &name) const { return path_ / name; }

  // Writes a file of that name, and returns its path.
  std::filesystem::path write(const std::string &name, const std::string &bytes) const;

  // How many files and directories it holds.
  std::size_t fileCount() const;

 private:
  std::filesystem::path path_;
};

}  // namespace test_support
