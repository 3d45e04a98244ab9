// Tests that end in every way a test can, for TogetherTest.py to have them run.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace {

class Passes : public testing::TestWithParam<int> {};
TEST_P(Passes, WithANumber) { EXPECT_GT(GetParam(), 0); }
INSTANTIATE_TEST_SUITE_P(Three, Passes, testing::Values(1, 2, 3));

TEST(Fails, Always) { ADD_FAILURE() << "as it should"; }
TEST(IsSkipped, Always) { GTEST_SKIP() << "as it should be"; }
TEST(Dies, Always) { std::abort(); }
TEST(EndsTheProcess, AsIfAllWereWell) { std::exit(0); }
TEST(NeverEnds, Always) { pause(); }

bool hasCompany = false;
TEST(DiesInCompany, OfThis) { hasCompany = true; }
TEST(DiesInCompany, NotAlone) {
  if (hasCompany) {
    std::abort();
  }
}

class FailsAfterwards : public testing::Test {
 protected:
  static void TearDownTestSuite() { ADD_FAILURE() << "of no test of its own"; }
};
TEST_F(FailsAfterwards, ItsOnlyTest) {}

}  // namespace
