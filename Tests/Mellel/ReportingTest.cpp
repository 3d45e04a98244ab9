// What the commands say of what they did, what is in the way, and what an answer lacks.
#include "CommandsFixture.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mellel::commands {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;

using Reporting = Commands;

TEST_F(Reporting, AfterASecondItSaysWhatMayBeWaitingForTheUser) {
  startHost("shows-dialog");
  const std::string hint =
      "mellel: Korvo may be showing a dialog, and wait until it is answered: it does so when it "
      "knows no style \"apa\"\n";
  const std::string told =
      mellelWithProgress({"scan", path("in.rtf"), "--style", "apa", "-o", path("out.rtf")})
          .standardError;
  EXPECT_THAT(told, HasSubstr("mellel: waiting for Korvo to format 3 citations ...\n" + hint));
  EXPECT_EQ(withoutProgress(told), hint);
  startHost("shows-dialog");
  const Result ended = mellel({"scan", path("in.rtf"), "-o", path("out.rtf"), "--quiet"});
  EXPECT_EQ(ended.standardError,
            "mellel: Korvo asks for the style in a dialog of its own, and waits until it is "
            "answered\n");
  EXPECT_EQ(ended.standardOutput, "");
}

TEST_F(Reporting, AStyleThatWasNotAskedForIsTold) {
  startHost("other-style");
  for (const std::string command : {"scan", "live"}) {
    const Result ended =
        mellel({command, path("in.rtf"), "--style", "nosuch", "-o", path("out.rtf")});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.standardOutput, HasSubstr("style: Another Style\n"));
    EXPECT_EQ(ended.standardError,
              "mellel: Korvo formatted in \"Another Style\": if that is no other name of "
              "\"nosuch\", it knows no such style\n");
  }
  EXPECT_EQ(mellel({"live", path("in.rtf"), "-o", path("out.rtf")}).standardError, "");
}

TEST_F(Reporting, SentencesInTheRunningTextAreOfferedToBecomeFootnotes) {
  startHost("sentences");
  const Result plain = scan();
  EXPECT_EQ(plain.standardError,
            "mellel: 1 citation in the running text became sentences, as this style is one for "
            "footnotes: --footnotes makes such\n");
  EXPECT_THAT(read("out.rtf"), Not(HasSubstr("\\footnote")));
  const Result notes = scan({"--footnotes"});
  EXPECT_EQ(notes.standardError, "");
  EXPECT_THAT(notes.standardOutput, HasSubstr("footnotes: 1\n"));
  EXPECT_THAT(read("out.rtf"), HasSubstr("As{\\super\\chftn}{\\footnote"));
}

