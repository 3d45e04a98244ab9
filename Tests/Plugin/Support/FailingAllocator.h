// Operator new of the whole program, which fails when told to. A program that links
// FailingAllocator.cpp has it in place of its library's; the memory is malloc's.
#pragma once

#include <cstddef>

namespace plugin_test {

// Counts the blocks that are asked for while it lives, and refuses one of them or all from it on.
class FailingAllocator {
 public:
  enum class Asked { byAnybody, byPlugin };
  enum class Refuses { one, allThatFollow };

  // The number counts from 1; 0 refuses none. "byPlugin" counts what code between the addresses of
  // the plug-in's file asks for itself, inlined library code included.
  FailingAllocator(Asked asked, std::size_t refusedNumber, Refuses refuses = Refuses::one);
  ~FailingAllocator();
  FailingAllocator(const FailingAllocator &) = delete;
  FailingAllocator &operator=(const FailingAllocator &) = delete;

  static std::size_t asked();
  static bool hasRefused();

  // Blocks that exist at this moment.
  static std::size_t alive();
};

}  // namespace plugin_test
