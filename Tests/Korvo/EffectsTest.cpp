#include <StandIns/Korvo/Application/Effects.h>

#include <gtest/gtest.h>

#include <string>

using korvo::application::announce;
using korvo::application::announceNotice;
using korvo::application::complain;

namespace {

template <typename Action>
std::string written(const Action &action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

template <typename Action>
std::string writtenOfErrors(const Action &action) {
  testing::internal::CaptureStderr();
  action();
  return testing::internal::GetCapturedStderr();
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

TEST(Effects, NothingInAReferenceOrACitationCommandsTheTerminal) {
  EXPECT_EQ(written([] { announce("editor: \x1B[2J\u009Bx"); }), "editor:  [2J x\n");
  EXPECT_EQ(written([] { announceNotice("A\x1B[1m", "b\x1B[2J\n\x07\xFF"); }),
            "notice: A [1m\n b [2J\n  \uFFFD\n");
}

TEST(Effects, WhatWentWrongIsOneLineForPeople) {
  EXPECT_EQ(writtenOfErrors([] { complain("a\nb\x1B[2J"); }), "korvo: a b [2J\n");
}
