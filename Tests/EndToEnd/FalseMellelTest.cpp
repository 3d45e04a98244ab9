// A program that is no word processor takes the word processor's name, and behaves badly with it.
// The host serves on, a real word processor says what is in its way, and no copy comes of it.
#include "Applications.h"
#include "FalseMellel.h"

#include <Formats/EventTable.h>
#include <Formats/ScanRequest.h>
#include <Formats/SmallMessages.h>
#include <Tests/Support/EventSending.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using test_support::sendOneWay;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char draft[] = "draft-textedit.rtf";
// Far below the minutes that an event waits for its answer, and enough for a slow machine.
constexpr auto promptly = 20s;

class FalseMellelTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host_.isReady()) << host_.process().standardError();
    const Scan whole = scan(draft, {"--style", "apa"});
    ASSERT_EQ(whole.result.status, 0) << whole.result.standardError;
    undisturbed_ = whole.copy;
  }

  OSStatus sendToHost(AEEventID eventID, const std::string &payload) {
    return sendOneWay(formats::korvoSignature, formats::mellelSignature, eventID, payload);
  }

  // Requests whose answers go to whoever has the word processor's name.
  void askForAnswers(int count, std::size_t citations) {
    const std::vector<formats::CitationPair> pairs(citations, {"Hoare 1969#hoare1969", ""});
    for (int request = 0; request < count; ++request) {
      EXPECT_EQ(sendToHost(formats::request::preliminaryScan,
                           formats::encodePreliminaryScanRequest(7, pairs)),
                noErr);
    }
    EXPECT_EQ(sendToHost(formats::request::finalScan,
                         formats::encodeFinalScanRequest(7, true, "apa", {pairs.data(), 1})),
              noErr);
    EXPECT_EQ(sendToHost(formats::request::insertCitation, ""), noErr);
    EXPECT_EQ(sendToHost(formats::request::handshake, ""), noErr);
  }

  void expectHostServes() {
    const auto start = Clock::now();
    const Scan live = scan(draft, {"--style", "apa"}, "live");
    EXPECT_EQ(live.result.status, 0) << live.result.standardError;
    EXPECT_EQ(live.copy, undisturbed_);
    const auto time = Clock::now() - start;
    EXPECT_LT(time, promptly);
    EXPECT_TRUE(host_.process().isRunning());
    std::printf("figure: served another %lld ms later\n",
                static_cast<long long>(
                    std::chrono::duration_cast<std::chrono::milliseconds>(time).count()));
  }

  Host host_{{"--select", "hoare1969"}};
  std::string undisturbed_;
};

TEST_F(FalseMellelTest, BeforeAScanIsToldAndNoCopyIsMade) {
  const FalseMellel peer(FalseMellel::Manner::readsNothing);
  ASSERT_TRUE(peer.hasName());
  const Scan refused = scan(draft, {"--style", "apa"});
  EXPECT_EQ(refused.result.status, usageError);
  EXPECT_EQ(refused.result.standardError,
            "mellel: another mellel is running, and would get the answers\n");
  EXPECT_THAT(refused.copy, IsEmpty());
  expectHostServes();
}

TEST_F(FalseMellelTest, DuringAScanDoesNotGetTheName) {
  const TemporaryDirectory folder;
  host_.stop();
  ChildProcess mellel({program("mellel"), "scan", example(draft).string(), "--style", "apa", "-o",
                       (folder.path() / "copy.rtf").string()});
  EXPECT_EQ(mellel.waitForExit(300ms), std::nullopt);
  const FalseMellel peer(FalseMellel::Manner::answersNonsense);
  EXPECT_FALSE(peer.hasName());
  host_.process().send(SIGCONT);
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_EQ(readFile(folder.path() / "copy.rtf"), undisturbed_);
  EXPECT_EQ(peer.received(), 0);
}

TEST_F(FalseMellelTest, ThatNeverReadsItsAnswersHoldsNobodyUp) {
  {
    const FalseMellel peer(FalseMellel::Manner::readsNothing);
    ASSERT_TRUE(peer.hasName());
    askForAnswers(40, 5000);
    expectHostServes();
  }
  EXPECT_EQ(scan(draft, {"--style", "apa"}).copy, undisturbed_);
}

TEST_F(FalseMellelTest, ThatRefusesOrAnswersNonsenseOrLateChangesNothing) {
  for (const auto manner : {FalseMellel::Manner::refuses, FalseMellel::Manner::answersNonsense,
                            FalseMellel::Manner::isSlow}) {
    SCOPED_TRACE(static_cast<int>(manner));
    const FalseMellel peer(manner);
    ASSERT_TRUE(peer.hasName());
    askForAnswers(4, 10);
    expectHostServes();
    EXPECT_GT(peer.received(), 0);
  }
  EXPECT_EQ(scan(draft, {"--style", "apa"}).copy, undisturbed_);
}

// The other way round: a program that is not the host sends answers to a word processor that waits
// for those of the host.
TEST_F(FalseMellelTest, AnswersForOtherDocumentsToAWaitingMellelArePassedOver) {
  const TemporaryDirectory folder;
  host_.stop();
  ChildProcess mellel({program("mellel"), "scan", example(draft).string(), "--style", "apa", "-o",
                       (folder.path() / "copy.rtf").string()});
  EXPECT_EQ(mellel.waitForExit(300ms), std::nullopt);
  const std::string nonsense = std::string("\0\1\0\0\0\7", 6) + std::string(5000, '\xFF');
  for (int times = 0; times < 20; ++times) {
    for (const auto eventID : {formats::answer::citationResolution, formats::answer::finalScan,
                               formats::answer::cancel, formats::answer::preferences}) {
      EXPECT_EQ(sendOneWay(formats::mellelSignature, formats::mellelSignature, eventID, nonsense),
                noErr);
    }
  }
  host_.process().send(SIGCONT);
  EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
  EXPECT_EQ(readFile(folder.path() / "copy.rtf"), undisturbed_);
}

}  // namespace
