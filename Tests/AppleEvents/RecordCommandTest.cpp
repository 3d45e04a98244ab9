// appleevents record, on a message bus of the test's own.
#include "BusTest.h"
#include "Payloads.h"

#include <Tools/AppleEvents/Payloads/EventKinds.h>
#include <Tools/AppleEvents/Recordings/RecordingText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <memory>

namespace {

using namespace appleevents;
using namespace appleevents_test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class RecordCommand : public BusTest {
 protected:
  // Each message in a word or two.
  std::vector<std::string> messages() const {
    const auto recording = readRecording(test_support::readFile(path()));
    std::vector<std::string> lines;
    EXPECT_TRUE(recording) << recording.error();
    for (const RecordedMessage &message : recording.value_or(Recording()).messages) {
      lines.push_back(headLine(message) + ' ' +
                      std::to_string(message.directObject().value_or("").size()));
    }
    return lines;
  }
};

TEST_F(RecordCommand, AConversationIsRecordedFromItsFirstEventToTheLastReply) {
  startHost();
  const Result result = record({"--", MELLEL, "handshake"});
  EXPECT_EQ(result.status, 0) << result.standardError;
  EXPECT_THAT(result.standardOutput, HasSubstr("recorded: 2 events in "));
  EXPECT_THAT(messages(),
              ElementsAre("event 1: 'mLeL' to 'KRVO', 'mLeL' 'IMHR', wants a reply 4",
                          "event 2: 'KRVO' to 'mLeL', 'mLeL' 'PREF' 14", "reply to 1 0"));
  struct stat information{};
  ASSERT_EQ(stat(path().c_str(), &information), 0);
  EXPECT_EQ(information.st_mode & 0777, 0600U) << "others may read it";
}

TEST_F(RecordCommand, AProcessThatComesLaterIsKnownByItsSignature) {
  ChildProcess recorder({APPLE_EVENTS, "record", "-o", path()});
  ASSERT_TRUE(recorder.waitForLine("recording until interrupted"));
  startHost();
  ASSERT_EQ(test_support::run({MELLEL, "handshake"}).status, 0);
  recorder.send(SIGINT);
  EXPECT_EQ(recorder.waitForExit(), 0) << recorder.standardError();
  EXPECT_THAT(messages(), testing::Contains("event 2: 'KRVO' to 'mLeL', 'mLeL' 'PREF' 14"));
}

TEST_F(RecordCommand, WhatIsSaidInTheMomentBehindTheCommandsEndIsRecorded) {
  startHost();
  const std::string command = "\"" + std::string(MELLEL) + "\" handshake &";
  ASSERT_EQ(record({"--", "/bin/sh", "-c", command}).status, 0);
  EXPECT_THAT(messages(), testing::Contains(HasSubstr("'IMHR'")));
}

TEST_F(RecordCommand, AnEventThatNobodyTakesEndsInAnError) {
  EXPECT_EQ(record({"--", MELLEL, "open", "Smith"}).status, 1);
  EXPECT_THAT(messages(), ElementsAre("event 1: 'mLeL' to 'KRVO', 'mLeL' 'FNDN', wants a reply 6",
                                      "error to 1: -600 0"));
}

TEST_F(RecordCommand, TwoRecordingsOfTheSameAreTheSameWithoutTimes) {
  startHost();
  ASSERT_EQ(record({"--no-times", "--", MELLEL, "handshake"}).status, 0);
  const std::string first = test_support::readFile(path());
  ASSERT_EQ(record({"--no-times", "--", MELLEL, "handshake"}).status, 0);
  EXPECT_EQ(test_support::readFile(path()), first);
  EXPECT_THAT(first, Not(HasSubstr("\ntime ")));
}

TEST_F(RecordCommand, DataInAMemoryFileIsRecorded) {
  startHost();
  // Together more than a mebibyte.
  const std::string longName(600, 'x');
  std::string document = "{\\rtf1\\ansi ";
  for (int number = 0; number < 2000; ++number) {
    document += "\\{Author" + longName + std::to_string(number) + " 2001\\} ";
  }
  const std::string file = folder_.write("large.rtf", document + "\\par}").string();
  ASSERT_EQ(record({"--", MELLEL, "check", file, "--quiet"}).status, 0);
  const auto recording = readRecording(test_support::readFile(path()));
  ASSERT_TRUE(recording) << recording.error();
  const RecordedMessage &request = recording->messages.at(0);
  ASSERT_EQ(request.parameters.size(), 1u);
  EXPECT_TRUE(request.parameters[0].isInMemoryFile);
  EXPECT_THAT(request.parameters[0].bytes, HasSubstr("x1999 2001\0"s));
}

TEST_F(RecordCommand, AnAnonymousRecordingHasNoWordOfTheAuthors) {
  startHost();
  ASSERT_EQ(record({"--anonymous", "--", MELLEL, "open", "Smith 2001"}).status, 0);
  const std::string text = test_support::readFile(path());
  EXPECT_THAT(text, HasSubstr("\nanonymous\n"));
  EXPECT_THAT(text, Not(HasSubstr("Smith")));
  EXPECT_THAT(messages().at(0), HasSubstr("'FNDN', wants a reply 11"));
}

TEST_F(RecordCommand, WhatIsWrongIsOneLineAndAStatus) {
  const auto expect = [](const Result &result, int status, const std::string &line) {
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.standardError, "appleevents: " + line + "\n");
  };
  expect(test_support::run({APPLE_EVENTS, "record"}), 2, "record needs -o and a file");
  expect(test_support::run({APPLE_EVENTS, "record", "-o", path(), "mellel"}), 2,
         "record has no use for \"mellel\"; a command stands behind --");
  expect(test_support::run({APPLE_EVENTS, "record", "-o", path(), "--"}), 2,
         "behind -- a command is missing");
  expect(record({"--", "/none"}), 2, "cannot start /none: No such file or directory");
  expect(test_support::run({APPLE_EVENTS, "record", "-o", "/none/x"}), 4,
         "cannot write /none/x: No such file or directory");
  expect(record({"--", "false"}), 1, "the command ended with status 1");
}

TEST_F(RecordCommand, WithoutABusThereIsNothingToRecord) {
  const std::string address = getenv("DBUS_SESSION_BUS_ADDRESS");
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/none", 1);
  const Result result = record({});
  setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
  EXPECT_EQ(result.status, 3);
  EXPECT_THAT(result.standardError, HasSubstr("there is no session bus"));
}

TEST_F(RecordCommand, ABusThatGoesAwayEndsTheRecordingWhole) {
  ChildProcess recorder({APPLE_EVENTS, "record", "-o", path()});
  ASSERT_TRUE(recorder.waitForLine("recording until interrupted"));
  bus_->stop();
  EXPECT_EQ(recorder.waitForExit(), 3);
  EXPECT_EQ(recorder.standardError(), "appleevents: the session bus has gone meanwhile\n");
  EXPECT_TRUE(messages().empty());
  bus_->start();
}

}  // namespace
