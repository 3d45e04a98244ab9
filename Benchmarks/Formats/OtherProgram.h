// A program of other people at work on a file, as a child process.
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <vector>

namespace benchmarks {

struct Work {
  double seconds = 0;           // of processor time, the program's whole life
  std::uintmax_t produced = 0;  // bytes on its standard output
};

// Runs `arguments` (the program's name first, looked up in PATH) with its standard output in a file
// and its messages dropped. An error is one line: it is not installed, or did not end with 0.
std::expected<Work, std::string> run(const std::vector<std::string> &arguments,
                                     const std::filesystem::path &output);

}  // namespace benchmarks
