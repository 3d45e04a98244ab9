// How a library of 100,000 references behaves. The bounds are loose, many times what is
// measured on an idle machine: they tell an index from a search through everything.

#include <StandIns/Korvo/Library/Library.h>
#include <Tests/Support/Effort.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>

using korvo::library::Library;
using korvo::library::NewReference;
using korvo::library::SortColumn;
using test_support::TemporaryDirectory;

namespace {

constexpr int referenceCount = test_support::effort(100000, 10000);

class Stopwatch {
 public:
  double milliseconds() const {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_)
        .count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

NewReference numbered(int number) {
  const std::string text = std::to_string(number);
  return {.identifier = number % 10 == 0 ? "" : "KEY" + text,
          .cslJson = R"({"type":"article-journal","title":"On the measurement of heat, part )" +
                     text +
                     R"(","container-title":"Journal of Papers","author":[{"family":"Author)" +
                     std::to_string(number / 2) +
                     R"(","given":"Ann"},{"family":"Jones","given":"Ben"}],)" +
                     R"("volume":"12","page":"1-10","issued":{"date-parts":[[)" +
                     std::to_string(1900 + number % 120) + "]]}}"};
}

}  // namespace

TEST(LargeLibrary, OpensAtOnceAndAnswersFromItsIndexes) {
  const TemporaryDirectory directory;
  const auto file = directory / "large.korvolib";
  {
    std::vector<NewReference> references;
    for (int number = 0; number < referenceCount; ++number) {
      references.push_back(numbered(number));
    }
    auto made = Library::openOrCreate(file);
    ASSERT_TRUE(made) << made.error();
    const Stopwatch filling;
    ASSERT_TRUE(made->add(references));
    std::cout << "added in " << filling.milliseconds() << " ms, "
              << std::filesystem::file_size(file) << " bytes\n";
  }

  const Stopwatch opening;
  auto large = Library::open(file);
  ASSERT_TRUE(large) << large.error();
  const double opened = opening.milliseconds();
  const Stopwatch listing;
  ASSERT_EQ(large->list({}, "")->size(), static_cast<std::size_t>(referenceCount));
  const double listed = listing.milliseconds();

  const Stopwatch matching;
  for (int number = 0; number < referenceCount / 10; number += 2) {
    ASSERT_EQ(large->matching("KEY" + std::to_string(number * 10 + 1))->size(), 1U);
    ASSERT_EQ(large
                  ->matching("Author" + std::to_string(number) + " & Jones, " +
                             std::to_string(1900 + number * 2 % 120))
                  ->size(),
              1U);
  }
  const double perMatch = matching.milliseconds() / (referenceCount / 10.0);

  const Stopwatch sorting;
  ASSERT_TRUE(large->list({SortColumn::title, false}, ""));
  const double sorted = sorting.milliseconds();
  const Stopwatch searching;
  ASSERT_EQ(large->list({}, "heat " + std::to_string(referenceCount - 1))->size(), 1U);
  const double searched = searching.milliseconds();

  std::cout << "opened in " << opened << " ms, listed in " << listed << " ms, matched in "
            << perMatch << " ms each, sorted by title in " << sorted << " ms, searched in "
            << searched << " ms\n";
  EXPECT_LT(opened, 1000);
  EXPECT_LT(listed, 2000);
  EXPECT_LT(perMatch, 1);
  EXPECT_LT(sorted, 10'000);
  EXPECT_LT(searched, 10'000);
}
