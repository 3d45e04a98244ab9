// What Formats does, each on about the same number of bytes.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace benchmarks {

struct Job {
  std::string name;
  std::size_t bytes;  // of the input
  // Does it once and returns something that depends on all of the result.
  std::function<std::size_t()> work;
};

// A pidgin RTF text of so many bytes as a document that any reader of RTF takes.
std::string documentOfPidginRTF(std::size_t bytes);

// The yardstick comes first: "memcpy", of so many bytes. Then, beside it, conversions of
// Formats and of iconv, and each decoder, encoder, parser and translator. Left out are the messages
// of a few bytes, and the removal of verified markers, which looks at the start of a text only.
std::vector<Job> jobs(std::size_t bytes);

}  // namespace benchmarks
