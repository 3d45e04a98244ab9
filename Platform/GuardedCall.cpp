#include "GuardedCall.h"

#include <exception>

namespace platform {

std::optional<std::string> exceptionLeaving(const std::function<void()> &call) {
  try {
    call();
  } catch (const std::exception &exception) {
    return exception.what();
  } catch (...) {
    return "an object that is no std::exception";
  }
  return std::nullopt;
}

}  // namespace platform
