#include "EngineRandomDocuments.h"

#include <array>
#include <fstream>
#include <iterator>

namespace korvo_test {

namespace {

// Up to that many people, perhaps nobody.
std::string people(std::mt19937 &random, std::size_t most) {
  constexpr std::array families = {"Smith", "Jones", "van Gogh", "Müller", "de la Cruz", "Li"};
  constexpr std::array given = {"John", "Jane", "A. B.", "Jean-Paul"};
  std::string names;
  for (std::size_t count = random() % (most + 1); count > 0; --count) {
    const char *family = families[random() % families.size()];
    names += std::string(names.empty() ? "" : ",") + R"({"family":")" + family + R"(","given":")" +
             given[random() % given.size()] + "\"}";
  }
  return names;
}

// A year, mostly, or a day, or a range of months or of years.
std::string date(std::mt19937 &random) {
  const std::string year = std::to_string(1990 + random() % 3);
  switch (random() % 8) {
    case 0:
      return "[[" + year + ",3,9]]";
    case 1:
      return "[[" + year + ",7],[" + year + ",8]]";
    case 2:
      return "[[" + year + "],[1995]]";
    default:
      return "[[" + year + "]]";
  }
}

}  // namespace

std::string collidingItem(std::mt19937 &random, std::size_t index) {
  constexpr std::array types = {"article-journal", "book", "chapter", "thesis", "webpage"};
  const std::string type = types[random() % types.size()];
  std::string item = R"({"type":")" + type + R"(","title":"Title )" + std::to_string(random() % 9) +
                     R"( of things","author":[)" + people(random, 3) +
                     R"(],"issued":{"date-parts":)" + date(random) +
                     R"(},"container-title":"Journal","volume":")" + std::to_string(index) +
                     R"(","page":"3-7","publisher":"Press")";
  if (random() % 4 == 0) {
    item += R"(,"collection-title":"Series","editor":[)" + people(random, 2) + "]";
  }
  if (random() % 4 == 0) {
    item += R"(,"URL":"http://example.org/","accessed":{"date-parts":[[2020,1,2]]})";
  }
  return item + "}";
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
