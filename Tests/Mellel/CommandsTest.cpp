// The commands as a user runs them: the real process, a host that plays a scenario, a message bus
// of the test's own.

#include "CommandsFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <thread>

namespace mellel::commands {
namespace {

using ::testing::HasSubstr;

TEST_F(Commands, ScanWritesAFormattedCopyAndSaysWhatItDid) {
  startHost();
  const Result ended = scan();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.standardError, "");
  EXPECT_EQ(ended.standardOutput, "wrote: " + path("out.rtf") +
                                      "\nstyle: apa\nformatted: 2 of 3 citations\n"
                                      "not formatted: {Nobody 1900}\n"
                                      "bibliography: 3 entries in place of {bibliography}\n");
  EXPECT_THAT(read("out.rtf"),
              HasSubstr("\\pard As {({\\i Smith 2001#S@4})}{\\i } and \\{Nobody 1900\\} say{}."));
  EXPECT_THAT(read("out.rtf"), HasSubstr("Entry Smith 2001#S@4.\\par}"));
  EXPECT_EQ(read("out.rtf").find("bibliography"), std::string::npos);
  EXPECT_EQ(host_->readLine(), "preliminary scan {Smith 2001#S@4} {Nobody 1900} {!Silent 1}");
  EXPECT_EQ(host_->readLine(),
            "final scan bibliography in apa {Smith 2001#S@4} {Nobody 1900} {!Silent 1}");
}

TEST_F(Commands, ScanWithoutAnOutputWritesBesideTheDocument) {
  startHost();
  EXPECT_EQ(mellel({"scan", path("in.rtf")}).status, 0);
  EXPECT_TRUE(exists("in formatted.rtf"));
}

TEST_F(Commands, ScanWithoutBibliographyLeavesItsPlace) {
  startHost();
  EXPECT_EQ(scan({"--no-bibliography"}).status, 0);
  EXPECT_THAT(read("out.rtf"), HasSubstr("\\{bibliography\\}\\par\n"));
  host_->readLine();
  EXPECT_THAT(host_->readLine(), HasSubstr("final scan in apa"));
}

TEST_F(Commands, AnswerWithoutTheBibliographyLeavesItsPlaceAndSaysSo) {
  startHost("no-bibliography");
  const Result ended = scan();
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.standardOutput, HasSubstr("bibliography: none came with the answer\n"));
  EXPECT_THAT(read("out.rtf"), HasSubstr("\\{bibliography\\}\\par\n"));
}

TEST_F(Commands, CitationsThatTheHostHasNoTextForStay) {
  startHost("empty");
  const Result ended = scan();
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.standardOutput, HasSubstr("not formatted: {Smith 2001#S@4}\n"));
  EXPECT_THAT(read("out.rtf"), HasSubstr("\\{Sm{\\i ith 2001}#S@4\\}"));
}

TEST_F(Commands, DocumentWithoutCitationsIsScannedToo) {
  write("in.rtf", "{\\rtf1 nothing here}");
  startHost();
  const Result ended = scan();
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.standardOutput, HasSubstr("formatted: 0 of 0 citations\n"));
  EXPECT_EQ(read("out.rtf"), expectedInput_);
}

TEST_F(Commands, ProgressIsToldWhenAScanTakesLong) {
  startHost("slow");
  const Result ended = mellelWithProgress({"scan", path("in.rtf"), "-o", path("out.rtf")});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.standardError,
              HasSubstr("mellel: waiting for Korvo to format 3 citations ...\n"));
  EXPECT_EQ(withoutProgress(ended.standardError), "");
}

TEST_F(Commands, ProgressIsNotToldWhenAScanIsQuick) {
  using Clock = std::chrono::steady_clock;
  startHost();
  for (int attempt = 0; attempt < 20; ++attempt) {
    const Clock::time_point begin = Clock::now();
    const Result ended = mellelWithProgress({"scan", path("in.rtf"), "-o", path("out.rtf")});
    if (Clock::now() - begin < std::chrono::milliseconds(400)) {
      EXPECT_EQ(ended.standardError, "");
      return;
    }
  }
  GTEST_SKIP() << "no scan is quick on a machine as busy as this one";
}

TEST_F(Commands, ProgressIsToldWhileTheDocumentIsRead) {
  // It has never the size that it claims to have, like a file that is written to meanwhile: it is
  // read again and again, for half a second.
  const std::string busy = "/proc/version";
  const std::string told = "mellel: reading " + busy + " ...\nmellel: cannot read " + busy +
                           ": another program is writing to it\n";
  EXPECT_EQ(mellelWithProgress({"scan", busy}).standardError, told);
  EXPECT_EQ(mellelWithProgress({"insert", "--into", busy, "--at", "and", "-o", path("out")})
                .standardError,
            told);
}

