// A long conversation with the plug-in, drawn by chance: every answer is checked, and what the host
// process has allocated is counted whenever it rests.
//
//   SoakTest SECONDS [SEED]              status 0 when all was answered and nothing leaked
//   SoakTest SECONDS SEED LEAK           the host loses LEAK bytes with each request, on purpose:
//                                        status 0 when that was noticed
//
// Memory counts from the second quarter on: by then caches are filled. It may grow by as much as
// the figures waver, and by a byte for every sixteen requests: the smallest object that is lost
// with one request in 250 is noticed, provided that there are enough requests.
#include "AnswerEnd.h"
#include "Conversation.h"

#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/EventSending.h>
#include <Tests/Support/LiveBytes.h>
#include <Tests/Support/PrivateBus.h>
#include <Tests/Support/RunLoopWait.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>

using namespace load_test;
using test_support::ChildProcess;
using test_support::makeProcessesCountExactly;
using test_support::Outcome;
using test_support::runUntil;
using test_support::sendAndWait;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::chrono::minutes patience{2};
constexpr long wavering = 4096;
constexpr long fewestRequests = 100;
constexpr long requestsForAByte = 16;

struct Plan {
  std::chrono::seconds time{};
  std::uint64_t seed = 1;
  unsigned long leak = 0;
};

class Soak {
 public:
  explicit Soak(const Plan &plan) : plan_(plan), conversation_(plan.seed) {
    if (receiver_.readLine(patience) != "0") {
      std::fputs("The host did not start\n", stderr);
      std::exit(1);
    }
    // The plug-in's greeting.
    runUntil([this] { return !answers_.empty(); }, patience);
    answers_.clear();
  }

  bool run() {
    const auto start = Clock::now();
    const long beforeWarmUp = liveBytes();
    talk(start + plan_.time / 4);
    const long warmedUp = requests_;
    const long before = liveBytes();
    talk(start + plan_.time);
    const long after = liveBytes();
    const long counted = requests_ - warmedUp;
    const bool hasLeaked = after - before > wavering + counted / requestsForAByte;
    std::printf("seed %llu: %ld requests in %lld s, %ld wrong answers\n",
                static_cast<unsigned long long>(plan_.seed), requests_,
                static_cast<long long>(plan_.time.count()), wrong_);
    for (const auto &[name, count] : kinds_) {
      std::printf("  %s: %ld\n", name.c_str(), count);
    }
    std::printf(
        "live heap of the host: %ld bytes at the start, %ld after %ld requests, %ld after "
        "%ld more: %+.2f bytes a request, %s\n",
        beforeWarmUp, before, warmedUp, after, counted,
        static_cast<double>(after - before) / static_cast<double>(std::max(counted, 1L)),
        hasLeaked ? "LEAKED" : "nothing leaked");
    return wrong_ == 0 && hasLeaked == (plan_.leak > 0);
  }

 private:
  // Until then, and for some requests at least.
  void talk(Clock::time_point end) {
    const long fewest = requests_ + fewestRequests;
    while ((Clock::now() < end || requests_ < fewest) && wrong_ == 0) {
      ask(conversation_.next());
      if (plan_.leak > 0) {
        sendAndWait(korvoSignature, loadClass, leakEvent, std::to_string(plan_.leak), replyTimeOut);
      }
    }
  }

  void ask(const Request &request) {
    const Outcome outcome = sendAndWait(korvoSignature, formats::mellelSignature, request.eventID,
                                        request.payload, replyTimeOut);
    ++requests_;
    ++kinds_[request.name];
    bool isRight = outcome.status == noErr;
    if (isRight && request.isAnsweredByReply) {
      isRight = isAnswerTo(request, outcome.reply.value_or(""));
    }
    if (isRight && request.answerID) {
      isRight = runUntil([this] { return !answers_.empty(); }, patience) &&
                answers_.front().eventID == *request.answerID &&
                isAnswerTo(request, answers_.front().payload);
    }
    if (!isRight || answers_.size() > (request.answerID ? 1 : 0)) {
      ++wrong_;
      std::printf("FAILED: request %ld, a %s of %zu bytes: status %d, %zu answers\n", requests_,
                  request.name, request.payload.size(), static_cast<int>(outcome.status),
                  answers_.size());
    }
    answers_.clear();
  }

  // Asked twice: the answer to the first frees what the last request left behind.
  long liveBytes() {
    sendAndWait(korvoSignature, loadClass, liveBytesEvent, "", replyTimeOut);
    const Outcome outcome =
        sendAndWait(korvoSignature, loadClass, liveBytesEvent, "", replyTimeOut);
    if (outcome.status != noErr) {
      ++wrong_;
      std::printf("FAILED: the host does not answer any more: status %d\n",
                  static_cast<int>(outcome.status));
    }
    return std::strtol(outcome.reply.value_or("").c_str(), nullptr, 10);
  }

  struct Answer {
    FourCharCode eventID = 0;
    std::string payload;
  };

  Plan plan_;
  Conversation conversation_;
  std::vector<Answer> answers_;
  test_support::PrivateBus bus_;
  AnswerEnd end_{[this](FourCharCode, FourCharCode eventID, std::string_view payload) {
    answers_.push_back({eventID, std::string(payload)});
  }};
  ChildProcess receiver_{{LOAD_RECEIVER}};
  std::map<std::string, long> kinds_;
  long requests_ = 0;
  long wrong_ = 0;
};

}  // namespace

int main(int count, char **arguments) {
  const auto number = [&](int index) {
    return index < count ? std::strtoul(arguments[index], nullptr, 10) : 0;
  };
  const Plan plan{std::chrono::seconds(number(1)), count > 2 ? number(2) : 1, number(3)};
  if (count < 2 || count > 4 || plan.time.count() == 0) {
    std::fputs("usage: SoakTest SECONDS [SEED [LEAK]]\n", stderr);
    return 2;
  }
  makeProcessesCountExactly();
  return Soak(plan).run() ? 0 : 1;
}
