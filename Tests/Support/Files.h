// Whole files, for tests: what cannot be read is empty, what cannot be written fails the test that
// reads it.
#pragma once

#include <filesystem>
#include <string>

namespace test_support {

std::string readFile(const std::filesystem::path &path);
void writeFile(const std::filesystem::path &path, const std::string &bytes);

}  // namespace test_support
