// Runs a fuzz target over the files of its corpus: the regression test of what fuzzing reached
// and found. The last name printed before a finding is that of the input.

#include "Target.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

int main(int argumentCount, char **arguments) {
  if (argumentCount != 2 || !std::filesystem::is_directory(arguments[1])) {
    std::fprintf(stderr, "usage: %s CORPUS\n", arguments[0]);
    return 2;
  }
  std::vector<std::filesystem::path> files;
  for (const auto &entry : std::filesystem::directory_iterator(arguments[1])) {
    files.push_back(entry.path());
  }
  std::ranges::sort(files);
  for (const std::filesystem::path &file : files) {
    std::printf("%s\n", file.filename().c_str());
    std::fflush(stdout);
    std::ifstream stream(file, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    // Of exactly this size, so that the address sanitizer sees the first byte outside.
    const std::unique_ptr<char[]> bytes(new char[content.size()]);
    std::ranges::copy(content, bytes.get());
    fuzzing::run({bytes.get(), content.size()});
  }
  std::printf("%zu inputs\n", files.size());
  // An empty corpus would be a test that tests nothing.
  return files.empty() ? 1 : 0;
}
