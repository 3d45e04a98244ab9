#include "AppleEventMessage.h"

#include <algorithm>

namespace platform {

const Parameter *findParameter(const Parameters &parameters, AEKeyword keyword) {
  const auto found = std::ranges::find(parameters, keyword, &Parameter::keyword);
  return found == parameters.end() ? nullptr : &*found;
}

}  // namespace platform
