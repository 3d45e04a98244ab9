#include "Output.h"

#include <iostream>

namespace terminal {

void print(const TerminalText &text) { std::cout << text.text() << std::flush; }

void printError(const TerminalText &text) { std::cerr << text.text() << std::flush; }

bool wasPrinted() { return std::cout.good(); }

}  // namespace terminal
