// A fuzz target's corpus as one text file, so that a commit shows what came and went.
//
// An input a line, between quotes, where that is needed behind its name and a blank:
//
//   found-empty-text-in-an-empty-paragraph "{\\rtf1 }\x00"
//   "a citation whose name is in its bytes"
//
// Between the quotes stands printable ASCII, but for \\ and \" themselves, and \n, \r, \t; every
// other byte is \x and two lower-case hexadecimal digits. Each input has one spelling.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace fuzzing {

// Says where it is ("FILE:LINE: …" once the file is known) and what is wrong there.
class CorpusError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct CorpusInput {
  // Why the input is kept, in words joined by hyphens; empty where it was kept for what it reaches.
  std::string name;
  std::string bytes;

  auto operator<=>(const CorpusInput &) const = default;
};

// Named inputs are letters, digits and hyphens, and not hexadecimal digits alone: that is what
// libFuzzer calls its files.
bool isInputName(std::string_view name);

// One line, without its end.
std::string encodeInput(const CorpusInput &input);
// Throws CorpusError for anything that encodeInput does not write.
CorpusInput decodeInput(std::string_view line);

// The named inputs first, then by their bytes, each once. The order of the file, so that the same
// inputs always make the same file.
void sortInputs(std::vector<CorpusInput> &inputs);

// Both throw CorpusError, also for a file that cannot be read or written whole.
std::vector<CorpusInput> readCorpus(const std::filesystem::path &file);
void writeCorpus(const std::filesystem::path &file, std::vector<CorpusInput> inputs);

// The same inputs, a file each, as libFuzzer takes and leaves them. unpackCorpus makes the
// directory; packCorpus throws CorpusError where it holds no file at all.
void unpackCorpus(const std::filesystem::path &file, const std::filesystem::path &directory);
void packCorpus(const std::filesystem::path &directory, const std::filesystem::path &file);

// Adds the bytes of a file, a finding, under a name that the corpus does not have yet.
void addInput(const std::filesystem::path &corpus, const std::string &name,
              const std::filesystem::path &input);

}  // namespace fuzzing
