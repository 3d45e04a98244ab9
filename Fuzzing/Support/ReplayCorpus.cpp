// Runs a fuzz target over its corpus: the regression test of what fuzzing reached and found. The
// last line printed before a finding is that of the input.

#include "CorpusFile.h"
#include "Target.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

void replay(const fuzzing::CorpusInput &input) {
  std::printf("%s\n", fuzzing::encodeInput(input).c_str());
  std::fflush(stdout);
  // Of exactly this size, so that the address sanitizer sees the first byte outside.
  const std::unique_ptr<char[]> bytes(new char[input.bytes.size()]);
  std::ranges::copy(input.bytes, bytes.get());
  fuzzing::run({bytes.get(), input.bytes.size()});
}

}  // namespace

int main(int argumentCount, char **arguments) {
  if (argumentCount != 2) {
    std::fprintf(stderr, "usage: %s CORPUS\n", arguments[0]);
    return 2;
  }
  try {
    const std::vector<fuzzing::CorpusInput> inputs = fuzzing::readCorpus(arguments[1]);
    std::ranges::for_each(inputs, replay);
    std::printf("%zu inputs\n", inputs.size());
    // An empty corpus would be a test that tests nothing.
    return inputs.empty() ? 1 : 0;
  } catch (const fuzzing::CorpusError &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}
