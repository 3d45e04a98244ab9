// Four-character codes as people read them, for log lines.
#pragma once

#include <ApplicationServices/MacTypes.h>

#include <string>

namespace platform {

// 'SCNQ' in quotation marks; characters that do not print become "?".
std::string inQuotes(FourCharCode code);

}  // namespace platform
