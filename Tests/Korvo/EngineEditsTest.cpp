// What an author does between two scans: citations come, go, change and move, references are
// corrected. The engine, which remembers what it has printed, answers as one that remembers
// nothing, after every step.
//
// KORVO_EDITS=2000 build/bin/EngineTest --gtest_filter='*EngineEdits*' takes many more steps, and
// with KORVO_EDITED_STYLES=all in every style that is installed (some 2,500).
#include "EngineRandomDocuments.h"

#include <Tests/Support/Effort.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

using namespace korvo_test;
using test_support::readFile;
using test_support::TemporaryDirectory;

namespace {

constexpr std::size_t itemCount = 24;
constexpr std::size_t groupCount = 24;

struct Draft {
  Items items;
  std::vector<CiteGroup> groups;
};

void chooseOption(std::mt19937 &random, Cite &cite) {
  switch (random() % 5) {
    case 0:
      cite.yearOnly = !cite.yearOnly;
      break;
    case 1:
      cite.showInText = !cite.showInText;
      break;
    case 2:
      cite.includeInBibliography = !cite.includeInBibliography;
      break;
    case 3:
      cite.stripEnclosure = !cite.stripEnclosure;
      break;
    default:
      cite.suppressSuperscript = !cite.suppressSuperscript;
  }
}

void edit(std::mt19937 &random, Draft &draft) {
  const std::size_t place = random() % draft.groups.size();
  const auto group = draft.groups.begin() + static_cast<std::ptrdiff_t>(place);
  switch (random() % 7) {
    case 0:
      draft.groups.insert(group, randomGroup(random, itemCount));
      break;
    case 1:
      if (draft.groups.size() > 1) {
        draft.groups.erase(group);
      }
      break;
    case 2:
      *group = randomGroup(random, itemCount);
      break;
    case 3:
      std::swap(*group, draft.groups[random() % draft.groups.size()]);
      break;
    case 4:
      group->front().pageRange = std::u16string(1, u'7');
      break;
    case 5:
      chooseOption(random, group->front());
      break;
    default: {
      const std::size_t item = random() % itemCount;
      draft.items["item" + std::to_string(item)] = collidingItem(random, item);
    }
  }
}

bool usesOptions(const Draft &draft) {
  const auto isPlain = [](const Cite &cite) {
    return !cite.yearOnly && cite.showInText && cite.includeInBibliography &&
           !cite.stripEnclosure && !cite.suppressSuperscript;
  };
  return !std::ranges::all_of(
      draft.groups, [&](const CiteGroup &group) { return std::ranges::all_of(group, isPlain); });
}

korvo::engine::FormattedDocument format(korvo::engine::CitationProcessor &processor,
                                        const korvo::engine::Style &style, const Draft &draft) {
  auto document = processor.formatDocument(style, lookUpIn(draft.items), draft.groups, true);
  EXPECT_TRUE(document) << document.error();
  return document ? *std::move(document) : korvo::engine::FormattedDocument();
}

std::size_t stepsWanted() {
  const char *wanted = std::getenv("KORVO_EDITS");
  return wanted == nullptr ? test_support::effort(4u, 2u)
                           : static_cast<std::size_t>(std::atol(wanted));
}

// As a host does it that has nothing else to do, some works at a time.
void rehearse(std::mt19937 &random, const korvo::engine::Style &style, const Draft &draft) {
  for (int turn = 0; turn < 2; ++turn) {
    std::vector<std::string> works;
    for (std::size_t count = 1 + random() % 4; count > 0; --count) {
      works.push_back(draft.items.at("item" + std::to_string(random() % itemCount)));
    }
    const auto done = processor().rehearse(style, works);
    EXPECT_TRUE(done) << done.error();
  }
}

class EngineEdits : public testing::TestWithParam<std::string> {};

TEST_P(EngineEdits, GiveTheAnswersOfAFreshEngine) {
  std::mt19937 random(1907);
  Draft draft{.items = collidingLibrary(random, itemCount),
              .groups = randomGroups(random, groupCount, itemCount)};
  const korvo::engine::Style edited = style(GetParam());
  const TemporaryDirectory directory;
  const std::size_t steps = stepsWanted();
  for (std::size_t step = 0; step < steps && !HasFailure(); ++step) {
    rehearse(random, edited, draft);
    const korvo::engine::FormattedDocument remembered = format(processor(), edited, draft);
    // What was printed in a style of other bytes is of no use.
    korvo::engine::Style fresh = edited;
    fresh.file = directory.write(
        "fresh.csl", readFile(edited.file) + "<!-- step " + std::to_string(step) + " -->");
    EXPECT_EQ(remembered, format(processor(), fresh, draft)) << "step " << step;
    if (!usesOptions(draft)) {
      EXPECT_EQ(allTexts(remembered), allTexts(format(referenceProcessor(), edited, draft)))
          << "step " << step;
    }
    edit(random, draft);
  }
}

std::vector<std::string> editedStyles() {
  const char *wanted = std::getenv("KORVO_EDITED_STYLES");
  if (wanted == nullptr || std::string_view(wanted) != "all") {
    return {"apa",
            "ieee",
            "nature",
            "chicago-author-date",
            "chicago-fullnote-bibliography-with-ibid",
            "oscola",
            "american-sociological-association",
            "din-1505-2-alphanumeric",
            "journal-of-retailing",
            "mcgill-en"};
  }
  std::vector<std::string> names;
  for (const auto &entry :
       std::filesystem::directory_iterator("/usr/share/citation-style-language/styles")) {
    if (entry.path().extension() == ".csl") {
      names.push_back(entry.path().stem().string());
    }
  }
  std::ranges::sort(names);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Styles, EngineEdits, testing::ValuesIn(editedStyles()),
                         [](const auto &instance) {
                           std::string name = instance.param;
                           std::ranges::replace(name, '-', '_');
                           return name;
                         });

}  // namespace
