#include "Files.h"

#include <fstream>
#include <iterator>

namespace test_support {

std::string readFile(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::filesystem::path &path, const std::string &bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace test_support
