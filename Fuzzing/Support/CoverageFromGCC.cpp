// Coverage of what g++ compiled. libFuzzer no longer takes the one callback that GCC knows, but it
// takes counters of one's own: so each place that is passed counts in the table below, by its
// address. Two places may share a counter; the fuzzer then sees a little less. The linker puts this
// function in the callback's place (--wrap).

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t numberOfCounters = std::size_t{1} << 14U;

__attribute__((section("__libfuzzer_extra_counters"))) std::uint8_t counters[numberOfCounters];

}  // namespace

extern "C"
    __attribute__((visibility("default"), no_sanitize("address", "undefined", "coverage"))) void
    __wrap___sanitizer_cov_trace_pc() {
  const auto address = reinterpret_cast<std::uintptr_t>(__builtin_return_address(0));
  std::uint8_t &counter = counters[(address ^ address >> 14U) % numberOfCounters];
  counter = static_cast<std::uint8_t>(counter + (counter < 255 ? 1 : 0));
}