TEST_F(Commands, ProgressIsToldWhileTheCopyIsWritten) {
  write("in.rtf", "{\\rtf1 " + std::string(1U << 20U, 'x') + "}");
  startHost();
  // The pipe holds less, and is not read before the line was.
  const std::string command = R"("$0" scan "$1" -o - 2>"$2" | {
    for look in $(seq 1000); do grep -q writing "$2" && break; sleep 0.02; done
    cat >/dev/null
  }
  cat "$2")";
  const Result ended =
      test_support::run({"sh", "-c", command, MELLEL, path("in.rtf"), path("told")});
  EXPECT_THAT(ended.standardOutput, HasSubstr("mellel: writing the copy ...\n"));
}

TEST_F(Commands, ProgressIsToldWhileAReplyIsWaitedFor) {
  startHost("slow");
  const Result ended = mellelWithProgress({"live", path("in.rtf"), "-o", path("out.rtf")});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.standardError,
              HasSubstr("mellel: waiting for Korvo to format 3 citations ...\n"));
  EXPECT_EQ(withoutProgress(ended.standardError), "");
}

TEST_F(Commands, CancellingEndsTheScanWithoutACopy) {
  startHost("cancels-preliminary-scan");
  expectFailure(scan(), 1, "cancelled in Korvo");
  startHost("cancels-final-scan");
  expectFailure(scan(), 1, "cancelled in Korvo");
}

TEST_F(Commands, HostThatIsNotRunningIsTold) {
  expectFailure(scan(), 3, "Korvo is not running");
  expectFailure(mellel({"live", path("in.rtf")}), 3, "Korvo is not running");
  expectFailure(mellel({"check", path("in.rtf")}), 3, "Korvo is not running");
  expectFailure(mellel({"insert"}), 3, "Korvo is not running");
  expectFailure(mellel({"open", "Smith"}), 3, "Korvo is not running");
  expectFailure(mellel({"handshake"}), 3, "Korvo is not running");
}

TEST_F(Commands, HostThatEndsInTheMiddleOfAScanIsTold) {
  startHost("ends-in-preliminary-scan");
  expectFailure(scan(), 3, "Korvo ended before it answered");
  startHost("ends-in-final-scan");
  expectFailure(scan(), 3, "Korvo ended before it answered");
  startHost("ends-in-live");
  expectFailure(mellel({"live", path("in.rtf")}), 3,
                "Korvo cannot be reached: it has ended, or there is no session bus");
}

TEST_F(Commands, HostWithoutTheRequestIsTold) {
  startHost("no-live");
  expectFailure(mellel({"live", path("in.rtf")}), 3,
                "Korvo is running, but without its plug-in for Mellel");
}

TEST_F(Commands, SilentHostIsNotWaitedForLongerThanAsked) {
  startHost("silent");
  const auto begin = std::chrono::steady_clock::now();
  const Result ended = scan({"--timeout", "1"});
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
  EXPECT_EQ(ended.status, 4);
  EXPECT_THAT(ended.standardError, HasSubstr("mellel: Korvo did not answer within 1 s\n"));
  EXPECT_EQ(folder_.fileCount(), 1U);
}

TEST_F(Commands, BrokenAnswersLeaveNoCopy) {
  const std::string begin = "Korvo's answer is broken: ";
  startHost("too-few");
  expectFailure(scan(), 4, begin + "scan reply holds 2 citations where 3 were asked for");
  for (const std::string scenario : {"cut-short", "unbalanced", "broken-bibliography"}) {
    startHost(scenario);
    const Result ended = scan();
    EXPECT_EQ(ended.status, 4) << scenario;
    EXPECT_EQ(std::count(ended.standardError.begin(), ended.standardError.end(), '\n'), 1)
        << ended.standardError;
    EXPECT_EQ(folder_.fileCount(), 1U) << scenario;
  }
}

// As they come when an earlier process was ended while the host worked for it.
TEST_F(Commands, LateAnswersToAnEarlierProcessArePassedOver) {
  startHost("late-answers");
  const Result ended = scan();
  EXPECT_EQ(ended.status, 0) << ended.standardError;
  EXPECT_THAT(ended.standardOutput, HasSubstr("formatted: 2 of 3 citations\n"));
  startHost("other-document");
  const Result unanswered = scan({"--timeout", "1"});
  EXPECT_EQ(unanswered.status, 4);
  EXPECT_THAT(unanswered.standardError, HasSubstr("mellel: Korvo did not answer within 1 s\n"));
}

