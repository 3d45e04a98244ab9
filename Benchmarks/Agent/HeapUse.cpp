#include "HeapUse.h"

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

// The C library's own, under the names that it keeps for who stands before it.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);
}

namespace {

constexpr std::ptrdiff_t headerOfBlock = sizeof(std::size_t);

// One thread measures; the others of the libraries sleep meanwhile.
bool isCounting = false;
std::ptrdiff_t inUse = 0;
std::ptrdiff_t peak = 0;

std::ptrdiff_t sizeOf(void *block) {
  return block == nullptr ? 0
                          : static_cast<std::ptrdiff_t>(malloc_usable_size(block)) + headerOfBlock;
}

void *counted(void *block) {
  if (isCounting) {
    inUse += sizeOf(block);
    peak = std::max(peak, inUse);
  }
  return block;
}

void discount(void *block) {
  if (isCounting) {
    inUse -= sizeOf(block);
  }
}

}  // namespace

#define SEEN_BY_LIBRARIES __attribute__((visibility("default")))

extern "C" {

SEEN_BY_LIBRARIES void *malloc(std::size_t size) { return counted(__libc_malloc(size)); }

SEEN_BY_LIBRARIES void *calloc(std::size_t count, std::size_t size) {
  return counted(__libc_calloc(count, size));
}

SEEN_BY_LIBRARIES void *realloc(void *block, std::size_t size) {
  const std::ptrdiff_t before = isCounting ? sizeOf(block) : 0;
  void *const moved = __libc_realloc(block, size);
  if (moved != nullptr || size == 0) {
    inUse -= before;
  }
  return counted(moved);
}

SEEN_BY_LIBRARIES void *memalign(std::size_t alignment, std::size_t size) {
  return counted(__libc_memalign(alignment, size));
}

SEEN_BY_LIBRARIES void *aligned_alloc(std::size_t alignment, std::size_t size) {
  return counted(__libc_memalign(alignment, size));
}

SEEN_BY_LIBRARIES int posix_memalign(void **block, std::size_t alignment, std::size_t size) {
  *block = counted(__libc_memalign(alignment, size));
  return *block == nullptr ? ENOMEM : 0;
}

SEEN_BY_LIBRARIES void free(void *block) {
  discount(block);
  __libc_free(block);
}
}

namespace benchmarks {

std::size_t peakHeapUse(const std::function<void()> &work) {
  inUse = 0;
  peak = 0;
  isCounting = true;
  work();
  isCounting = false;
  return static_cast<std::size_t>(peak);
}

}  // namespace benchmarks
