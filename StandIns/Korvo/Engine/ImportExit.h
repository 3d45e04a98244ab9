// How the reader of a library file ends.
#pragma once

namespace korvo::engine {

inline constexpr int importTookTooMuchMemory = 3;

}  // namespace korvo::engine
