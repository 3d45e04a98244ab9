// As many scans as an author makes in many hours, with the real host in the midst of its windows:
// every answer is checked, and what the host has of memory, descriptors, timers and objects is
// counted at rest, after the first minute (or quarter, when that is shorter) and at the end.
//
//   KorvoSoakTest SECONDS [SEED [SHARE]]       status 0 when all was answered and nothing stayed
//   KorvoSoakTest SECONDS SEED SHARE leaking   the host loses bytes, a timer and a descriptor with
//                                              every fourth request, on purpose: status 0 when all
//                                              three were noticed
//
// SHARE, in percent (100): how much of the time is worked after the warm-up, the rest is waited.
// Wants a display and a bus.
#include "AnswerEnd.h"
#include "Author.h"

#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/EventSending.h>
#include <Tests/Support/LiveBytes.h>
#include <Tests/Support/MemoryFigures.h>
#include <Tests/Support/RunLoopWait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <map>
#include <sstream>

using namespace load_test;
using namespace std::chrono_literals;
using test_support::ChildProcess;
using test_support::freedMemoryIsGivenBack;
using test_support::makeProcessesCountExactly;
using test_support::MemoryFigures;
using test_support::memoryOf;
using test_support::Outcome;
using test_support::runUntil;
using test_support::sendAndWait;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::chrono::minutes patience{2};
constexpr long fewestRequests = 100;
constexpr int partsOfALongRun = 6;
constexpr auto longRun = 60s;
constexpr long leakingRequests = 4;
constexpr std::size_t leakedBytes = 64 * 1024;

// What may be more at the end than it was. The figures waver: windows keep what they drew last, and
// korvo prepares itself for the next scan whenever it rests.
constexpr long mostBytes = 512 * 1024;
constexpr long requestsForAByte = 16;
constexpr long mostTimers = 2;
constexpr long mostDescriptors = 0;
// Printed texts are remembered, up to 100,000 of a kilobyte or two (memory.js): they take a long
// run to gather, and only a long run can be held to this.
constexpr long mostResidentBytes = 200 << 20;

struct Plan {
  std::chrono::seconds time{};
  std::uint64_t seed = 1;
  double share = 100;
  bool isLeaking = false;
};

struct Figures {
  long bytes = 0;
  long timers = 0;
  long descriptors = 0;
  MemoryFigures memory;
};

class KorvoSoak {
 public:
  explicit KorvoSoak(const Plan &plan) : plan_(plan), author_(plan.seed, LIBRARY) {
    if (!korvo_.waitForLine("ready")) {
      std::fputs("korvo did not start\n", stderr);
      std::exit(1);
    }
    // The plug-in's greeting.
    runUntil([this] { return !answers_.empty(); }, patience);
    answers_.clear();
    ask(countObjectsEvent);
  }

  bool run() {
    const auto start = Clock::now();
    const auto warmUp = std::min<std::chrono::seconds>(plan_.time / 4, 60s);
    talk(start + warmUp, 100);
    const long warmedUp = requests_;
    const Figures before = figures();
    const std::size_t linesBefore = korvo_.standardError().size();
    ask(newObjectsEvent);
    const int parts = plan_.time < longRun ? 1 : partsOfALongRun;
    Figures after;
    for (int part = 1; part <= parts; ++part) {
      talk(start + warmUp + (plan_.time - warmUp) * part / parts, plan_.share);
      after = figures();
      std::printf("after %ld requests: %ld bytes, %ld timers, %ld descriptors, %zu KiB resident\n",
                  requests_, after.bytes, after.timers, after.descriptors,
                  after.memory.resident / 1024);
      std::fflush(stdout);
    }
    const std::string objects = ask(newObjectsEvent);
    const long counted = requests_ - warmedUp;
    std::printf("seed %llu: %ld requests in %lld s, %ld wrong answers\n",
                static_cast<unsigned long long>(plan_.seed), requests_,
                static_cast<long long>(plan_.time.count()), wrong_);
    for (const auto &[name, count] : kinds_) {
      std::printf("  %s: %ld\n", name.c_str(), count);
    }
    std::printf("of korvo after %ld requests, and after %ld more:\n", warmedUp, counted);
    compare("bytes", before.bytes, after.bytes, mostBytes + counted / requestsForAByte);
    compare("timers", before.timers, after.timers, mostTimers);
    compare("descriptors", before.descriptors, after.descriptors, mostDescriptors);
    compareResident("resident", before.memory.resident, after.memory.resident);
    compareResident("own and written to", before.memory.ownWritten, after.memory.ownWritten);
    if (!noticed_.empty()) {
      std::printf("objects more or fewer, by class:\n%s\n", objects.c_str());
    }
    checkLines(korvo_.standardError().substr(linesBefore));
    return wrong_ == 0 && noticed_ == (plan_.isLeaking ? "bytes, timers, descriptors" : "");
  }

 private:
  // Until then, and for some requests at least.
  void talk(Clock::time_point end, double share) {
    const long fewest = requests_ + fewestRequests;
    while ((Clock::now() < end || requests_ < fewest) && wrong_ == 0) {
      const auto start = Clock::now();
      send(author_.next());
      leak();
      const auto worked = Clock::now() - start;
      if (share < 100) {
        rest(std::chrono::duration_cast<std::chrono::milliseconds>(worked * (100 / share - 1)));
      }
    }
  }