TEST_F(Commands, BrokenDocumentsAreToldBeforeTheHostIsAsked) {
  write("in.rtf", "no RTF at all");
  expectFailure(scan(), 4, path("in.rtf") + ": it is not an RTF document");
  write("in.rtf", document.substr(0, document.size() - 9));
  expectFailure(scan(), 4, path("in.rtf") + ": it is cut short: 1 group is still open at its end");
  EXPECT_EQ(mellel({"check", path("none.rtf")}).status, 4);
}

TEST_F(Commands, DocumentItselfIsNeverTheOutput) {
  startHost();
  const std::string line =
      path("in.rtf") + " is the document itself, which is never changed; name another file";
  expectFailure(mellel({"scan", path("in.rtf"), "-o", path("in.rtf")}), 2, line);
  expectFailure(mellel({"live", path("in.rtf"), "-o", path("in.rtf")}), 2, line);
}

TEST_F(Commands, OutputThatCannotBeWrittenIsTold) {
  startHost();
  expectFailure(mellel({"scan", path("in.rtf"), "-o", path("none/out.rtf")}), 4,
                "cannot write " + path("none/out.rtf") + ": No such file or directory");
}

TEST_F(Commands, CopyThatFindsNoRoomLeavesTheOldOneAndNothingElse) {
  startHost();
  write("out.rtf", "the copy of yesterday");
  // No file may grow: what a full disk comes to, without filling one. What is said goes through a
  // pipe, to a program that may write.
  const Result ended = test_support::run(
      {"/bin/sh", "-c", "{ (ulimit -f 0; exec \"$@\" 2>&1); echo \"status $?\"; } | cat", "sh",
       MELLEL, "scan", path("in.rtf"), "--style", "apa", "-o", path("out.rtf")});
  EXPECT_EQ(ended.standardOutput,
            "mellel: cannot write " + path("out.rtf") + ": File too large\nstatus 4\n");
  EXPECT_EQ(read("out.rtf"), "the copy of yesterday");
  EXPECT_EQ(folder_.fileCount(), 2U);
}

TEST_F(Commands, WrongUsageIsTold) {
  expectFailure(mellel({"scan"}), 2, "scan needs an RTF document");
  expectFailure(mellel({}), 2, "a command is missing; mellel --help lists them");
}

