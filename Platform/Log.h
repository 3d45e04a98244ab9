// One line to the log, for the parts that know no Cocoa.
#pragma once

#include <string_view>

namespace platform {

// UTF-8; without a newline.
void logLine(std::string_view line);

}  // namespace platform