  static void rest(std::chrono::milliseconds time) {
    runUntil([] { return false; }, time);
  }

  void leak() {
    if (plan_.isLeaking && requests_ % leakingRequests == 0) {
      ask(leakEvent, std::to_string(leakedBytes));
      ask(leakTimerEvent);
      ask(leakDescriptorEvent);
    }
  }

  void send(const Request &request) {
    const Outcome outcome = sendAndWait(korvoSignature, formats::mellelSignature, request.eventID,
                                        request.payload, replyTimeOut);
    ++requests_;
    ++kinds_[request.name];
    bool isRight = outcome.status == noErr;
    if (isRight && request.isAnsweredByReply) {
      isRight = author_.isAnswered(request, outcome.reply.value_or(""));
    }
    if (isRight && request.answerID) {
      isRight = runUntil([this] { return !answers_.empty(); }, patience) &&
                answers_.front().eventID == *request.answerID &&
                author_.isAnswered(request, answers_.front().payload);
    }
    if (!isRight || answers_.size() > (request.answerID ? 1 : 0)) {
      ++wrong_;
      std::printf("FAILED: request %ld, a %s of %zu bytes: status %d, %zu answers\n", requests_,
                  request.name, request.payload.size(), static_cast<int>(outcome.status),
                  answers_.size());
    }
    answers_.clear();
  }

  std::string ask(formats::FourCharacterCode eventID, const std::string &payload = "") {
    const Outcome outcome = sendAndWait(korvoSignature, loadClass, eventID, payload, replyTimeOut);
    if (outcome.status != noErr) {
      ++wrong_;
      std::printf("FAILED: korvo does not answer any more: status %d\n",
                  static_cast<int>(outcome.status));
    }
    return outcome.reply.value_or("");
  }

  long number(formats::FourCharacterCode eventID) {
    return std::strtol(ask(eventID).c_str(), nullptr, 10);
  }

  // Once korvo remembers the same as the last time, and has given back what it does not need. The
  // bytes are asked for twice: the answer to the first frees what the last request left behind.
  Figures figures() {
    for (int round = 0; round < 2; ++round) {
      for (const Request &request : author_.sameAgain()) {
        send(request);
      }
    }
    // Two seconds until korvo tidies up, and some until the system has the memory.
    rest(plan_.time < longRun ? 1500ms : 5000ms);
    ask(liveBytesEvent);
    Figures figures;
    figures.bytes = number(liveBytesEvent);
    figures.timers = number(liveTimersEvent);
    const auto folder = "/proc/" + std::to_string(korvo_.number()) + "/fd";
    figures.descriptors = std::distance(std::filesystem::directory_iterator(folder), {});
    figures.memory = memoryOf(korvo_.number());
    return figures;
  }

  // A line for each citation that was inserted, and no other.
  void checkLines(const std::string &lines) {
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
      if (line.find("UUID of selected reference") == line.npos) {
        std::printf("FAILED: korvo said: %s\n", line.c_str());
        ++wrong_;
      }
    }
  }

  void tell(const char *what, const std::string &figures, bool isKept) {
    std::printf("  %s: %s%s\n", what, figures.c_str(), isKept ? "" : "  MORE THAN IT MAY");
    if (!isKept) {
      noticed_ += (noticed_.empty() ? "" : ", ") + std::string(what);
    }
  }

  void compare(const char *what, long before, long after, long most) {
    tell(what,
         std::to_string(before) + ", " + std::to_string(after) + " (at most " +
             std::to_string(most) + " more)",
         after - before <= most);
  }

  void compareResident(const char *what, std::size_t before, std::size_t after) {
    const long growth = static_cast<long>(after) - static_cast<long>(before);
    tell(what,
         std::to_string(before / 1024) + " KiB, " + std::to_string(after / 1024) +
             " KiB (at most " + std::to_string(mostResidentBytes / 1024) + " more)",
         growth <= mostResidentBytes || plan_.time < longRun || !freedMemoryIsGivenBack());
  }

  struct Answer {
    FourCharCode eventID = 0;
    std::string payload;
  };

  Plan plan_;
  Author author_;
  std::vector<Answer> answers_;
  AnswerEnd end_{[this](FourCharCode, FourCharCode eventID, std::string_view payload) {
    answers_.push_back({eventID, std::string(payload)});
  }};
  ChildProcess korvo_{
      {KORVO, "--library", LIBRARY, "--plug-in", WITNESS, "--select", author_.anyKey()}};
  std::map<std::string, long> kinds_;
  std::string noticed_;
  long requests_ = 0;
  long wrong_ = 0;
};

}  // namespace

int main(int count, char **arguments) {
  const auto number = [&](int index, double missing) {
    return index < count ? std::strtod(arguments[index], nullptr) : missing;
  };
  const Plan plan{std::chrono::seconds(static_cast<long>(number(1, 0))),
                  static_cast<std::uint64_t>(number(2, 1)), number(3, 100), count > 4};
  if (count < 2 || count > 5 || plan.time.count() <= 0 || plan.share <= 0) {
    std::fputs("usage: KorvoSoakTest SECONDS [SEED [SHARE [leaking]]]\n", stderr);
    return 2;
  }
  makeProcessesCountExactly();
  return KorvoSoak(plan).run() ? 0 : 1;
}
