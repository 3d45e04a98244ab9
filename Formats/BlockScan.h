// Finds units of a kind in a text, and copies what lies between them.
//
// The texts that pass through here consist almost entirely of units that need no attention.
// So a whole block is tested without a branch, in a loop whose count the compiler knows
// and therefore turns into vector instructions. The answers are a byte each, and the first that
// is not zero is found by counting the zeros of a machine word: no unit is looked at by itself
// but the last few of a text.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace formats {

constexpr std::size_t scanBlockSize = 16;  // units

// The index of the first of a block's units for which the predicate holds, or the block's size.
// The predicate must be free of branches: comparisons joined by | and &. Pass a lambda, not a
// function: a call through a pointer may not be inlined, which costs tenfold.
template <typename Unit, typename IsWanted>
std::size_t firstInBlock(const Unit *block, IsWanted isWanted) {
  static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");
  std::uint8_t answers[scanBlockSize];
  for (std::size_t index = 0; index < scanBlockSize; ++index) {
    answers[index] = static_cast<std::uint8_t>(isWanted(block[index]));
  }
  std::uint64_t halves[2];
  static_assert(sizeof halves == sizeof answers);
  std::memcpy(halves, answers, sizeof halves);
  // The processor guesses which half it is, and goes on before the answers are there.
  if (halves[0] != 0) {
    return static_cast<std::size_t>(std::countr_zero(halves[0])) / 8;
  }
  if (halves[1] != 0) {
    return 8 + static_cast<std::size_t>(std::countr_zero(halves[1])) / 8;
  }
  return scanBlockSize;
}

// The index of the first unit at or after `from` for which the predicate holds, or the length
// of the text.
template <typename Unit, typename IsWanted>
std::size_t findFirst(std::basic_string_view<Unit> text, std::size_t from, IsWanted isWanted) {
  while (text.size() - from >= scanBlockSize) {
    const std::size_t index = firstInBlock(text.data() + from, isWanted);
    from += index;
    if (index < scanBlockSize) {
      return from;
    }
  }
  while (from < text.size() && !isWanted(text[from])) {
    ++from;
  }
  return from;
}

// Copies a block, widening or narrowing each unit.
template <std::size_t size = scanBlockSize, typename Unit, typename Target>
void copyBlock(const Unit *block, Target *target) {
  // Through arrays of their own, which the compiler knows not to overlap.
  std::make_unsigned_t<Unit> units[size];
  std::memcpy(units, block, sizeof units);
  Target copied[size];
  for (std::size_t index = 0; index < size; ++index) {
    copied[index] = static_cast<Target>(units[index]);
  }
  std::memcpy(target, copied, sizeof copied);
}

// Copies the units at or after `from` up to the first for which the predicate holds, or to
// the end, widening or narrowing each; returns the index of that unit. What lies in the target
// behind the copied units, as far as the rest of the text would reach, may be overwritten.
template <typename Unit, typename Target, typename IsWanted>
std::size_t copyUpTo(std::basic_string_view<Unit> text, std::size_t from, Target *target,
                     IsWanted isWanted) {
  const std::size_t start = from;
  while (text.size() - from >= scanBlockSize) {
    copyBlock(text.data() + from, target + (from - start));
    const std::size_t index = firstInBlock(text.data() + from, isWanted);
    from += index;
    if (index < scanBlockSize) {
      return from;
    }
  }
  while (from < text.size() && !isWanted(text[from])) {
    target[from - start] = static_cast<Target>(text[from]);
    ++from;
  }
  return from;
}

constexpr std::size_t longBlockSize = 32;  // units

// Whether the predicate holds for any of a long block's units.
template <typename Unit, typename IsWanted>
bool isAnyInLongBlock(const Unit *block, IsWanted isWanted) {
  // As wide as a unit, so that the compiler need not narrow the answers.
  std::make_unsigned_t<Unit> any = 0;
  for (std::size_t index = 0; index < longBlockSize; ++index) {
    any |= static_cast<std::make_unsigned_t<Unit>>(isWanted(block[index]));
  }
  return any != 0;
}

// The same as copyUpTo, faster where many pieces are long: behind some blocks that held nothing,
// long ones are asked for no more than whether they hold anything.
template <typename Unit, typename Target, typename IsWanted>
std::size_t copyLongPiece(std::basic_string_view<Unit> text, std::size_t from, Target *target,
                          IsWanted isWanted) {
  constexpr std::size_t usualLength = 3 * scanBlockSize;
  const std::size_t usualEnd = from + std::min(usualLength, text.size() - from);
  std::size_t end = copyUpTo(text.substr(0, usualEnd), from, target, isWanted);
  if (end < usualEnd) {
    return end;
  }
  while (text.size() - end >= longBlockSize && !isAnyInLongBlock(text.data() + end, isWanted)) {
    copyBlock<longBlockSize>(text.data() + end, target + (end - from));
    end += longBlockSize;
  }
  return copyUpTo(text, end, target + (end - from), isWanted);
}

// How many units of the text there are for which the predicate holds.
template <typename Unit, typename IsWanted>
std::size_t count(std::basic_string_view<Unit> text, IsWanted isWanted) {
  constexpr std::size_t blockSize = 256;
  std::size_t sum = 0;
  std::size_t position = 0;
  for (; text.size() - position >= blockSize; position += blockSize) {
    const Unit *const block = text.data() + position;
    std::uint16_t blockSum = 0;
    for (std::size_t index = 0; index < blockSize; ++index) {
      blockSum = static_cast<std::uint16_t>(blockSum + isWanted(block[index]));
    }
    sum += blockSum;
  }
  for (; position < text.size(); ++position) {
    sum += isWanted(text[position]) ? 1 : 0;
  }
  return sum;
}

}  // namespace formats
