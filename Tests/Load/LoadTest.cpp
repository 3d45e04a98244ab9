// Sixteen processes send the host small requests, all at once, as fast as they are answered; among
// them comes the final scan of a large document. Then the sixteen flood it: more than its queue
// holds, while it sits in a dialog.
//
//   LoadTest [EVENTS CITATIONS [FLOOD BYTES]]
//   LoadTest korvo EVENTS CITATIONS        the same of the real host on the desktop, without flood
//
// EVENTS small requests in all, a scan of CITATIONS citations, a flood of FLOOD requests of BYTES
// bytes each. (The bus's daemon needs time for each request that still waits for its reply, for
// every one that comes: some hundred large ones fill the queue sooner than many small ones.) Status
// 0 when nothing was lost, everybody got the answers to what they had sent, memory after the last
// event was what it was after the first thousand, and what did not fit into the queue was refused,
// and nothing else.
#include "AnswerEnd.h"
#include "LoadEvents.h"
#include "LoadNumbers.h"

#include <Formats/CitationResolution.h>
#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Platform/Bus/EventInbox.h>
#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/EventSending.h>
#include <Tests/Support/LiveBytes.h>
#include <Tests/Support/MemoryFigures.h>
#include <Tests/Support/PrivateBus.h>
#include <Tests/Support/RunLoopWait.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

using namespace load_test;
using test_support::ChildProcess;
using test_support::freedMemoryIsGivenBack;
using test_support::makeProcessesCountExactly;
using test_support::MemoryFigures;
using test_support::memoryOf;
using test_support::Outcome;
using test_support::runUntil;
using test_support::sendAndWait;
using test_support::sendOneWay;

namespace {

constexpr double mostGrowth = 0.02;
// What an event and its parameter count in the queue beside their data.
constexpr std::size_t eventOverhead = 1024 + 64;
constexpr std::chrono::hours patience{2};

struct Plan {
  Asked host = Asked::echo;
  // After these memory is read for the first time. The real host takes its time for each.
  std::uint32_t firstEvents = 1000;
  std::uint32_t eventsOfEach = 4000 / senderCount;
  std::uint32_t citations = 10'000;
  std::uint32_t floodOfEach = 320 / senderCount;
  std::size_t floodBytes = 1'000'000;
};

struct Memory {
  std::size_t liveBytes = 0;
  MemoryFigures figures;
};

class Load {
 public:
  explicit Load(const Plan &plan) : plan_(plan) {
    if (!receiver_.waitForLine(isOfKorvo() ? "ready" : "0")) {
      std::fputs("The host did not start\n", stderr);
      std::exit(1);
    }
    for (auto &ofSender : resolved_) {
      ofSender.resize(plan.eventsOfEach);
    }
  }

  bool run() {
    const std::uint32_t first = (plan_.firstEvents + senderCount - 1) / senderCount;
    sendAll(0, first, false);
    const Memory before = memory();
    const auto start = std::chrono::steady_clock::now();
    sendAll(first, plan_.eventsOfEach - first, true);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    const Memory after = memory();
    std::printf("events: %u from %u processes, %u a second\n", plan_.eventsOfEach * senderCount,
                senderCount,
                static_cast<unsigned>((plan_.eventsOfEach - first) * senderCount / time.count()));
    checkAnswers();
    checkMemory("live heap", before.liveBytes, after.liveBytes, true);
    // The script machine of korvo lets its heap grow before it tidies up.
    const bool isSteady = freedMemoryIsGivenBack() && !isOfKorvo();
    checkMemory("resident", before.figures.resident, after.figures.resident, isSteady);
    checkMemory("own and written to", before.figures.ownWritten, after.figures.ownWritten,
                isSteady);
    std::printf("most resident: %zu KiB\n", after.figures.mostResident / 1024);
    if (!isOfKorvo()) {
      flood();
    }
    return failures_ == 0;
  }

 private:
  bool isOfKorvo() const { return plan_.host == Asked::korvo; }

  std::vector<std::string> hostProgram() const {
    return isOfKorvo() ? std::vector<std::string>{KORVO, "--library", LIBRARY, "--plug-in", WITNESS}
                       : std::vector<std::string>{LOAD_RECEIVER};
  }

  void check(bool isRight, const std::string &what) {
    if (!isRight) {
      std::printf("FAILED: %s\n", what.c_str());
      ++failures_;
    }
  }

  void answerArrived(FourCharCode eventID, std::string_view payload) {
    if (eventID == formats::answer::preferences) {
      ++preferences_;
    } else if (eventID == formats::answer::citationResolution) {
      resolutionArrived(payload);
    } else if (eventID == formats::answer::finalScan) {
      scanArrived(payload);
    } else if (eventID == doneEvent) {
      done_.emplace_back(payload);
    } else {
      ++unexpected_;
    }
  }

