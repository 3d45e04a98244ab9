// What the plug-in itself costs: the whole agent, out of its bundle, between a host that answers at
// once and a carrier that sends nothing. Processor time and heap for each citation of a document,
// at sizes from 100 to a million citations, and how the time of a final scan is divided.

#import "Conversation.h"
#include "HeapUse.h"
#include "Report.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace {

using benchmarks::Conversation;
using benchmarks::Kind;
using benchmarks::Report;
using benchmarks::stepCount;
using benchmarks::StepTimes;

constexpr Kind kinds[] = {Kind::finalScan, Kind::preliminaryScan, Kind::liveBibliography};
constexpr double mostMicroseconds = 3;
constexpr double mostBytes = 300;
constexpr double mostGrowth = 10.5;
constexpr std::size_t citationsOfDividedScan = 10'000;

// Each request at each size, in turns: what else the machine does meanwhile touches all alike.
using Microseconds = std::map<std::pair<Kind, std::size_t>, std::vector<double>>;

// Of processor time for one answer, over so many that small ones can be compared. Each begins with
// a heap that was given back, as a host has it a second after its last event. Else the answers of
// some sizes would find the pages of the answer before, and those of others new pages, which the
// system has to clear: which of the two hangs on the thresholds of the C library.
double microsecondsOfOne(Conversation &conversation, std::size_t citationCount) {
  const std::size_t answers = std::max<std::size_t>(1, 20'000 / citationCount);
  std::clock_t taken = 0;
  for (std::size_t index = 0; index < answers; ++index) {
    conversation.prepareNext();
    malloc_trim(0);
    const std::clock_t before = std::clock();
    conversation.answerPrepared();
    taken += std::clock() - before;
  }
  return static_cast<double>(taken) * 1e6 / CLOCKS_PER_SEC / static_cast<double>(answers);
}

// Bytes at the worst moment, without those of the reply. A reply above `largestInlineSize` lies in
// a memory file, which is not of the heap.
double heapBeyondReply(Conversation &conversation) {
  std::size_t reply = 0;
  const std::size_t peak = benchmarks::peakHeapUse([&] { reply = conversation.answerOnce(); });
  return static_cast<double>(peak) -
         static_cast<double>(reply > platform::largestInlineSize ? 0 : reply);
}

Microseconds measureTimes(PreparedHost *host, const std::vector<std::size_t> &sizes,
                          int repetitions) {
  std::map<std::pair<Kind, std::size_t>, Conversation> conversations;
  for (const std::size_t size : sizes) {
    for (const Kind kind : kinds) {
      const std::pair key(kind, size);
      conversations.emplace(key, Conversation(host, kind, size)).first->second.answerOnce();
    }
  }
  Microseconds times;
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    for (auto &[key, conversation] : conversations) {
      // A large document is a long time to measure by itself.
      if (key.second < 100'000 || repetition % 2 == 0) {
        times[key].push_back(microsecondsOfOne(conversation, key.second));
      }
    }
  }
  return times;
}

void addTimes(Report &report, const Microseconds &times) {
  for (const Kind kind : kinds) {
    for (const auto &[measured, values] : times) {
      const auto &[measuredKind, size] = measured;
      if (measuredKind != kind) {
        continue;
      }
      std::vector<double> forOne = values;
      for (double &value : forOne) {
        value /= static_cast<double>(size);
      }
      report.add({.plot = "Time for each citation, without the host",
                  .name = nameOf(kind),
                  .size = static_cast<double>(size),
                  .sizeUnit = "citations",
                  .sample = benchmarks::sampleOf(forOne),
                  .unit = "µs",
                  .aim = mostMicroseconds});
    }
  }
}

void addGrowth(Report &report, const Microseconds &times) {
  for (const auto &[measured, values] : times) {
    const auto &[kind, size] = measured;
    const auto larger = times.find({kind, size * 10});
    if (larger == times.end()) {
      continue;
    }
    report.add({.name = std::string(nameOf(kind)) + ", ten times the citations",
                .size = static_cast<double>(size * 10),
                .sizeUnit = "citations",
                .sample = {.median = benchmarks::sampleOf(larger->second).median /
                                     benchmarks::sampleOf(values).median},
                .unit = "times",
                .aim = mostGrowth});
  }
}

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
                  .aim = mostBytes});
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
  const Microseconds times = measureTimes(host, sizes, repetitions);
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
