// What the plug-in itself costs: the whole agent, out of its bundle, between a host that answers at
// once and a carrier that sends nothing. Processor time and heap for each citation of a document,
// at sizes from 100 to a million citations, beside the least that the contract allows; and how the
// time of a final scan is divided.

#import "BareLoop.h"
#import "Conversation.h"
#include "HeapUse.h"
#include "Report.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using benchmarks::BareLoop;
using benchmarks::Conversation;
using benchmarks::Kind;
using benchmarks::Report;
using benchmarks::stepCount;
using benchmarks::StepTimes;
using benchmarks::Strings;

constexpr Kind kinds[] = {Kind::finalScan, Kind::preliminaryScan, Kind::liveBibliography};
constexpr double mostOfBareLoop = 1.4;
constexpr double mostMicroseconds = 0.8;
constexpr double mostGrowth = 10.5;
constexpr std::size_t citationsOfDividedScan = 10'000;
constexpr const char *bareFinalScan = "bare loop of a final scan";

// Something that is done for one document after the other, and timed.
struct Timed {
  std::string name;
  std::size_t citationCount = 0;
  std::function<void()> prepareNext;
  std::function<void()> work;
  std::string beside = {};  // what it is compared with, by name
  std::optional<double> aim = {};
  std::vector<double> microseconds = {};  // of one document, in each repetition
};

void addAnswer(std::vector<Timed> &all, PreparedHost *host, Kind kind, std::size_t size) {
  const auto conversation = std::make_shared<Conversation>(host, kind, size);
  const bool isPreliminary = kind == Kind::preliminaryScan;
  all.push_back({.name = nameOf(kind),
                 .citationCount = size,
                 .prepareNext = [=] { conversation->prepareNext(); },
                 .work = [=] { conversation->answerPrepared(); },
                 .beside = isPreliminary ? "" : bareFinalScan,
                 .aim = isPreliminary ? mostMicroseconds : mostOfBareLoop});
}

void addBareLoops(std::vector<Timed> &all, PreparedHost *host, std::size_t size) {
  const auto given = std::make_shared<BareLoop>(host, Strings::inAdvance, size);
  const auto making = std::make_shared<BareLoop>(host, Strings::madeWhenNeeded, size);
  all.push_back({.name = bareFinalScan,
                 .citationCount = size,
                 .prepareNext = [=] { given->prepareNext(); },
                 .work = [=] { given->finalScan(); }});
  all.push_back({.name = "bare loop that makes the strings of a final scan",
                 .citationCount = size,
                 .prepareNext = [=] { making->prepareNext(); },
                 .work = [=] { making->finalScan(); },
                 .beside = bareFinalScan});
  all.push_back({.name = "bare loop that makes the strings of a preliminary scan",
                 .citationCount = size,
                 .prepareNext = [=] { making->prepareNext(); },
                 .work = [=] { making->preliminaryScan(); }});
}

// Of processor time for one document, over so many that small ones can be compared. Each begins
// with a heap that was given back, as a host has it a second after its last event. Else the answers
// of some sizes would find the pages of the answer before, and those of others new pages, which the
// system has to clear: which of the two hangs on the thresholds of the C library.
double microsecondsOfOne(const Timed &timed) {
  const std::size_t documents = std::max<std::size_t>(1, 20'000 / timed.citationCount);
  std::clock_t taken = 0;
  for (std::size_t index = 0; index < documents; ++index) {
    timed.prepareNext();
    malloc_trim(0);
    const std::clock_t before = std::clock();
    timed.work();
    taken += std::clock() - before;
  }
  return static_cast<double>(taken) * 1e6 / CLOCKS_PER_SEC / static_cast<double>(documents);
}

// Bytes at the worst moment, without those of the reply. A reply above `largestInlineSize` lies in
// a memory file, which is not of the heap.
double heapBeyondReply(Conversation &conversation) {
  std::size_t reply = 0;
  const std::size_t peak = benchmarks::peakHeapUse([&] { reply = conversation.answerOnce(); });
  return static_cast<double>(peak) -
         static_cast<double>(reply > platform::largestInlineSize ? 0 : reply);
}

// In turns: what else the machine does meanwhile touches all alike.
std::vector<Timed> measureTimes(PreparedHost *host, const std::vector<std::size_t> &sizes,
                                int repetitions) {
  std::vector<Timed> all;
  for (const std::size_t size : sizes) {
    for (const Kind kind : kinds) {
      addAnswer(all, host, kind, size);
    }
    addBareLoops(all, host, size);
  }
  for (const Timed &timed : all) {
    timed.prepareNext();
    timed.work();
  }
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    for (Timed &timed : all) {
      // A large document is a long time to measure by itself.
      if (timed.citationCount < 100'000 || repetition % 2 == 0) {
        timed.microseconds.push_back(microsecondsOfOne(timed));
      }
    }
  }
  std::ranges::stable_sort(all, {}, &Timed::name);
  return all;
}