  void resolutionArrived(std::string_view payload) {
    const auto answer = formats::decodeCitationResolution(payload);
    const std::uint32_t number = answer ? answer->documentID : 0;
    const bool isKnown = answer && senderOf(number) < senderCount &&
                         indexOf(number) < plan_.eventsOfEach &&
                         kindOf(number) == Kind::preliminaryScan;
    if (!isKnown || answer->citations.size() != 1 ||
        answer->citations.front().citation != citationText(plan_.host, number) ||
        resolved_[senderOf(number)][indexOf(number)]) {
      ++unexpected_;
      return;
    }
    resolved_[senderOf(number)][indexOf(number)] = true;
    ++resolutions_;
  }

  void scanArrived(std::string_view payload) {
    const auto reply = formats::decodeScanReply(payload);
    scanIsRight_ =
        reply && reply->documentID == plan_.citations && reply->groups.size() == plan_.citations;
    for (std::uint32_t index = 0; scanIsRight_ && index < plan_.citations; ++index) {
      scanIsRight_ = isFormatted(plan_.host, index, reply->groups[index]);
    }
    ++scans_;
  }

  void sendScan() {
    std::vector<std::string> texts;
    for (std::uint32_t index = 0; index < plan_.citations; ++index) {
      texts.push_back(citationText(plan_.host, index));
    }
    std::vector<formats::CitationPair> citations;
    for (const std::string &text : texts) {
      citations.push_back({text, ""});
    }
    check(sendOneWay(korvoSignature, formats::mellelSignature, formats::request::finalScan,
                     formats::encodeFinalScanRequest(plan_.citations, false, styleOf(plan_.host),
                                                     citations)) == noErr,
          "the final scan could not be sent");
  }

  std::uint32_t expectedOf(Kind kind, std::uint32_t first, std::uint32_t count) const {
    std::uint32_t expected = 0;
    for (std::uint32_t index = first; index < first + count; ++index) {
      expected += kindOf(index) == kind ? senderCount : 0;
    }
    return expected;
  }

  // All senders at once, `count` events of each; with the scan once half of it is answered.
  void sendAll(std::uint32_t first, std::uint32_t count, bool withScan) {
    expectedResolutions_ += expectedOf(Kind::preliminaryScan, first, count);
    expectedPreferences_ += expectedOf(Kind::handshake, first, count);
    const std::uint32_t half = (resolutions_ + expectedResolutions_) / 2;
    done_.clear();
    std::vector<std::unique_ptr<ChildProcess>> senders;
    for (std::uint32_t sender = 0; sender < senderCount; ++sender) {
      senders.push_back(std::make_unique<ChildProcess>(std::vector<std::string>{
          LOAD_SENDER, isOfKorvo() ? "korvo" : "echo", std::to_string(sender),
          std::to_string(first), std::to_string(count)}));
    }
    if (withScan) {
      check(runUntil([&] { return resolutions_ >= half; }, patience), "half never came");
      sendScan();
    }
    const auto isDone = [&] {
      return done_.size() >= senderCount && resolutions_ >= expectedResolutions_ &&
             preferences_ >= expectedPreferences_ && (!withScan || scans_ > 0);
    };
    // Once all senders are through, what is still missing was lost.
    check(runUntil([&] { return done_.size() >= senderCount; }, patience), "a sender never ended");
    check(runUntil(isDone, std::chrono::minutes(2)), "some answers never came");
    for (const std::string &line : done_) {
      std::istringstream words(line);
      std::uint32_t sender = 0;
      std::uint32_t answered = 0;
      words >> sender >> answered;
      check(answered == count, "sender " + std::to_string(sender) + ": only " +
                                   std::to_string(answered) + " answered");
    }
  }

  void checkAnswers() {
    check(resolutions_ == expectedResolutions_, "preliminary scans lost");
    check(preferences_ == expectedPreferences_, "handshakes lost, or answered twice");
    check(scans_ == 1 && scanIsRight_, "the final scan is not what was sent");
    check(unexpected_ == 0, std::to_string(unexpected_) + " answers that nobody asked for");
    std::printf(
        "answers: %u in replies, %u preliminary scans, %u preferences, %u of a final scan "
        "of %u citations\n",
        expectedOf(Kind::liveBibliography, 0, plan_.eventsOfEach), resolutions_, preferences_,
        scans_, plan_.citations);
  }

  // Once the host has given back what it does not need.
  Memory memory() {
    runUntil([] { return false; }, std::chrono::milliseconds(1500));
    const Outcome live = sendAndWait(korvoSignature, loadClass, liveBytesEvent, "", replyTimeOut);
    check(live.status == noErr, "the host does not tell its memory");
    return {std::strtoul(live.reply.value_or("").c_str(), nullptr, 10),
            memoryOf(receiver_.number())};
  }

