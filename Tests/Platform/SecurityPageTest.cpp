// Documentation/Security.md names the test that holds each of its lines. A test that was renamed or
// dropped would leave a promise that nobody keeps: it fails here.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
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

// Of Python: each function belongs to the class above it.
void insertPythonTests(std::set<std::string> &names, const std::string &text) {
  const std::regex pattern("(?:^|\n)(?:class (\\w+)|    def (test_\\w+))");
  std::string suite;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
    if ((*match)[1].matched) {
      suite = (*match)[1];
    } else {
      names.insert(suite + "." + (*match)[2].str());
    }
  }
}

constexpr char testName[] = "`([A-Z][A-Za-z]+)\\.([A-Za-z_]+)`";

TEST(SecurityPage, HasATestForEachLineThatItHolds) {
  const std::string page = contents(SECURITY_PAGE);
  const std::size_t begin = page.find("## What is held");
  const std::size_t end = page.find("\n## ", begin + 1);
  std::istringstream rows(page.substr(begin, end - begin));
  int count = 0;
  for (std::string row; std::getline(rows, row);) {
    const bool isHeading =
        row.starts_with("| **") || row.starts_with("|---") || row.starts_with("| Line ");
    if (row.starts_with("|") && !isHeading) {
      ++count;
      EXPECT_TRUE(std::regex_search(row, std::regex(testName))) << row;
    }
  }
  EXPECT_GE(count, 30);
}

TEST(SecurityPage, NamesOnlyTestsThatExist) {
  std::set<std::string> promised;
  insertMatches(promised, contents(SECURITY_PAGE), testName);
  std::set<std::string> existing;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(TESTS_FOLDER)) {
    const std::string extension = entry.path().extension();
    // Programs that are a test each are named where CTest learns of them.
    if (entry.path().filename() == "CMakeLists.txt") {
      insertMatches(existing, contents(entry.path()), "add_test\\(NAME (\\w+)\\.(\\w+)");
    }
    if (extension == ".cpp" || extension == ".mm") {
      insertMatches(existing, contents(entry.path()), "TEST(?:_F|_P)?\\(\\s*(\\w+),\\s*(\\w+)\\)");
    } else if (extension == ".py") {
      insertPythonTests(existing, contents(entry.path()));
    }
  }
  EXPECT_GE(promised.size(), 30U);
  for (const std::string &name : promised) {
    EXPECT_TRUE(existing.contains(name)) << name;
  }
}

}  // namespace
