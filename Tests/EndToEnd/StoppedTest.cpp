// Either program is stopped in the middle of each request, as by Ctrl-Z or by a machine that
// sleeps, and goes on later: the work is done as if nothing had been, and whoever is not stopped is
// not held up.
//
// KORVO_STOPPED=60000 stops for a minute in place of a moment.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <thread>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::EndsWith;

constexpr auto longPatience = 5min;

std::chrono::milliseconds stopTime() {
  const char *given = std::getenv("KORVO_STOPPED");
  return given == nullptr ? 300ms : std::chrono::milliseconds(std::atol(given));
}

struct Request {
  const char *name;
  std::vector<std::string> arguments;
  bool writesCopy = false;
};

void PrintTo(const Request &request, std::ostream *out) { *out << request.name; }

class Stopped : public testing::TestWithParam<Request> {
 protected:
  void SetUp() override { ASSERT_TRUE(host_.isReady()) << host_.process().standardError(); }

  std::filesystem::path copy() const { return folder_.path() / "copy.rtf"; }

  std::vector<std::string> command(const std::vector<std::string> &more = {}) const {
    std::vector<std::string> arguments = {program("mellel")};
    for (const std::string &word : GetParam().arguments) {
      arguments.push_back(word == "DRAFT"  ? example("draft-textedit.rtf").string()
                          : word == "COPY" ? copy().string()
                                           : word);
    }
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

  // What the command prints, and the copy that it writes, if it does.
  using Outcome = std::pair<std::string, std::string>;

  Outcome outcome(const std::string &output) {
    Outcome found{output, GetParam().writesCopy ? readFile(copy()) : ""};
    std::filesystem::remove(copy());
    return found;
  }

  Outcome undisturbed() {
    const Result result = run(command());
    EXPECT_EQ(result.status, 0) << result.standardError;
    return outcome(result.standardOutput);
  }

  void expectWhole(ChildProcess &mellel, const Outcome &expected) {
    ASSERT_EQ(mellel.waitForExit(longPatience), 0) << mellel.standardError();
    EXPECT_EQ(outcome(mellel.standardOutput()), expected);
  }

  Host host_{{"--select", "hoare1969"}};
  const TemporaryDirectory folder_;
};

TEST_P(Stopped, HostGoesOnWhereItWas) {
  const Outcome expected = undisturbed();
  host_.stop();
  ChildProcess mellel(command());
  EXPECT_EQ(mellel.waitForExit(stopTime()), std::nullopt);
  host_.process().send(SIGCONT);
  expectWhole(mellel, expected);
  EXPECT_EQ(undisturbed(), expected);
}

TEST_P(Stopped, HostIsNotWaitedForLongerThanAskedAndItsLateAnswerHarmsNobody) {
  const Outcome expected = undisturbed();
  host_.stop();
  const Result result = run(command({"--timeout", "1"}));
  EXPECT_EQ(result.status, brokenReply);
  EXPECT_THAT(result.standardError, testing::HasSubstr("Korvo did not answer "));
  EXPECT_FALSE(std::filesystem::exists(copy()));
  host_.process().send(SIGCONT);
  EXPECT_EQ(undisturbed(), expected);
}

TEST_P(Stopped, WordProcessorAtAnyMomentGoesOnWhereItWasAndHoldsNobodyUp) {
  const auto start = Clock::now();
  const Outcome expected = undisturbed();
  const auto length = Clock::now() - start;
  const Scan other = scan("draft-textedit.rtf", {"--style", "apa"}, "live");
  constexpr int moments = 4;
  for (int moment = 0; moment < moments; ++moment) {
    SCOPED_TRACE(moment);
    ChildProcess mellel(command());
    std::this_thread::sleep_for(length * moment / moments);
    mellel.send(SIGSTOP);
    const auto asked = Clock::now();
    EXPECT_EQ(scan("draft-textedit.rtf", {"--style", "apa"}, "live").copy, other.copy);
    EXPECT_LT(Clock::now() - asked, 5s);
    std::this_thread::sleep_for(stopTime() / moments);
    mellel.send(SIGCONT);
    expectWhole(mellel, expected);
  }
}

INSTANTIATE_TEST_SUITE_P(
    , Stopped,
    testing::Values(Request{"Scan", {"scan", "DRAFT", "--style", "apa", "-o", "COPY"}, true},
                    Request{"Live", {"live", "DRAFT", "--style", "apa", "-o", "COPY"}, true},
                    Request{"Check", {"check", "DRAFT"}}, Request{"Insert", {"insert"}},
                    Request{"Open", {"open", "Hoare 1969#hoare1969"}},
                    Request{"Handshake", {"handshake"}}),
    [](const auto &tested) { return tested.param.name; });

}  // namespace
