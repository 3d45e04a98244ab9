// Names of styles as no author writes them: paths, markup, what commands a terminal. None leads to
// a file; the host takes its default style, or the word processor says in one line that it cannot.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace endtoend;

TEST(StyleNames, ThatLeadElsewhereOrMeanSomethingElsewhereTakeTheDefaultStyle) {
  Host host({"--default-style", "apa"});
  ASSERT_TRUE(host.isReady()) << host.process().standardError();
  const std::string expected = scan("draft-textedit.rtf", {"--style", "apa"}, "live").copy;
  ASSERT_FALSE(expected.empty());
  for (const std::string &name :
       {std::string("../../../../etc/passwd"), std::string("/dev/zero"),
        std::string("/usr/share/citation-style-language/styles/ieee"), std::string("./ieee"),
        std::string("dependent/../ieee"), std::string("ieee.csl"), std::string("<b>&amp;&#0;"),
        std::string("\x1b[2J\x1b]0;x\x07"), std::string("%n%s%p"), std::string("ieee\nwrote: /x"),
        std::string("\xFF\xFE\xC0\x80"), std::string(60'000, 'a')}) {
    const Scan copy = scan("draft-textedit.rtf", {"--style", name}, "live");
    EXPECT_EQ(copy.result.status, 0) << copy.result.standardError;
    EXPECT_EQ(copy.copy, expected) << name.substr(0, 80);
    EXPECT_EQ(copy.result.standardOutput.find('\x1b'), std::string::npos);
    EXPECT_EQ(copy.result.standardOutput.find("\nwrote: /x"), std::string::npos);
  }
  const std::string log = host.process().standardError() + host.output();
  EXPECT_EQ(std::ranges::count(log, '\x1b'), 0);
  EXPECT_TRUE(host.process().isRunning());
}

}  // namespace
