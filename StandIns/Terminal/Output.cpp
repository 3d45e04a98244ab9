#include "Output.h"

#include <unistd.h>

#include <iostream>

namespace terminal {

void print(const TerminalText &text) { std::cout << text.text() << std::flush; }

void printError(const TerminalText &text) { std::cerr << text.text() << std::flush; }

bool isShown() { return isatty(STDOUT_FILENO) == 1; }

void passOn(std::string_view bytes) { std::cout << bytes << std::flush; }

bool wasPrinted() { return std::cout.good(); }

}  // namespace terminal
