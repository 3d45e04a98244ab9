// A call that no C++ exception leaves. It is compiled as plain C++, because GCC's Objective-C++
// mishandles typed catch clauses.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace platform {

// Makes the call. What the exception that left it says, if one did.
std::optional<std::string> exceptionLeaving(const std::function<void()> &call);

}  // namespace platform
