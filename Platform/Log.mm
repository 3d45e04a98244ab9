#include <Platform/Log.h>

#import <Foundation/Foundation.h>

#include <string>

namespace platform {

void logLine(std::string_view line) { NSLog(@"%s", std::string(line).c_str()); }

}  // namespace platform
