#include "EngineRandomDocuments.h"

#include <array>
#include <fstream>
#include <iterator>

namespace korvo_test {

std::string collidingItem(std::mt19937 &random, std::size_t index) {
  constexpr std::array families = {"Smith", "Jones", "van Gogh", "Müller", "de la Cruz", "Li"};
  constexpr std::array given = {"John", "Jane", "A. B.", "Jean-Paul"};
  constexpr std::array types = {"article-journal", "book", "chapter", "thesis", "webpage"};
  const auto number = [&](std::size_t below) { return random() % below; };
  std::string authors;
  for (std::size_t people = number(4); people > 0; --people) {
    authors += std::string(authors.empty() ? "" : ",") + R"({"family":")" +
               families[number(families.size())] + R"(","given":")" + given[number(given.size())] +
               "\"}";
  }
  return R"({"type":")" + std::string(types[number(types.size())]) + R"(","title":"Title )" +
         std::to_string(number(9)) + R"( of things","author":[)" + authors +
         R"(],"issued":{"date-parts":[[)" + std::to_string(1990 + number(3)) +
         R"(]]},"container-title":"Journal","volume":")" + std::to_string(index) +
         R"(","page":"3-7","publisher":"Press"})";
}

Items collidingLibrary(std::mt19937 &random, std::size_t count) {
  Items items;
  for (std::size_t index = 0; index < count; ++index) {
    items["item" + std::to_string(index)] = collidingItem(random, index);
  }
  return items;
}

CiteGroup randomGroup(std::mt19937 &random, std::size_t items) {
  CiteGroup group;
  for (std::size_t cites = 1 + random() % 3; cites > 0; --cites) {
    Cite made = cite("item" + std::to_string(random() % items));
    if (random() % 3 == 0) {
      made.pageRange = u"1" + std::u16string(1, static_cast<char16_t>(u'0' + random() % 10));
    }
    if (random() % 5 == 0) {
      made.prefix = u"see ";
    }
    group.push_back(std::move(made));
  }
  return group;
}

std::vector<CiteGroup> randomGroups(std::mt19937 &random, std::size_t count, std::size_t items) {
  std::vector<CiteGroup> groups;
  while (groups.size() < count) {
    groups.push_back(randomGroup(random, items));
  }
  return groups;
}

korvo::engine::CitationProcessor &referenceProcessor() {
  static const std::string script = [] {
    std::ifstream stream(CITATION_REFERENCE_SCRIPT, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }();
  static korvo::engine::CitationProcessor shared("/usr/share/citation-style-language/locales",
                                                 script);
  return shared;
}

}  // namespace korvo_test
