// What the process does.
#pragma once

#include <span>

namespace appleevents {

// Carries out what the arguments (without the program's name) ask for: results go to standard
// output, what is wrong is one line on standard error. The exit status.
int run(std::span<const char *const> arguments);

}  // namespace appleevents
