// Text whose letters differ in case only, made the same.
#pragma once

#include <string>
#include <string_view>

namespace korvo::engine {

// By Unicode's full case folding. UTF-8 in and out; invalid bytes become U+FFFD.
std::string caseFolded(std::string_view text);

}  // namespace korvo::engine
