// Bytes that end where an inaccessible page begins: who reads or writes a single byte
// behind them is stopped on the spot, with or without sanitizers.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <span>
#include <string_view>

class GuardedBytes {
 public:
  // Holds up to `capacity` bytes.
  explicit GuardedBytes(std::size_t capacity) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    capacity_ = (capacity + page - 1) / page * page;
    mappedSize_ = capacity_ + page;
    void *const mapped =
        mmap(nullptr, mappedSize_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
      throw std::bad_alloc();
    }
    start_ = static_cast<char *>(mapped);
    if (mprotect(start_ + capacity_, page, PROT_NONE) != 0) {
      throw std::bad_alloc();
    }
  }
  ~GuardedBytes() { munmap(start_, mappedSize_); }
  GuardedBytes(const GuardedBytes &) = delete;
  GuardedBytes &operator=(const GuardedBytes &) = delete;

  // Room for exactly so many bytes, the last one next to the guard.
  std::span<char> room(std::size_t size) { return {start_ + capacity_ - size, size}; }

  // A copy of the bytes; it replaces the one before.
  std::string_view hold(std::string_view bytes) {
    const std::span<char> target = room(bytes.size());
    if (!bytes.empty()) {
      std::memcpy(target.data(), bytes.data(), bytes.size());
    }
    return {target.data(), target.size()};
  }

 private:
  char *start_ = nullptr;
  std::size_t capacity_ = 0;
  std::size_t mappedSize_ = 0;
};
