// The version number, one for all that the project builds.
#pragma once

#include "TerminalText.h"

namespace terminal {

// What a program answers to --version: its name and the number, a line.
TerminalText versionLine(Words program);

}  // namespace terminal
