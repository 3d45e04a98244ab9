#include <gtest/gtest.h>
#include <SubstituteHostApplication/Effects.h>

using application::announce;
using application::announceNotice;

namespace {

template <typename Action>
std::string written(const Action &action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

}  // namespace

TEST(Effects, AreOneLineEach) {
  EXPECT_EQ(written([] { announce("ready"); }), "ready\n");
  EXPECT_EQ(written([] { announce("editor: two\nlines\r"); }), "editor: two lines \n");
}

TEST(Effects, ANoticesTextIsIndentedLineByLine) {
  EXPECT_EQ(written([] { announceNotice("Header", "\n\nfirst\n\n second\n\n"); }),
            "notice: Header\n first\n \n  second\n");
  EXPECT_EQ(written([] { announceNotice("Two\nlines", ""); }), "notice: Two lines\n");
}
