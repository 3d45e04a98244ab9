#include "FailingAllocator.h"

#include <link.h>

#include <cstdint>
#include <cstdlib>
#include <new>
#include <string_view>

namespace {

using plugin_test::FailingAllocator;

struct State {
  bool isCounting = false;
  FailingAllocator::Asked who{};
  FailingAllocator::Refuses refuses{};
  std::size_t refusedNumber = 0;
  std::size_t asked = 0;
  bool hasRefused = false;
  std::size_t alive = 0;
  std::uintptr_t pluginBegin = 0;
  std::uintptr_t pluginEnd = 0;
};
State state;

int notePluginAddresses(dl_phdr_info *file, std::size_t, void *) {
  if (!std::string_view(file->dlpi_name).ends_with("/KorvoMellelPlugin")) {
    return 0;
  }
  for (int index = 0; index < file->dlpi_phnum; ++index) {
    const auto &segment = file->dlpi_phdr[index];
    if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
      state.pluginBegin = file->dlpi_addr + segment.p_vaddr;
      state.pluginEnd = state.pluginBegin + segment.p_memsz;
    }
  }
  return 1;
}

bool isRefused(std::uintptr_t caller) {
  if (!state.isCounting || (state.who == FailingAllocator::Asked::byPlugin &&
                            (caller < state.pluginBegin || caller >= state.pluginEnd))) {
    return false;
  }
  ++state.asked;
  const bool refused = state.refusedNumber != 0 && (state.refuses == FailingAllocator::Refuses::one
                                                        ? state.asked == state.refusedNumber
                                                        : state.asked >= state.refusedNumber);
  state.hasRefused = state.hasRefused || refused;
  return refused;
}

}  // namespace

namespace plugin_test {

FailingAllocator::FailingAllocator(Asked asked, std::size_t refusedNumber, Refuses refuses) {
  dl_iterate_phdr(notePluginAddresses, nullptr);
  state.who = asked;
  state.refuses = refuses;
  state.refusedNumber = refusedNumber;
  state.asked = 0;
  state.hasRefused = false;
  state.isCounting = true;
}

FailingAllocator::~FailingAllocator() { state.isCounting = false; }

std::size_t FailingAllocator::asked() { return state.asked; }
bool FailingAllocator::hasRefused() { return state.hasRefused; }
std::size_t FailingAllocator::alive() { return state.alive; }

}  // namespace plugin_test

void *operator new(std::size_t size) {
  const auto caller = reinterpret_cast<std::uintptr_t>(__builtin_return_address(0));
  void *block = isRefused(caller) ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  ++state.alive;
  return block;
}

// The sanitizers have one of their own, and would not know its blocks again in the delete below.
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}

void operator delete(void *block) noexcept {
  if (block != nullptr) {
    --state.alive;
    std::free(block);
  }
}

void operator delete(void *block, std::size_t) noexcept { operator delete(block); }
