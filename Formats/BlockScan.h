// Finds the first code unit of a kind in a text.
//
// The texts that pass through here consist almost entirely of units that need no attention.
// So a whole block is tested without a branch, in a loop whose count the compiler knows
// and therefore turns into vector instructions; only a block that holds a wanted unit is
// looked at unit by unit.
#pragma once

#include <cstddef>
#include <string_view>

namespace formats {

// The index of the first unit at or after `from` for which the predicate holds, or the length
// of the text. The predicate must be free of branches: comparisons joined by | and &. Pass a
// lambda, not a function: a call through a pointer may not be inlined, which costs tenfold.
template <typename Unit, typename IsWanted>
std::size_t findFirst(std::basic_string_view<Unit> text, std::size_t from, IsWanted isWanted) {
  // Wanted units often stand side by side (a text in Chinese): no block is tested for these.
  if (from < text.size() && isWanted(text[from])) {
    return from;
  }
  constexpr std::size_t blockSize = 32;
  while (text.size() - from >= blockSize) {
    const Unit *const block = text.data() + from;
    Unit wantedUnits = 0;
    for (std::size_t index = 0; index < blockSize; ++index) {
      wantedUnits |= static_cast<Unit>(isWanted(block[index]));
    }
    if (wantedUnits != 0) {
      break;
    }
    from += blockSize;
  }
  while (from < text.size() && !isWanted(text[from])) {
    ++from;
  }
  return from;
}

}  // namespace formats