  void checkMemory(const char *what, std::size_t before, std::size_t after, bool isExpected) {
    const double growth = static_cast<double>(after) / static_cast<double>(before) - 1;
    std::printf("%s: %zu KiB after the first %u events, %zu KiB after the last (%+.2f %%)\n", what,
                before / 1024, plan_.firstEvents, after / 1024, growth * 100);
    if (isExpected) {
      check(std::abs(growth) <= mostGrowth, std::string(what) + " memory is not what it was");
    }
  }

  void flood() {
    const std::uint32_t sent = plan_.floodOfEach * senderCount;
    const auto room =
        static_cast<std::uint32_t>(platform::largestInboxSize / (eventOverhead + plan_.floodBytes));
    check(sendOneWay(korvoSignature, loadClass, holdEvent, "3600") == noErr, "no hold");
    done_.clear();
    std::vector<std::unique_ptr<ChildProcess>> senders;
    for (std::uint32_t sender = 0; sender < senderCount; ++sender) {
      senders.push_back(std::make_unique<ChildProcess>(std::vector<std::string>{
          LOAD_FLOOD, std::to_string(sender), std::to_string(plan_.floodOfEach),
          std::to_string(plan_.floodBytes)}));
    }
    check(runUntil([&] { return done_.size() == senderCount; }, patience), "the flood got stuck");
    const MemoryFigures atBound = memoryOf(receiver_.number());
    done_.clear();
    // Ends the hold.
    const ProcessSerialNumber host{static_cast<UInt32>(receiver_.number()), korvoSignature};
    check(SetFrontProcess(&host) == noErr, "the hold could not be ended");
    check(runUntil([&] { return done_.size() == senderCount; }, patience), "a flood never ended");
    const Memory after = memory();
    std::uint32_t answered = 0;
    std::uint32_t refused = 0;
    for (const std::string &line : done_) {
      std::istringstream words(line);
      std::uint32_t sender = 0;
      std::uint32_t ofSender = 0;
      std::uint32_t refusedOfSender = 0;
      words >> sender >> ofSender >> refusedOfSender;
      answered += ofSender;
      refused += refusedOfSender;
    }
    std::printf(
        "flood: %u requests of %zu bytes while the host sat in a dialog; room for %u, "
        "answered %u, refused with a status %u; resident %zu KiB at the bound, "
        "%zu KiB after\n",
        sent, plan_.floodBytes, room, answered, refused, atBound.resident / 1024,
        after.figures.resident / 1024);
    check(answered == std::min(room, sent), "not as many were answered as there was room for");
    check(answered + refused == sent, "some were neither answered nor refused");
  }

  Plan plan_;
  // korvo wants a display as well, and so a whole desktop around this program.
  std::optional<test_support::PrivateBus> bus_{
      isOfKorvo() ? std::optional<test_support::PrivateBus>()
                  : std::optional<test_support::PrivateBus>(std::in_place)};
  AnswerEnd answers_{[this](FourCharCode, FourCharCode eventID, std::string_view payload) {
    answerArrived(eventID, payload);
  }};
  ChildProcess receiver_{hostProgram()};
  std::vector<bool> resolved_[senderCount];
  std::vector<std::string> done_;
  std::uint32_t resolutions_ = 0;
  std::uint32_t expectedResolutions_ = 0;
  std::uint32_t preferences_ = 0;
  // The plug-in sends them once unasked when it starts.
  std::uint32_t expectedPreferences_ = 1;
  std::uint32_t scans_ = 0;
  bool scanIsRight_ = false;
  std::uint32_t unexpected_ = 0;
  int failures_ = 0;
};

}  // namespace

int main(int count, char **arguments) {
  Plan plan;
  std::vector<std::string_view> words(arguments + 1, arguments + count);
  if (!words.empty() && words.front() == "korvo") {
    plan.host = Asked::korvo;
    plan.firstEvents = 160;
    words.erase(words.begin());
  }
  const auto number = [&](std::size_t index) {
    return std::strtoul(words[index].data(), nullptr, 10);
  };
  if (words.size() >= 2) {
    plan.eventsOfEach = static_cast<std::uint32_t>(number(0) / senderCount);
    plan.citations = static_cast<std::uint32_t>(number(1));
  }
  if (words.size() == 4) {
    plan.floodOfEach = static_cast<std::uint32_t>(number(2) / senderCount);
    plan.floodBytes = number(3);
  }
  if (words.size() % 2 != 0 || words.size() > (plan.host == Asked::korvo ? 2 : 4) ||
      plan.eventsOfEach <= 2 * plan.firstEvents / senderCount ||
      plan.eventsOfEach >= 1u << indexBits || plan.floodBytes < 128) {
    std::fputs("usage: LoadTest [korvo] [EVENTS CITATIONS [FLOOD BYTES]]\n", stderr);
    return 2;
  }
  makeProcessesCountExactly();
  return Load(plan).run() ? 0 : 1;
}
