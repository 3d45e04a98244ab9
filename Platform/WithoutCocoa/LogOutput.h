// Where the lines of Platform's log go in a process without Cocoa.
#pragma once

#include <string_view>

namespace platform {

// UTF-8, without a newline. A line may name other processes, and hold what they said.
using LogWriter = void (*)(std::string_view line);

// Until then they go to standard error, behind the program's name. For a program whose standard
// error may be a terminal.
void sendLogTo(LogWriter writer);

}  // namespace platform