TEST_F(Reporting, FootnotesAreNotMadeInAStyleForTheRunningText) {
  startHost();
  const Result ended = scan({"--footnotes"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.standardError,
            "mellel: no footnotes were made: this style is one for the running text\n");
  EXPECT_THAT(read("out.rtf"), Not(HasSubstr("\\footnote")));
}

TEST_F(Reporting, CitationsInTheTextsOfAListAreToldToBeLeftOut) {
  write("in.rtf", "{\\rtf1{\\listtext \\{Smith 2001\\}\\tab}\\{A\\}}");
  startHost();
  const std::string line =
      "mellel: 1 citation left out: in a list's text for programs without lists, which others do "
      "not show\n";
  EXPECT_EQ(scan().standardError, line);
  EXPECT_EQ(mellel({"check", path("in.rtf")}).standardError, line);
}

TEST_F(Reporting, CheckTellsWhichCitationsAreFound) {
  startHost();
  const Result table = mellel({"check", path("in.rtf")});
  EXPECT_EQ(table.status, 0);
  EXPECT_THAT(table.standardOutput, HasSubstr("1  Smith 2001#S@4  yes    Smith 2001#S@4\n"));
  EXPECT_THAT(table.standardOutput, HasSubstr("2  Nobody 1900     no     Nobody 1900\n"));
  EXPECT_EQ(host_->readLine(), "preliminary scan {Smith 2001#S@4} {Nobody 1900} {!Silent 1}");
  EXPECT_EQ(host_->readLine(), "live {Smith 2001#S@4} {Nobody 1900} {!Silent 1}");
  EXPECT_THAT(mellel({"check", path("in.rtf"), "--json"}).standardOutput,
              HasSubstr("{\"citation\": \"Nobody 1900\", \"found\": false, "));
}

TEST_F(Reporting, StrictHasAStatusOfItsOwnWhereACitationIsMissing) {
  startHost();
  const Result scanned = scan({"--strict"});
  EXPECT_EQ(scanned.status, 5);
  EXPECT_EQ(scanned.standardError, "mellel: 1 of 3 citations was not formatted\n");
  EXPECT_TRUE(exists("out.rtf"));
  const Result checked = mellel({"check", path("in.rtf"), "--strict", "--quiet"});
  EXPECT_EQ(checked.status, 5);
  EXPECT_EQ(checked.standardError, "mellel: 1 of 3 citations was not found\n");
  EXPECT_EQ(checked.standardOutput, "");
  write("in.rtf", "{\\rtf1\\{A\\}}");
  EXPECT_EQ(scan({"--strict"}).status, 0);
  EXPECT_EQ(mellel({"check", path("in.rtf"), "--strict"}).status, 0);
}

TEST_F(Reporting, TheCopyMayGoToStandardOutput) {
  startHost();
  ASSERT_EQ(scan().status, 0);
  for (const std::string command : {"scan", "live"}) {
    const Result ended = mellel({command, path("in.rtf"), "--style", "apa", "-o", "-"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.standardOutput, read("out.rtf"));
    EXPECT_THAT(ended.standardError, HasSubstr("formatted: 2 of 3 citations\n"));
    EXPECT_THAT(ended.standardError, Not(HasSubstr("wrote")));
  }
  EXPECT_EQ(mellel({"scan", path("in.rtf"), "-o", "-", "--quiet"}).standardError, "");
  EXPECT_FALSE(exists("-"));
}

TEST_F(Reporting, QuietPrintsNothingWhereAllIsWell) {
  startHost("slow");
  const Result ended = scan({"--quiet"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.standardOutput, "");
  EXPECT_EQ(ended.standardError, "");
  EXPECT_TRUE(exists("out.rtf"));
}

TEST_F(Reporting, ScanAndLiveAnswerProgramsInJSON) {
  startHost();
  const std::string expected =
      "{\"wrote\": \"" + path("out.rtf") +
      "\",\n \"style\": \"apa\",\n \"askedStyle\": \"apa\",\n \"citations\": [\n"
      "  {\"citation\": \"Smith 2001#S@4\", \"formatted\": true},\n"
      "  {\"citation\": \"Nobody 1900\", \"formatted\": false},\n"
      "  {\"citation\": \"!Silent 1\", \"formatted\": true}],\n"
      " \"footnotes\": 0,\n \"bibliography\": 3}\n";
  EXPECT_EQ(scan({"--json"}).standardOutput, expected);
  EXPECT_EQ(mellel({"live", path("in.rtf"), "--style", "apa", "-o", path("out.rtf"), "--json"})
                .standardOutput,
            expected);
}

TEST_F(Reporting, TheVersionIsPrinted) {
  const Result ended = mellel({"--version"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.standardOutput, MatchesRegex("mellel [0-9.]+\n"));
}

// No host runs: whoever waited for one first would say that.
TEST_F(Reporting, ATargetThatCannotBeWrittenIsToldBeforeTheWork) {
  const std::string cannot = "cannot write ";
  expectFailure(mellel({"scan", path("in.rtf"), "-o", path("none/out.rtf")}), 4,
                cannot + path("none/out.rtf") + ": No such file or directory");
  expectFailure(mellel({"live", path("in.rtf"), "-o", path("in.rtf/out.rtf")}), 4,
                cannot + path("in.rtf/out.rtf") + ": Not a directory");
  expectFailure(mellel({"insert", "--into", path("in.rtf"), "--at", "and", "-o", path("none/out")}),
                4, cannot + path("none/out") + ": No such file or directory");
  if (geteuid() != 0) {
    ASSERT_EQ(mkdir(path("locked").c_str(), 0500), 0);
    expectFailure(mellel({"scan", path("in.rtf"), "-o", path("locked/out.rtf")}), 4,
                  cannot + path("locked/out.rtf") + ": Permission denied");
  }
}

TEST_F(Reporting, TheFileIsNamedAsItWasGiven) {
  startHost();
  write("real.rtf", "the copy of yesterday");
  ASSERT_EQ(symlink("real.rtf", path("link.rtf").c_str()), 0);
  const Result ended = mellel({"scan", path("in.rtf"), "-o", path("link.rtf")});
  EXPECT_THAT(ended.standardOutput, HasSubstr("wrote: " + path("link.rtf") + "\n"));
  EXPECT_THAT(read("real.rtf"), HasSubstr("Smith"));
}

}  // namespace
}  // namespace mellel::commands
