// Documentation/Security.md names the test that holds each of its lines. A test that was renamed or
// dropped would leave a promise that nobody keeps: it fails here.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path &path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

void insertMatches(std::set<std::string> &names, const std::string &text, const char *expression) {
  const std::regex pattern(expression);
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
    names.insert((*match)[1].str() + "." + (*match)[2].str());
  }
}

TEST(SecurityPage, NamesOnlyTestsThatExist) {
  std::set<std::string> promised;
  insertMatches(promised, contents(SECURITY_PAGE), "`([A-Z][A-Za-z]+)\\.([A-Z][A-Za-z]+)`");
  std::set<std::string> existing;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(TESTS_FOLDER)) {
    const std::string extension = entry.path().extension();
    if (extension == ".cpp" || extension == ".mm") {
      insertMatches(existing, contents(entry.path()), "TEST(?:_F|_P)?\\(\\s*(\\w+),\\s*(\\w+)\\)");
    }
  }
  EXPECT_GE(promised.size(), 30U);
  for (const std::string &name : promised) {
    EXPECT_TRUE(existing.contains(name)) << name;
  }
}

}  // namespace
