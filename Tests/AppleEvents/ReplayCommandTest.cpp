// appleevents replay and show: a conversation recorded with a host, and played to the same and to
// another one.
#include "BusTest.h"
#include "Payloads.h"

#include <Tools/AppleEvents/Recordings/RecordingText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

using namespace appleevents_test;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::MatchesRegex;

class ReplayCommand : public BusTest {
 protected:
  // What a word processor has to say about a document.
  void recordScan(const std::string &command = "scan", const std::string &scenario = "") {
    const std::string draft =
        folder_.write("in.rtf", "{\\rtf1 \\{Smith 2001\\} and \\{Jones 1999\\}.\\par}").string();
    startHost(scenario);
    const std::string copy = (folder_.path() / "out.rtf").string();
    record({"--", MELLEL, command, draft, "--style", "apa", "-o", copy, "--quiet"});
  }

  Result replay(const std::string &timeout = "20") const {
    return test_support::run({APPLE_EVENTS, "replay", path(), "--timeout", timeout});
  }
};

TEST_F(ReplayCommand, TheSameHostAnswersTheSame) {
  recordScan();
  const Result result = replay();
  EXPECT_EQ(result.status, 0) << result.standardError;
  EXPECT_EQ(result.standardOutput,
            "event 1, preliminary scan: as recorded\n"
            "event 3, final scan: as recorded\n"
            "replayed: 2 requests, 0 answered otherwise\n");
  EXPECT_EQ(result.standardError, "");
}

TEST_F(ReplayCommand, ALiveBibliographyIsComparedInItsReply) {
  recordScan("live");
  EXPECT_EQ(replay().status, 0);
  startHost("empty");
  const Result result = replay();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(
      result.standardOutput,
      HasSubstr("event 1, live bibliography: differs\n  the reply to event 1: text of group "
                "1 (byte 22): was \"({\\i Smith 2001})\", is \"\"\n"));
}

TEST_F(ReplayCommand, WhatTheHostSaysOtherwiseIsSaidInWords) {
  recordScan();
  startHost("other-style");
  const Result style = replay();
  EXPECT_EQ(style.status, 1);
  EXPECT_THAT(style.standardOutput,
              AllOf(HasSubstr("event 1, preliminary scan: as recorded\n"),
                    HasSubstr("event 3, final scan: differs\n  scan reply: style (byte 14): was "
                              "\"apa\", is \"Another Style\"\n"),
                    HasSubstr("replayed: 2 requests, 1 answered otherwise\n")));
  startHost("no-bibliography");
  EXPECT_THAT(replay().standardOutput, HasSubstr("scan reply: bibliography is missing\n"));
  startHost("cancels-final-scan");
  EXPECT_THAT(replay("3").standardOutput, AllOf(HasSubstr("  scan reply did not come\n"),
                                                HasSubstr("  cancel came and was not recorded\n")));
}

TEST_F(ReplayCommand, AnotherDocumentIDIsToldAndOverlooked) {
  recordScan();
  startHost("other-document");
  const Result result = replay();
  EXPECT_THAT(
      result.standardOutput,
      MatchesRegex("event 1, preliminary scan: as recorded\n  citation resolution: document "
                   "[0-9]+ instead of [0-9]+, overlooked\n.*"));
  EXPECT_EQ(result.status, 0) << result.standardOutput;
}

TEST_F(ReplayCommand, ACancellationIsAnAnswerLikeAnyOther) {
  recordScan("scan", "cancels-final-scan");
  const Result result = replay();
  EXPECT_EQ(result.status, 0) << result.standardOutput;
  startHost();
  EXPECT_THAT(replay("3").standardOutput,
              AllOf(HasSubstr("  cancel did not come\n"),
                    HasSubstr("  scan reply came and was not recorded\n")));
}

TEST_F(ReplayCommand, AHostThatSaysNothingOrEndsIsTold) {
  recordScan();
  startHost("silent");
  const Result silent = replay("3");
  EXPECT_EQ(silent.status, 1);
  EXPECT_THAT(silent.standardOutput, HasSubstr("  citation resolution did not come\n"));
  startHost("ends-in-final-scan");
  const Result ended = replay();
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.standardOutput, HasSubstr("  scan reply did not come: the host has ended\n"));
}

// Whoever has an answer need not wait for the reply before the next request.
TEST_F(ReplayCommand, AReplyMayComeBeforeTheRequestItWasRecordedBehind) {
  recordScan();
  auto recording = appleevents::readRecording(test_support::readFile(path()));
  ASSERT_TRUE(recording) << recording.error();
  auto &messages = recording->messages;
  const auto reply = std::ranges::find(messages, appleevents::RecordedMessage::Kind::reply,
                                       &appleevents::RecordedMessage::kind);
  ASSERT_EQ(reply->number, 1u);
  std::rotate(reply, reply + 1, messages.end());
  folder_.write("recording", appleevents::linesOf(*recording));
  const Result result = replay();
  EXPECT_EQ(result.status, 0) << result.standardOutput << result.standardError;
}

