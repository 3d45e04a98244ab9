#include <StandIns/Terminal/Output.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>

using terminal::TerminalText;

// What is not known to be harmless does not compile where something is printed.
static_assert(!std::is_constructible_v<TerminalText, std::string>);
static_assert(!std::is_constructible_v<TerminalText, std::string_view>);
static_assert(!std::is_convertible_v<std::string, TerminalText>);
static_assert(!std::is_convertible_v<std::string_view, TerminalText>);
static_assert(!std::is_invocable_v<decltype(terminal::print), std::string>);
static_assert(!std::is_invocable_v<decltype(terminal::printError), std::string>);

TEST(TerminalText, WordsOfTheSourceStayAndTextOfOthersIsOneLine) {
  const TerminalText text = "wrote: " + TerminalText::inOneLine("a\n\x1B[2J\u202Eb\xFF") + "\n";
  EXPECT_EQ(text.text(), "wrote: a  [2J b\uFFFD\n");
}

TEST(TerminalText, JSONEscapesWhatMayNotBeShownAndLosesNothing) {
  EXPECT_EQ(TerminalText::inJSON("\"\\\n\x1B\x7F\u009B\u202E\u2028ü😀").text(),
            R"("\"\\\u000a\u001b\u007f\u009b\u202e\u2028ü😀")");
  EXPECT_EQ(TerminalText::inJSON("a\xFF").text(), "\"a\uFFFD\"");
}

TEST(TerminalText, HasNumbersAndBlanks) {
  EXPECT_EQ((TerminalText::number(42) + TerminalText::blanks(3) + "x").text(), "42   x");
  EXPECT_EQ(TerminalText::number(std::int64_t{-1}).text(), "-1");
}

TEST(Output, GoesToWhereItSaysAtOnce) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  terminal::print(TerminalText::inOneLine("out"));
  terminal::printError(TerminalText::inOneLine("error"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "error");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "out");
  EXPECT_TRUE(terminal::wasPrinted());
}
