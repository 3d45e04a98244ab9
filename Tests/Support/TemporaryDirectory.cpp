#include "TemporaryDirectory.h"

#include "Files.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <system_error>

namespace test_support {

TemporaryDirectory::TemporaryDirectory(const std::filesystem::path &parent) {
  std::string pattern = (parent / "korvo-mellel-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), pattern);
  }
  path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TemporaryDirectory::write(const std::string &name,
                                                const std::string &bytes) const {
  writeFile(path_ / name, bytes);
  return path_ / name;
}

std::size_t TemporaryDirectory::fileCount() const {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_),
                                                std::filesystem::directory_iterator()));
}

}  // namespace test_support
