// Every conversion of Formats in bytes of input per second, beside memcpy and beside what people
// would use in its place. All jobs are done in turn, round after round, so that a quiet
// or a busy moment of the machine comes to all of them.

#include "CocoaWriters.h"
#include "Jobs.h"
#include "Report.h"

#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/TemporaryDirectory.h>

#import <Foundation/Foundation.h>
#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace benchmarks;

struct Sizes {
  std::size_t bytes;        // of the input of a job
  std::size_t cocoaUnits;   // of the attributed text
  std::size_t pandocBytes;  // pandoc takes minutes for ten megabytes
  int rounds;
  int programRounds;
};

constexpr Sizes usual = {10'000'000, 250'000, 1'000'000, 15, 5};
constexpr Sizes quick = {500'000, 20'000, 100'000, 2, 1};

// Bytes per microsecond, which are megabytes per second; one for each round.
using Rates = std::map<std::string, std::vector<double>>;

double processorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void measure(const std::vector<Job> &jobs, int rounds, Rates &rates) {
  for (int round = 0; round < rounds; ++round) {
    for (const Job &job : jobs) {
      const double start = processorSeconds();
      const std::size_t result = job.work();
      const double spent = processorSeconds() - start;
      if (result == 0) {
        throw std::runtime_error(job.name + " had no result");
      }
      rates[job.name].push_back(static_cast<double>(job.bytes) / spent / 1e6);
    }
  }
}

// A program that makes text of an RTF file, given as its last argument.
struct RTFReader {
  std::string name;
  std::vector<std::string> arguments;
  std::size_t bytes;
};

// What it said and how long it took. An error is one line.
test_support::Result runOn(const RTFReader &reader, const std::filesystem::path &document) {
  constexpr std::chrono::minutes limit{10};
  std::vector<std::string> arguments = reader.arguments;
  arguments.push_back(document);
  test_support::Result result = test_support::run(arguments, limit);
  if (result.status != 0) {
    throw std::runtime_error(reader.name + " failed");
  }
  return result;
}

// The time of an almost empty document is taken off: what is left is the reading.
void measureProgram(const RTFReader &reader, int rounds, Rates &rates,
                    std::vector<double> &startMilliseconds) {
  const test_support::TemporaryDirectory directory;
  const auto small = directory.write("small.rtf", "{\\rtf1\\ansi x}\n");
  const std::string document = documentOfPidginRTF(reader.bytes);
  const auto large = directory.write("large.rtf", document);
  for (int round = 0; round < rounds; ++round) {
    const double start = runOn(reader, small).processorSeconds;
    const test_support::Result work = runOn(reader, large);
    if (work.standardOutput.size() < document.size() / 2) {
      throw std::runtime_error(reader.name + " read only a part of the document");
    }
    startMilliseconds.push_back(start * 1e3);
    rates[reader.name].push_back(static_cast<double>(document.size()) /
                                 (work.processorSeconds - start) / 1e6);
  }
}

double median(const Rates &rates, const std::string &name) {
  return sampleOf(rates.at(name)).median;
}

// The first job is what the others are beside.
void addRates(Report &report, const std::vector<Job> &list, const Rates &rates,
              const std::map<std::string, double> &aims) {
  for (const Job &job : list) {
    const auto aim = aims.find(job.name);
    const bool isYardstick = &job == &list.front();
    report.add({.plot = "Formats: bytes of input per second",
                .name = job.name,
                .sample = sampleOf(rates.at(job.name)),
                .unit = "MB/s",
                .beside = isYardstick ? "" : list.front().name,
                .aim = aim == aims.end() ? std::nullopt : std::optional(aim->second),
                .aimIs = AimIs::least});
  }
}

// How many times as fast the one is as the other.
void addComparison(Report &report, const Rates &rates, const std::string &fast,
                   const std::string &slow, std::optional<double> aim) {
  report.add({.name = fast + ": times the rate of " + slow,
              .sample = {.median = median(rates, fast) / median(rates, slow)},
              .unit = "times",
              .aim = aim,
              .aimIs = AimIs::least});
}

Report measureAll(const Sizes &sizes) {
  Report report("formats", "Formats");
  Rates rates;
  const std::vector<Job> plain = jobs(sizes.bytes);
  measure(plain, sizes.rounds, rates);
  addRates(report, plain, rates, {{"decode UTF-8, ASCII", 1.0 / 3}});
  const std::vector<Job> cocoa = cocoaWriters(sizes.cocoaUnits);
  measure(cocoa, std::max(2, sizes.rounds / 3), rates);
  addRates(report, cocoa, rates, {{cocoa[1].name, 10}, {cocoa[2].name, 10}});
  addComparison(report, rates, "decode UTF-8, ASCII", "iconv, ASCII", std::nullopt);
  addComparison(report, rates, "decode UTF-8, mixed text", "iconv, mixed text", std::nullopt);
  for (const auto &[reader, aim] :
       {std::pair{RTFReader{"unrtf", {"unrtf", "--text"}, sizes.bytes}, 20.0},
        std::pair{
            RTFReader{
                "pandoc", {"pandoc", "-f", "rtf", "-t", "plain", "--wrap=none"}, sizes.pandocBytes},
            50.0}}) {
    std::vector<double> start;
    measureProgram(reader, sizes.programRounds, rates, start);
    report.add({.name = reader.name + ", RTF to text",
                .sample = sampleOf(rates[reader.name]),
                .unit = "MB/s"});
    report.add(
        {.name = reader.name + ", start-up (taken off)", .sample = sampleOf(start), .unit = "ms"});
    addComparison(report, rates, "RTF bytes to UTF-8 text", reader.name, aim);
  }
  addComparison(report, rates, "write pidgin RTF, runs of 32 units", cocoa.front().name, 10);
  return report;
}

}  // namespace

int main(int count, char **arguments) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  int status = 0;
  const Options options = takeOptions(count, arguments);
  // Freed memory is kept: else large results would be charged for fresh pages and small ones not.
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  if (![[NSBundle bundleWithPath:@PLUGIN_BUNDLE] load]) {
    std::fputs("The plug-in's bundle does not load: " PLUGIN_BUNDLE "\n", stderr);
    return 1;
  }
  try {
    const Report report = measureAll(options.quick ? quick : usual);
    if (options.asJSON) {
      report.printJSON();
    } else {
      report.printTable();
    }
  } catch (const std::exception &problem) {
    std::fprintf(stderr, "FormatsBenchmark: %s\n", problem.what());
    status = 1;
  }
  [pool drain];
  return status;
}
