#include <Platform/Log.h>

#include <errno.h>

#include <iostream>
#include <string>

namespace platform {

void logLine(std::string_view line) {
  // In one piece, so that it stays one line beside those of other processes.
  std::cerr << program_invocation_short_name + (": " + std::string(line) + '\n') << std::flush;
}

}  // namespace platform