void addTimes(Report &report, const std::vector<Timed> &all) {
  for (const Timed &timed : all) {
    std::vector<double> forOne = timed.microseconds;
    for (double &value : forOne) {
      value /= static_cast<double>(timed.citationCount);
    }
    report.add({.plot = "Time for each citation, without the host",
                .name = timed.name,
                .size = static_cast<double>(timed.citationCount),
                .sizeUnit = "citations",
                .sample = benchmarks::sampleOf(forOne),
                .unit = "µs",
                .beside = timed.beside,
                .aim = timed.aim});
  }
}

void addGrowth(Report &report, const std::vector<Timed> &all) {
  for (const Timed &timed : all) {
    const auto larger = std::ranges::find_if(all, [&](const Timed &other) {
      return other.name == timed.name && other.citationCount == 10 * timed.citationCount;
    });
    if (larger == all.end() || !timed.aim) {
      continue;
    }
    report.add({.name = timed.name + ", ten times the citations",
                .size = static_cast<double>(larger->citationCount),
                .sizeUnit = "citations",
                .sample = {.median = benchmarks::sampleOf(larger->microseconds).median /
                                     benchmarks::sampleOf(timed.microseconds).median},
                .unit = "times",
                .aim = mostGrowth});
  }
}

double mostBytesOf(Kind kind) { return kind == Kind::preliminaryScan ? 120 : 300; }

void addMemory(Report &report, PreparedHost *host, const std::vector<std::size_t> &sizes) {
  for (const Kind kind : kinds) {
    for (const std::size_t size : sizes) {
      Conversation conversation(host, kind, size);
      conversation.answerOnce();
      report.add({.plot = "Memory for each citation, beyond request and reply",
                  .name = nameOf(kind),
                  .size = static_cast<double>(size),
                  .sizeUnit = "citations",
                  .sample = {.median = heapBeyondReply(conversation) / static_cast<double>(size)},
                  .unit = "bytes",
                  .aim = mostBytesOf(kind)});
    }
  }
}

void addSteps(Report &report, PreparedHost *host, int repetitions) {
  static const char *const names[stepCount] = {"decode: take the event apart",
                                               "make strings, parse, match, note",
                                               "format: ask for each text",
                                               "measure: convert each text",
                                               "ask for the bibliography",
                                               "assemble: convert each text again",
                                               "send"};
  std::vector<double> times[stepCount];
  Conversation conversation(host, Kind::finalScan, citationsOfDividedScan);
  conversation.answerOnce();
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    [host startSteps];
    conversation.answerOnce();
    const StepTimes steps = [host finishSteps];
    for (std::size_t step = 0; step < stepCount; ++step) {
      times[step].push_back(static_cast<double>(steps[step]) /
                            static_cast<double>(citationsOfDividedScan));
    }
  }
  for (std::size_t step = 0; step < stepCount; ++step) {
    report.add({.plot = "Steps of a final scan, for each of 10,000 citations",
                .name = names[step],
                .sample = benchmarks::sampleOf(times[step]),
                .unit = "ns"});
  }
}

}  // namespace

int main(int count, char **arguments) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  const benchmarks::Options options = benchmarks::takeOptions(count, arguments);
  PreparedHost *host = benchmarks::startPlugin();
  if (host == nil) {
    return 1;
  }
  std::vector<std::size_t> sizes =
      options.quick ? std::vector<std::size_t>{100, 1'000, 10'000}
                    : std::vector<std::size_t>{100, 1'000, 10'000, 100'000, 1'000'000};
  // Sizes of one's own, to look closer at one: AgentBenchmark 100000
  if (count > 1) {
    sizes.clear();
    std::transform(arguments + 1, arguments + count, std::back_inserter(sizes),
                   [](const char *size) { return std::strtoull(size, nullptr, 10); });
  }
  const int repetitions = options.quick ? 3 : 9;
  Report report("agent", "The plug-in's own cost");
  const std::vector<Timed> times = measureTimes(host, sizes, repetitions);
  addTimes(report, times);
  addSteps(report, host, repetitions);
  addMemory(report, host, sizes);
  addGrowth(report, times);
  if (options.asJSON) {
    report.printJSON();
  } else {
    report.printTable();
  }
  [pool drain];
  return 0;
}
