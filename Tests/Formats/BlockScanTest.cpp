// The scans against a loop over single units: every place of what is wanted, every length around
// the block's, and every start, in memory that ends where the text does.
#include "GuardedBytes.h"

#include <Formats/BlockScan.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

constexpr std::size_t longest = 3 * formats::scanBlockSize + 2 * formats::longBlockSize + 3;

// A text of so many units at the very end of accessible memory.
template <typename Unit>
std::basic_string_view<Unit> heldAtEnd(GuardedBytes &memory, std::size_t length) {
  auto *const units = reinterpret_cast<Unit *>(memory.room(length * sizeof(Unit)).data());
  std::fill_n(units, length, Unit{'a'});
  return {units, length};
}

template <typename Unit>
Unit &unitAt(std::basic_string_view<Unit> text, std::size_t index) {
  return const_cast<Unit &>(text[index]);
}

constexpr auto isWanted = [](auto unit) { return (unit == 'x') | (unit == 'y'); };

template <typename Unit>
class BlockScan : public testing::Test {};
using Units = testing::Types<char, char16_t>;
TYPED_TEST_SUITE(BlockScan, Units);

TYPED_TEST(BlockScan, FindsTheFirstWantedUnitFromEveryStart) {
  GuardedBytes memory(longest * sizeof(TypeParam));
  for (std::size_t length = 0; length <= longest; ++length) {
    for (std::size_t place = 0; place <= length; ++place) {
      const auto text = heldAtEnd<TypeParam>(memory, length);
      if (place < length) {
        unitAt(text, place) = 'x';
        unitAt(text, length - 1) = 'y';
      }
      for (std::size_t from = 0; from <= length; ++from) {
        std::size_t expected = from;
        while (expected < length && text[expected] != 'x' && text[expected] != 'y') {
          ++expected;
        }
        ASSERT_EQ(formats::findFirst(text, from, isWanted), expected);
      }
    }
  }
}

TYPED_TEST(BlockScan, CopiesUpToTheFirstWantedUnitAndNeverPastTheTextsEnd) {
  GuardedBytes memory(longest * sizeof(TypeParam));
  GuardedBytes targetMemory(longest * sizeof(char16_t));
  for (std::size_t length = 0; length <= longest; ++length) {
    for (std::size_t place = 0; place <= length; ++place) {
      const auto text = heldAtEnd<TypeParam>(memory, length);
      if (place < length) {
        unitAt(text, place) = 'x';
      }
      for (std::size_t from = 0; from <= length; ++from) {
        const std::size_t expected = from <= place ? place : length;
        const auto target = heldAtEnd<char16_t>(targetMemory, length - from);
        auto *const units = const_cast<char16_t *>(target.data());
        ASSERT_EQ(formats::copyUpTo(text, from, units, isWanted), expected);
        ASSERT_EQ(std::u16string(units, expected - from), std::u16string(expected - from, u'a'));
        std::fill_n(units, length - from, u'z');
        ASSERT_EQ(formats::copyLongPiece(text, from, units, isWanted), expected);
        ASSERT_EQ(std::u16string(units, expected - from), std::u16string(expected - from, u'a'));
      }
    }
  }
}

TYPED_TEST(BlockScan, CountsTheWantedUnitsOfEveryLength) {
  constexpr std::size_t severalBlocks = 800;
  GuardedBytes memory(severalBlocks * sizeof(TypeParam));
  for (std::size_t length = 0; length <= severalBlocks; ++length) {
    const auto text = heldAtEnd<TypeParam>(memory, length);
    ASSERT_EQ(formats::count(text, isWanted), 0u);
    std::size_t wanted = 0;
    for (std::size_t index = 0; index < length; index += 1 + index % 3) {
      unitAt(text, index) = 'y';
      ++wanted;
    }
    ASSERT_EQ(formats::count(text, isWanted), wanted);
    ASSERT_EQ(formats::count(text, [](auto unit) { return unit != 0; }), length);
  }
}

TEST(BlockScanConversion, WidensAndNarrowsEveryUnitAsAnUnsignedNumber) {
  std::string bytes;
  for (int value = 0; value < 256; ++value) {
    bytes += static_cast<char>(value);
  }
  std::u16string wide(bytes.size(), u'\0');
  const auto nothing = [](auto) { return false; };
  formats::copyUpTo(std::string_view(bytes), 0, wide.data(), nothing);
  for (std::size_t value = 0; value < wide.size(); ++value) {
    EXPECT_EQ(wide[value], value);
  }
  std::string narrow(wide.size(), '\0');
  formats::copyUpTo(std::u16string_view(wide), 0, narrow.data(), nothing);
  EXPECT_EQ(narrow, bytes);
}

}  // namespace
