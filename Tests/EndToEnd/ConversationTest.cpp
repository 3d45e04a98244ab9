// The other things that the two programs say to each other, and what the host shows its user.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace endtoend;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::size_t occurrences(const std::string &text, const std::string &part) {
  std::size_t count = 0;
  for (std::size_t position = text.find(part); position != std::string::npos;
       position = text.find(part, position + part.size())) {
    ++count;
  }
  return count;
}

TEST(Conversation, ANoticeTellsWhatDidNotMatch) {
  Host host;
  ASSERT_EQ(scan("draft-libreoffice.rtf", {"--style", "apa"}).result.status, 0);
  const std::string output = host.output();
  EXPECT_THAT(output, HasSubstr("notice: Mellel Refresh Issues\n"));
  EXPECT_THAT(output, HasSubstr("Citation 13 Borda 1790: No matches were found."));
  EXPECT_THAT(output, HasSubstr("Citation 42 Einstein 1905: 3 matches were found."));
  EXPECT_THAT(output, HasSubstr("Zur Elektrodynamik bewegter Körper"));
  EXPECT_THAT(output, HasSubstr("Reconcile any discrepancies"));
}

TEST(Conversation, TheAdviceAboutTheLibraryIsGivenOnce) {
  Host host;
  const std::string advice = "having the wrong library (or no library) selected";
  ASSERT_EQ(scan("draft-libreoffice.rtf", {"--style", "apa"}).result.status, 0);
  EXPECT_EQ(occurrences(host.output(), advice), 1u);
  ASSERT_EQ(scan("draft-textedit.rtf", {"--style", "apa"}).result.status, 0);
  EXPECT_EQ(occurrences(host.output(), advice), 1u);
  EXPECT_THAT(host.output(), HasSubstr("Peirce 1878: No matches were found."));
}

TEST(Conversation, TheHandshakeReturnsPreferences) {
  Host host;
  const Result result = run({program("mellel"), "handshake"});
  EXPECT_EQ(result.status, 0) << result.standardError;
  EXPECT_THAT(result.standardOutput, Not(testing::IsEmpty()));
}

TEST(Conversation, CheckHasAnEntryForEachCitation) {
  Host host;
  const Result result =
      run({program("mellel"), "check", example("draft-textedit.rtf").string(), "--json"});
  EXPECT_EQ(result.status, 0) << result.standardError;
  EXPECT_THAT(result.standardOutput,
              AllOf(HasSubstr("Zipf 1949#zipf1949"), HasSubstr("Peirce 1878")));
}

TEST(Conversation, OpeningACitationShowsTheEditorOfItsReference) {
  Host host;
  const Result result = run({program("mellel"), "open", "Turing 1950#turing1950@433"});
  EXPECT_EQ(result.status, 0) << result.standardError;
  EXPECT_TRUE(host.process().waitForLine("editor: turing1950"));
}

TEST(Conversation, TheSelectionBecomesACitationThatFindsItsReference) {
  Host host({"--select", "turing1950,godel1931"});
  const Result one = run({program("mellel"), "insert"});
  EXPECT_EQ(one.status, 0) << one.standardError;
  EXPECT_THAT(one.standardOutput, HasSubstr("turing1950"));
}

TEST(Conversation, ALiveBibliographyGivesTheSameCopy) {
  Host host;
  const Scan scanned = scan("draft-libreoffice.rtf", {"--style", "ieee"});
  const Scan live = scan("draft-libreoffice.rtf", {"--style", "ieee"}, "live");
  ASSERT_EQ(live.result.status, 0) << live.result.standardError;
  EXPECT_EQ(live.copy, scanned.copy);
}

TEST(Conversation, TheHostEndsCleanlyWhenAskedTo) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Host host;
    ASSERT_TRUE(host.isReady()) << host.process().standardError();
    host.process().send(signal);
    EXPECT_EQ(host.process().waitForExit(), 0);
  }
}

}  // namespace
