// What a script may take before it is held to be one that never ends.
#pragma once

#include <chrono>
#include <cstddef>

namespace korvo::engine {

struct WorkLimit {
  std::chrono::milliseconds time;  // of the processor
  std::size_t bytes;               // of memory, in addition to what the process had before
};

}  // namespace korvo::engine
