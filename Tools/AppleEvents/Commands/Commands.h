// What the process does.
#pragma once

namespace appleevents {

// Carries out what the arguments ask for, the first of which is the program's name: results go to
// standard output, what is wrong is one line on standard error. The exit status.
int run(int count, const char *const *arguments);

}  // namespace appleevents