TEST_F(Commands, HelpIsPrinted) {
  const Result ended = mellel({"--help"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.standardOutput, HasSubstr("mellel scan IN.rtf"));
}

TEST_F(Commands, CheckListsTheCitationsAsATableAndAsJSON) {
  write("in.rtf", "{\\rtf1 \\{A 1; B 2\\}\\{verified C\\}}");
  startHost();
  const Result table = mellel({"check", path("in.rtf")});
  EXPECT_EQ(table.status, 0);
  EXPECT_EQ(table.standardOutput,
            "#  Citation  Found  Looked up as\n1  A 1; B 2  yes    A 1 |  B 2\n"
            "2  C         yes    C\n");
  EXPECT_EQ(
      mellel({"check", path("in.rtf"), "--json"}).standardOutput,
      "[\n  {\"citation\": \"A 1; B 2\", \"found\": true, \"records\": [\"A 1\", \" B 2\"]},\n"
      "  {\"citation\": \"C\", \"found\": true, \"records\": [\"C\"]}\n]\n");
}

TEST_F(Commands, LiveFormatsInOneRequest) {
  write("in.rtf", "{\\rtf1 \\{verified A\\}}");
  startHost();
  const Result ended = mellel({"live", path("in.rtf"), "-o", path("out.rtf")});
  EXPECT_EQ(ended.status, 0) << ended.standardError;
  EXPECT_THAT(ended.standardOutput, HasSubstr("formatted: 1 of 1 citation\n"));
  EXPECT_THAT(read("out.rtf"), HasSubstr("{\\rtf1 {({\\i A})}\\par\n{\\pard\\plain"));
  EXPECT_EQ(host_->readLine(), "live bibliography {A}");
}

TEST_F(Commands, LiveAnswerWithoutItsContentMeansCancelled) {
  startHost("cancels-live");
  expectFailure(mellel({"live", path("in.rtf")}), 1, "cancelled in Korvo");
}

TEST_F(Commands, LiveAnswerForAnotherDocumentIsRefused) {
  startHost("other-document");
  expectFailure(mellel({"live", path("in.rtf")}), 4,
                "Korvo's answer is broken: scan reply belongs to another document");
}

TEST_F(Commands, InsertPrintsTheCitationOfTheSelection) {
  startHost();
  const Result ended = mellel({"insert"});
  EXPECT_EQ(ended.status, 0) << ended.standardError;
  EXPECT_EQ(ended.standardOutput, "{A;B}\n");
  EXPECT_EQ(host_->readLine(), "insert");
}

TEST_F(Commands, InsertPutsTheCitationIntoACopy) {
  startHost("one-selected");
  const Result ended =
      mellel({"insert", "--into", path("in.rtf"), "--at", "and", "-o", path("out.rtf")});
  EXPECT_EQ(ended.status, 0) << ended.standardError;
  EXPECT_EQ(ended.standardOutput, "wrote: " + path("out.rtf") + "\ninserted: {Müller 2002}\n");
  EXPECT_THAT(read("out.rtf"), HasSubstr(" and{\\uc0 \\{M\\u252 ller 2002\\}} \\{Nobody"));
}

TEST_F(Commands, InsertSaysWhereTheTextDoesNotStand) {
  startHost();
  expectFailure(
      mellel({"insert", "--into", path("in.rtf"), "--at", "nowhere", "-o", path("out.rtf")}), 2,
      "\"nowhere\" stands nowhere in " + path("in.rtf"));
}

TEST_F(Commands, InsertWithoutASelectionIsTold) {
  startHost("nothing-selected");
  expectFailure(mellel({"insert"}), 1,
                "Korvo has no citation to insert: select references there first");
}

TEST_F(Commands, OpenSendsTheCitation) {
  startHost();
  EXPECT_EQ(mellel({"open", "Smith 2001#S"}).status, 0);
  EXPECT_EQ(host_->readLine(), "find Smith 2001#S");
}

TEST_F(Commands, OpenRefusesWhatHoldsNoCitation) {
  startHost();
  expectFailure(mellel({"open", "{ ; #S}"}), 2, "\"{ ; #S}\" holds no citation");
}

TEST_F(Commands, HandshakePrintsThePreferences) {
  startHost();
  const Result ended = mellel({"handshake"});
  EXPECT_EQ(ended.status, 0) << ended.standardError;
  EXPECT_EQ(ended.standardOutput, "preferences: 0 5 0 65535 0 0 1\n");
  EXPECT_EQ(host_->readLine(), "handshake of 4 bytes");
}

TEST_F(Commands, WatchKeepsTheCopyUpToDate) {
  startHost();
  ChildProcess watch({MELLEL, "live", "--watch", path("in.rtf"), "-o", path("out.rtf")});
  EXPECT_THAT(watch.readLine(), HasSubstr("out.rtf: 2 of 3 citations, "));
  EXPECT_THAT(host_->readLine(), HasSubstr("live"));

  write("in.rtf", "{\\rtf1 \\{New 1\\}}");
  EXPECT_THAT(watch.readLine(), HasSubstr("out.rtf: 1 of 1 citations, "));
  EXPECT_THAT(read("out.rtf"), HasSubstr("({\\i New 1})"));
  EXPECT_EQ(host_->readLine(), "live bibliography {New 1}");

  // Half a document, as an editor may leave it for a moment.
  write("in.rtf", "{\\rtf1 \\{New");
  write("beside.rtf", "{\\rtf1 \\{Newer 2\\}}");
  fs::rename(path("beside.rtf"), path("in.rtf"));
  expectedInput_ = "{\\rtf1 \\{Newer 2\\}}";
  EXPECT_THAT(watch.readLine(), HasSubstr("out.rtf: 1 of 1 citations, "));
  EXPECT_EQ(host_->readLine(), "live bibliography {Newer 2}");

  watch.send(SIGTERM);
  EXPECT_EQ(watch.waitForExit(), 0);
}

TEST_F(Commands, WatchGoesOnWhenTheHostComesBack) {
  startHost();
  ChildProcess watch({MELLEL, "live", "--watch", path("in.rtf"), "-o", path("out.rtf")});
  EXPECT_THAT(watch.readLine(), HasSubstr("updated"));
  host_.reset();
  write("in.rtf", "{\\rtf1 \\{New 1\\}}");
  EXPECT_EQ(watch.readLine(std::chrono::milliseconds(500)), "");
  startHost();
  write("in.rtf", "{\\rtf1 \\{New 2\\}}");
  EXPECT_THAT(watch.readLine(), HasSubstr("1 of 1 citations"));
  EXPECT_THAT(read("out.rtf"), HasSubstr("New 2"));
}

TEST_F(Commands, OnlyOneScanRunsAtATime) {
  startHost("silent");
  ChildProcess first({MELLEL, "scan", path("in.rtf"), "-o", path("first.rtf")});
  EXPECT_THAT(host_->readLine(), HasSubstr("preliminary scan"));
  const Result second = scan();
  EXPECT_EQ(second.status, 2);
  EXPECT_EQ(second.standardError, "mellel: another mellel is running, and would get the answers\n");
  // What needs no answer of its own is not in the way.
  EXPECT_EQ(mellel({"open", "Smith"}).status, 0);
  first.end();
}

}  // namespace
}  // namespace mellel::commands