TEST_F(ReplayCommand, AHostIsStartedForIt) {
  recordScan();
  endHost();
  const Result result = test_support::run({APPLE_EVENTS, "replay", path(), "--against", TEST_HOST});
  EXPECT_EQ(result.status, 0) << result.standardOutput << result.standardError;
  EXPECT_THAT(result.standardOutput, HasSubstr("0 answered otherwise\n"));
  EXPECT_THAT(test_support::run({MELLEL, "handshake"}).status, 3) << "the host still runs";
}

TEST_F(ReplayCommand, WhatIsInTheWayIsOneLineAndAStatus) {
  recordScan();
  const auto expect = [](const Result &result, int status, const std::string &line) {
    EXPECT_EQ(result.status, status) << result.standardOutput;
    EXPECT_EQ(result.standardError, "appleevents: " + line + "\n");
  };
  startHost("silent");
  {
    ChildProcess waiting({MELLEL, "check", (folder_.path() / "in.rtf").string(), "--quiet"});
    ASSERT_TRUE(host_->waitForLine("preliminary scan"));
    expect(replay(), 3, "a word processor is running, and would get the answers");
  }
  endHost();
  expect(replay(), 3, "no host is running");
  startHost();
  expect(test_support::run({APPLE_EVENTS, "replay", path(), "--against", TEST_HOST}), 3,
         "a host is running already: --against starts another");
  endHost();
  expect(test_support::run({APPLE_EVENTS, "replay"}), 2, "replay needs a recording");
  expect(test_support::run({APPLE_EVENTS, "replay", path(), "--timeout", "0"}), 2,
         "--timeout needs a number of seconds, not \"0\"");
  expect(test_support::run({APPLE_EVENTS, "replay", path(), "--against"}), 2,
         "behind --against a command is missing");
  expect(test_support::run({APPLE_EVENTS, "replay", path(), "--against", "/none"}), 2,
         "cannot start /none: No such file or directory");
}

TEST_F(ReplayCommand, ABadRecordingIsRefusedInOneLine) {
  recordScan();
  const std::string whole = test_support::readFile(path());
  const auto expect = [&](const std::string &text, const std::string &line) {
    folder_.write("recording", text);
    for (const char *const command : {"replay", "show"}) {
      const Result result = test_support::run({APPLE_EVENTS, command, path()});
      EXPECT_EQ(result.status, 4);
      EXPECT_EQ(result.standardError, "appleevents: " + path() + ": " + line + "\n");
      EXPECT_EQ(result.standardOutput, "");
    }
  };
  expect(whole.substr(0, whole.size() / 2), "it is cut short: its last line is missing");
  std::string text = whole;
  expect(text.replace(text.find(" 1\n"), 3, " 9\n"),
         "it is a recording of version 9, and this program reads version 1");
  text = whole;
  expect(text.replace(text.find("'SCNQ'"), 6, "'LVBQ'").substr(0, text.size()),
         "line " + std::to_string(std::ranges::count(whole, '\n')) +
             ": something above was edited: the numbers of this line are those of another");
  expect("no recording", "it is no recording of appleevents");
}

TEST_F(ReplayCommand, ShowTellsWhoSaidWhatAndHowLongTheAnswerTook) {
  recordScan();
  const Result result = test_support::run({APPLE_EVENTS, "show", path()});
  EXPECT_EQ(result.status, 0) << result.standardError;
  // The reply to a request and what follows its answer pass each other on the bus.
  std::vector<std::string> lines;
  for (std::istringstream text(result.standardOutput); text;) {
    std::getline(text, lines.emplace_back());
  }
  const std::string time = " +[0-9.]+ m?s +";
  const std::string delay = " +.[0-9.]+ m?s";
  for (const std::string &line :
       {" *1" + time + "word processor → host +preliminary scan +54 +document [0-9]+, 2 citations",
        " *2" + time + "host → word processor +citation resolution +[0-9]+" + delay +
            " +answers 1, document [0-9]+, 2 citations",
        time + "host → word processor +reply to 1 +0" + delay,
        " *4" + time + "host → word processor +scan reply +165" + delay +
            " +answers 3, document [0-9]+, 2 texts, style \"apa\", with a bibliography",
        time + "host → word processor +to the front"}) {
    EXPECT_THAT(lines, Contains(MatchesRegex(line)));
  }
  const Result event = test_support::run({APPLE_EVENTS, "show", "--event", "4", path()});
  EXPECT_EQ(event.status, 0) << event.standardError;
  EXPECT_THAT(event.standardOutput,
              AllOf(HasSubstr("'mLeL' 'SCNR', scan reply, from the host"),
                    HasSubstr("text of group 2"), HasSubstr("nothing is wrong")));
  const Result none = test_support::run({APPLE_EVENTS, "show", "--event", "9", path()});
  EXPECT_EQ(none.status, 2);
  EXPECT_EQ(none.standardError, "appleevents: " + path() + " has no event 9\n");
}

TEST_F(ReplayCommand, ShowPointsAtWhatIsBroken) {
  recordScan("scan", "too-few");
  const Result result = test_support::run({APPLE_EVENTS, "show", path()});
  EXPECT_EQ(result.status, 0) << "one text less is no fault of the layout";
  recordScan("scan", "cut-short");
  const Result cut = test_support::run({APPLE_EVENTS, "show", path()});
  EXPECT_EQ(cut.status, 1);
  EXPECT_THAT(cut.standardOutput, HasSubstr("BROKEN: "));
}

}  // namespace
