// After a rehearsal a document takes a part of the steps. EngineEditsTest.cpp tells that no text of
// it is another.
#include "EngineRandomDocuments.h"
#include "EngineSteps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <span>
#include <string>
#include <vector>

using namespace korvo_test;

namespace {

// Works of authors of their own: none has to be told apart from another. The volume is a number as
// works get in numbered styles, so that some of those are smaller and some greater.
std::string work(int number) {
  const auto name = [number](int place) {
    std::string letters;
    for (int rest = number + (1000 * place); rest > 0; rest /= 26) {
      letters += static_cast<char>('a' + (rest % 26));
    }
    return "N" + letters;
  };
  return R"({"type":"article-journal","title":"On )" + name(3) + R"(","author":[{"family":")" +
         name(1) + R"(","given":"Ann"},{"family":")" + name(2) +
         R"(","given":"Ben"}],"issued":{"date-parts":[[)" + std::to_string(1900 + (number % 100)) +
         R"(]]},"container-title":"Journal","volume":"30","page":"1-9"})";
}

class EngineRehearsal : public testing::TestWithParam<const char *> {
 protected:
  // Each work is cited once.
  EngineRehearsal() {
    for (int number = 1; number <= 40; ++number) {
      items_.emplace("work" + std::to_string(number), work(number));
      groups_.push_back({cite("work" + std::to_string(number))});
    }
  }

  // With a work of which little is known, and cites of two works: what is printed of them leaves
  // another engine behind than the works do alone.
  void beginOtherwise() {
    items_.emplace("unknown", R"({"type":"book","title":"Unknown"})");
    groups_.insert(groups_.begin(), CiteGroup{cite("unknown")});
    for (int number = 1; number < 40; number += 2) {
      groups_.push_back(
          {cite("work" + std::to_string(number + 1)), cite("work" + std::to_string(number))});
    }
  }

  void rehearse(korvo::engine::CitationProcessor &by, std::size_t worksOfATurn) const {
    std::vector<std::string> works;
    for (const auto &[id, item] : items_) {
      works.push_back(item);
    }
    for (std::size_t done = 0; done < works.size(); done += worksOfATurn) {
      const auto turn = std::span(works).subspan(done, std::min(worksOfATurn, works.size() - done));
      const auto rehearsed = by.rehearse(style(GetParam()), turn);
      EXPECT_TRUE(rehearsed) << rehearsed.error();
    }
  }

  korvo::engine::FormattedDocument format(korvo::engine::CitationProcessor &by) const {
    auto document = by.formatDocument(style(GetParam()), lookUpIn(items_), groups_, true);
    EXPECT_TRUE(document) << document.error();
    return document ? *std::move(document) : korvo::engine::FormattedDocument();
  }

  Items items_;
  std::vector<CiteGroup> groups_;
};

TEST_P(EngineRehearsal, SparesADocumentMostOfItsSteps) {
  StepCounter fresh;
  const double most = stepsOf(format(fresh.processor()));
  for (const std::size_t worksOfATurn : {1u, 5u}) {
    StepCounter rehearsed;
    rehearse(rehearsed.processor(), worksOfATurn);
    EXPECT_LT(stepsOf(format(rehearsed.processor())), most / 2) << worksOfATurn;
  }
}

TEST_P(EngineRehearsal, SparesNearlyAsManyStepsOfADocumentThatBeginsOtherwise) {
  beginOtherwise();
  StepCounter fresh;
  StepCounter rehearsed;
  rehearse(rehearsed.processor(), 2);
  EXPECT_LT(stepsOf(format(rehearsed.processor())), stepsOf(format(fresh.processor())) * 0.6);
}

INSTANTIATE_TEST_SUITE_P(Styles, EngineRehearsal,
                         testing::Values("apa", "ieee", "chicago-author-date",
                                         "chicago-note-bibliography"),
                         [](const auto &instance) {
                           std::string name = instance.param;
                           std::erase(name, '-');
                           return name;
                         });

// The nested stand-ins for a missing author in this style break an engine.
TEST(EngineRehearsals, GoOnAfterAWorkOnWhichTheStyleFails) {
  korvo::engine::CitationProcessor rehearsed;
  const korvo::engine::Style organon = style("organon");
  const std::vector<std::string> broken = {R"({"type":"book","title":"T"})"};
  for (int turn = 1; turn <= 3; ++turn) {
    const std::vector<std::string> whole = {work(turn)};
    EXPECT_TRUE(rehearsed.rehearse(organon, whole)) << turn;
    EXPECT_FALSE(rehearsed.rehearse(organon, broken)) << turn;
  }
  const Items items = {{"work1", work(1)}, {"work2", work(2)}};
  const std::vector<CiteGroup> groups = {{cite("work1"), cite("work2")}, {cite("work2")}};
  korvo::engine::CitationProcessor fresh;
  EXPECT_EQ(rehearsed.formatDocument(organon, lookUpIn(items), groups, true),
            fresh.formatDocument(organon, lookUpIn(items), groups, true));
}

}  // namespace
