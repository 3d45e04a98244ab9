// Citations looked up in a library, by identifier and by author and year.

#include "Job.h"

#include <StandIns/Korvo/Library/Library.h>

#include <memory>
#include <string>
#include <vector>

namespace benchmarks {

namespace {

constexpr int referenceCount = 2'000;
constexpr int lookUps = 500;

korvo::library::NewReference numbered(int number) {
  const std::string text = std::to_string(number);
  return {.identifier = "KEY" + text,
          .cslJson = R"({"type":"book","title":"On heat, part )" + text +
                     R"(","author":[{"family":"Author)" + text +
                     R"(","given":"Ann"}],"issued":{"date-parts":[[)" +
                     std::to_string(1900 + number % 120) + "]]}}"};
}

std::shared_ptr<korvo::library::Library> filledLibrary() {
  std::vector<korvo::library::NewReference> references;
  for (int number = 0; number < referenceCount; ++number) {
    references.push_back(numbered(number));
  }
  auto made = korvo::library::Library::temporary("counted");
  require(made && made->add(references), "fill a library");
  return std::make_shared<korvo::library::Library>(*std::move(made));
}

std::function<void()> match() {
  std::vector<std::string> tags;
  for (int number = 0; number < lookUps; ++number) {
    tags.push_back(number % 2 == 0 ? "KEY" + std::to_string(number)
                                   : "Author" + std::to_string(number) + " " +
                                         std::to_string(1900 + number % 120));
  }
  return [tags, library = filledLibrary()] {
    for (const std::string &tag : tags) {
      const auto found = library->matching(tag);
      require(found && found->size() == 1, "match a citation");
    }
  };
}

}  // namespace

std::vector<Job> libraryJobs() { return {{"match 500 citations in a library of 2,000", match}}; }

}  // namespace benchmarks
