// What a process takes of the machine's memory, as the kernel sees it.
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace test_support {

struct MemoryFigures {
  // Resident, and how much of it is written to and its own, in bytes. (The share of pages that
  // several processes map changes with every other process.)
  std::size_t resident = 0;
  std::size_t ownWritten = 0;
  // The most that was ever resident.
  std::size_t mostResident = 0;
};

// All 0 when there is no such process.
MemoryFigures memoryOf(pid_t process);

}  // namespace test_support
