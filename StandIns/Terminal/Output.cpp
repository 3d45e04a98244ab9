#include "Output.h"

#include <unistd.h>

#include <cstdio>

namespace terminal {

namespace {

void write(std::FILE *stream, std::string_view bytes) {
  std::fwrite(bytes.data(), 1, bytes.size(), stream);
  std::fflush(stream);
}

}  // namespace

void print(const TerminalText &text) { write(stdout, text.text()); }

void printError(const TerminalText &text) { write(stderr, text.text()); }

bool isShown() { return isatty(STDOUT_FILENO) == 1; }

void passOn(std::string_view bytes) { write(stdout, bytes); }

bool wasPrinted() { return std::ferror(stdout) == 0; }

}  // namespace terminal
