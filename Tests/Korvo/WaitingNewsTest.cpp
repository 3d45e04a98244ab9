#include <StandIns/Korvo/Application/WaitingNews.h>

#include <gtest/gtest.h>

namespace {

using korvo::application::WaitingNews;
using namespace std::chrono_literals;

TEST(WaitingNews, ComesBeforeHalfASecondAndThenEveryTwo) {
  const WaitingNews::Clock::time_point start{};
  WaitingNews news(start);
  EXPECT_FALSE(news.isDue(start + 300ms));
  EXPECT_TRUE(news.isDue(start + 450ms));
  EXPECT_FALSE(news.isDue(start + 2s));
  EXPECT_TRUE(news.isDue(start + 2500ms));
  EXPECT_FALSE(news.isDue(start + 4s));
}

TEST(WaitingNews, OfAnImportIsSilentWhileItIsQuick) {
  WaitingNews news;
  testing::internal::CaptureStderr();
  news.ofImport()("a.bib", "100 of 250 entries");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  WaitingNews late(WaitingNews::Clock::now() - std::chrono::hours(1));
  testing::internal::CaptureStderr();
  late.ofImport()("a.bib", "200 of 250 entries");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "korvo: reading a.bib: 200 of 250 entries ...\n");
}

}  // namespace
