// Writes to standard output and standard error. Each call is written out at once and in one piece,
// so that it stays together beside the output of other processes.
#pragma once

#include "TerminalText.h"

namespace terminal {

// A reader that has gone is no concern of the caller's; whoever wants to know asks wasPrinted.
void print(const TerminalText &text);
void printError(const TerminalText &text);

// Whether all that print was given has reached standard output.
bool wasPrinted();

}  // namespace terminal
