#include "LiveBytes.h"

#include <malloc.h>

#include <cstdlib>

// Of the sanitizers' run time, which has a heap of its own; null in builds without it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace test_support {

std::size_t liveBytes() {
  if (__sanitizer_get_current_allocated_bytes != nullptr) {
    return __sanitizer_get_current_allocated_bytes();
  }
  const auto figures = mallinfo2();
  return figures.uordblks + figures.hblkhd;
}

bool freedMemoryIsGivenBack() { return __sanitizer_get_current_allocated_bytes == nullptr; }

void makeProcessesCountExactly() { setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1); }

}  // namespace test_support
