// Turns a corpus file into the files that libFuzzer works with, and back.

#include "CorpusFile.h"

#include <cstddef>
#include <cstdio>
#include <exception>
#include <span>
#include <string_view>

namespace {

// False where the arguments are none of the three commands.
bool run(std::span<char *> arguments) {
  const std::string_view command = arguments.empty() ? "" : arguments[0];
  if (command == "unpack" && arguments.size() == 3) {
    fuzzing::unpackCorpus(arguments[1], arguments[2]);
  } else if (command == "pack" && arguments.size() == 3) {
    fuzzing::packCorpus(arguments[1], arguments[2]);
  } else if (command == "add" && arguments.size() == 4) {
    fuzzing::addInput(arguments[1], arguments[2], arguments[3]);
  } else {
    return false;
  }
  return true;
}

}  // namespace

int main(int argumentCount, char **arguments) {
  try {
    if (!run(std::span(arguments, static_cast<std::size_t>(argumentCount)).subspan(1))) {
      std::fprintf(stderr,
                   "usage: %s unpack CORPUS DIRECTORY | pack DIRECTORY CORPUS | "
                   "add CORPUS NAME INPUT\n",
                   arguments[0]);
      return 2;
    }
  } catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
