// What formatting a document takes of the memory at most, for each of its citations.
#include "EngineDocument.h"

#include <Tests/Support/Files.h>

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>

using namespace korvo_test;
using test_support::readFile;

namespace {

// Of this process, in bytes; 0 where the system does not say.
double memory(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == name) {
      status >> word;
      return std::stod(word) * 1024;
    }
  }
  return 0;
}

// One citation at a time takes some 250 bytes for each; where all of them stay, more than 800.
// With fewer citations most of it would be the room for garbage, which differs from run to run.
}  // namespace

TEST(EngineMemory, IsNotTakenForAllCitationsAtOnce) {
  const CiteGroup group = {cite("smith2001")};
  const korvo::engine::Style notes = style("chicago-note-bibliography");
  const std::string rules = readFile(notes.file);
  const auto format = [&](std::size_t citations) {
    const auto document = processor().formatDocument(
        notes, rules, lookUpIn(library()), citations,
        [&](std::size_t) -> const CiteGroup & { return group; }, false);
    ASSERT_TRUE(document) << document.error();
  };
  // The machine takes some for itself first.
  format(20'000);
  std::ofstream("/proc/self/clear_refs") << "5";  // what it has taken at most is forgotten
  const double before = memory("VmRSS:");
  ASSERT_GT(before, 0);
  constexpr std::size_t citations = 100'000;
  format(citations);
  EXPECT_LT((memory("VmHWM:") - before) / citations, 500);
}
