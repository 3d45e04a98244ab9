// Four-character codes in the tests of the platform.
#pragma once

#include <ApplicationServices/MacTypes.h>

namespace platform_test {

consteval FourCharCode code(const char (&characters)[5]) {
  FourCharCode value = 0;
  for (int index = 0; index < 4; ++index) {
    value = value << 8 | static_cast<unsigned char>(characters[index]);
  }
  return value;
}

}  // namespace platform_test
