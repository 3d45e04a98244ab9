// Writes to standard output and standard error. Each call is written out at once and in one piece,
// so that it stays together beside the output of other processes.
#pragma once

#include "TerminalText.h"

#include <string_view>

namespace terminal {

// A reader that has gone is no concern of the caller's; whoever wants to know asks wasPrinted.
void print(const TerminalText &text);
void printError(const TerminalText &text);

// Whether a person would get to see what goes to standard output.
bool isShown();
// Bytes for another program, whatever they are: to be called only where nobody would see them.
void passOn(std::string_view bytes);

// Whether all that print and passOn were given has reached standard output.
bool wasPrinted();

}  // namespace terminal
