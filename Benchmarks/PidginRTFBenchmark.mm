// Pidgin RTF beside what it cannot do without: copying the text, and asking the host's
// predicates. Each also at a tenth of the size, which shows whether it is linear.

#import "AttributedTexts.h"
#include "MixedText.h"
#include "Report.h"
#include "TimeCollector.h"

#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>
#import <HostContract/HostContract.h>

#include <malloc.h>
#import <RTFTranslation.h>

#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace {

using formats::ControlCharacters;

constexpr std::size_t fullSize = 10'000'000;  // UTF-16 code units
constexpr std::size_t tenth = fullSize / 10;

std::string sized(const std::string &name, std::size_t units) {
  return name + (units == fullSize ? ", 10M" : ", 1M");
}

// A benchmark that makes its text once, outside the time measured.
template <typename Make, typename Use>
void add(const std::string &name, std::size_t units, Make make, Use use) {
  benchmark::RegisterBenchmark(sized(name, units).c_str(), [=](benchmark::State &state) {
    NSAutoreleasePool *outer = [[NSAutoreleasePool alloc] init];
    const auto text = make(units);
    for ([[maybe_unused]] auto iteration : state) {
      NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
      use(text, state);
      [pool drain];
    }
    [outer drain];
  })->Unit(benchmark::kMillisecond);
}

NSString *cocoaString(const std::u16string &text) {
  return [NSString stringWithCharacters:reinterpret_cast<const unichar *>(text.data())
                                 length:text.size()];
}

// Else large results would be charged for fresh pages and small ones not.
void keepFreedMemory() {
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

void copy(const std::u16string &text, benchmark::State &) {
  benchmark::DoNotOptimize(std::u16string(text));
}

void read(const std::u16string &rtf, benchmark::State &) {
  benchmark::DoNotOptimize(formats::textOfPidginRTF(rtf));
}

void escape(const std::u16string &text, benchmark::State &) {
  benchmark::DoNotOptimize(formats::pidginRTF(text, ControlCharacters::escaped));
}

// As many units as the escaped text has, and nothing else.
template <std::u16string (*makeText)(std::size_t)>
std::u16string outputOf(std::size_t units) {
  return formats::pidginRTF(makeText(units), ControlCharacters::escaped);
}

void fill(const std::u16string &output, benchmark::State &) {
  std::u16string filled;
  filled.resize_and_overwrite(output.size(), [&](char16_t *start, std::size_t) {
    std::memset(start, 'x', output.size() * sizeof(char16_t));
    return output.size();
  });
  benchmark::DoNotOptimize(filled);
}

// What a caller pays whose memory was never used before: the system clears each page.
template <typename Use>
auto inFreshMemory(Use use) {
  return [use](const std::u16string &text, benchmark::State &state) {
    state.PauseTiming();
    malloc_trim(0);
    state.ResumeTiming();
    use(text, state);
  };
}

void copyThroughCocoa(NSString *text, benchmark::State &) {
  std::u16string units([text length], u'\0');
  [text getCharacters:reinterpret_cast<unichar *>(units.data()) range:NSMakeRange(0, units.size())];
  benchmark::DoNotOptimize(cocoaString(units));
}

void escapeThroughCategory(NSString *text, benchmark::State &) {
  benchmark::DoNotOptimize([text asPidginRTFEscapingControlSequences:YES]);
}

void readThroughCategory(NSString *rtf, benchmark::State &) {
  benchmark::DoNotOptimize([NSAttributedString attributedStringFromRTF:rtf attributes:nil]);
}

void askPredicates(NSAttributedString *text, benchmark::State &) {
  NSUInteger answers = 0;
  const NSUInteger length = [text length];
  for (NSUInteger index = 0; index < length; ++index) {
    answers += [text isBoldAtIndex:index];
    answers += [text isItalicizedAtIndex:index];
    answers += [text isUnderlinedAtIndex:index];
    answers += [text isSuperscriptAtIndex:index];
    answers += [text isSubscriptAtIndex:index];
  }
  benchmark::DoNotOptimize(answers);
}

void write(NSAttributedString *text, benchmark::State &) {
  benchmark::DoNotOptimize([text asPidginRTF]);
}

// Whatever makes it faster must not ask less.
void writeAndCount(CheapText *text, benchmark::State &state) {
  [text takeQuestions];
  benchmark::DoNotOptimize([text asPidginRTF]);
  if ([text takeQuestions] != 5 * [text length]) {
    state.SkipWithError("not every predicate was asked once about every code unit");
  }
}

template <typename MakeText>
auto inCocoa(MakeText makeText) {
  return [makeText](std::size_t units) { return cocoaString(makeText(units)); };
}

CheapText *cheapText(std::size_t units) {
  return [[[CheapText alloc] initWithString:cocoaString(benchmarks::mixedText(units))
                                 attributes:nil] autorelease];
}

NSAttributedString *attributedText(std::size_t units) {
  return textWithAttributes(cocoaString(benchmarks::mixedText(units)));
}

void addTextBenchmarks(std::size_t units) {
  using namespace benchmarks;
  add("copy", units, mixedText, copy);
  add("escape ASCII", units, plainASCII, escape);
  add("escape mixed text", units, mixedText, escape);
  add("escape all escapes", units, escapesOnly, escape);
  add("fill the result of mixed text", units, outputOf<mixedText>, fill);
  add("fill the result of all escapes", units, outputOf<escapesOnly>, fill);
  add("fill fresh memory, mixed text", units, outputOf<mixedText>, inFreshMemory(fill));
  add("escape mixed text, fresh memory", units, mixedText, inFreshMemory(escape));
  add("fill fresh memory, all escapes", units, outputOf<escapesOnly>, inFreshMemory(fill));
  add("escape all escapes, fresh memory", units, escapesOnly, inFreshMemory(escape));
  add("read ASCII", units, plainASCII, read);
  add("read mixed RTF", units, mixedRTF, read);
  add("read all controls", units, controlsOnly, read);
  add("copy through Cocoa", units, inCocoa(mixedText), copyThroughCocoa);
  add("category escape mixed text", units, inCocoa(mixedText), escapeThroughCategory);
  add("category read mixed RTF", units, inCocoa(mixedRTF), readThroughCategory);
}

void addAttributedBenchmarks() {
  for (const std::size_t units : {fullSize, tenth}) {
    add("ask cheap predicates", units, cheapText, askPredicates);
    add("category write, cheap predicates", units, cheapText, writeAndCount);
  }
  add("ask attribute predicates", tenth, attributedText, askPredicates);
  add("category write, attribute predicates", tenth, attributedText, write);
}

// What is measured beside what, and the most that the ratio should be.
struct Comparison {
  std::string measured;
  std::string beside;
  std::optional<double> aim;
};

std::vector<Comparison> comparisons() {
  return {{"escape ASCII", "copy", 4},
          {"escape mixed text", "copy", 12},
          {"escape all escapes", "copy", 12},
          {"escape mixed text, fresh memory", "fill fresh memory, mixed text", std::nullopt},
          {"escape all escapes, fresh memory", "fill fresh memory, all escapes", std::nullopt},
          {"read ASCII", "copy", 4},
          {"read mixed RTF", "copy", 12},
          {"read all controls", "copy", 12},
          {"category escape mixed text", "copy through Cocoa", 12},
          {"category read mixed RTF", "copy through Cocoa", 12},
          {"category write, cheap predicates", "ask cheap predicates", 2},
          {"category write, attribute predicates", "ask attribute predicates", 2}};
}

benchmarks::Report reportOf(const benchmarks::TimeCollector &times) {
  benchmarks::Report report("pidgin-rtf", "Pidgin RTF");
  const auto add = [&](const std::string &name, std::size_t units, const std::string &beside,
                       std::optional<double> aim) {
    if (const auto sample = times.milliseconds(sized(name, units))) {
      report.add({.plot = "Pidgin RTF",
                  .name = name,
                  .size = static_cast<double>(units),
                  .sizeUnit = "UTF-16 units",
                  .sample = *sample,
                  .unit = "ms",
                  .beside = beside,
                  .aim = aim});
    }
  };
  for (const std::size_t units : {tenth, fullSize}) {
    for (const char *const name :
         {"copy", "fill the result of mixed text", "fill the result of all escapes",
          "fill fresh memory, mixed text", "fill fresh memory, all escapes", "copy through Cocoa",
          "ask cheap predicates", "ask attribute predicates"}) {
      add(name, units, "", std::nullopt);
    }
    for (const auto &[measured, beside, aim] : comparisons()) {
      // The tenth and its copy fit in the processor's nearest caches, where copying is all but
      // free.
      add(measured, units, beside, units == fullSize || beside != "copy" ? aim : std::nullopt);
    }
  }
  const auto addQuotient = [&](const std::string &name, const std::string &one,
                               std::size_t oneUnits, const std::string &other,
                               std::size_t otherUnits, std::optional<double> aim) {
    const auto oneTime = times.milliseconds(sized(one, oneUnits));
    const auto otherTime = times.milliseconds(sized(other, otherUnits));
    if (oneTime && otherTime) {
      report.add({.name = name,
                  .sample = {.median = oneTime->median / otherTime->median},
                  .unit = "times",
                  .aim = aim});
    }
  };
  for (const std::string text : {"mixed text", "all escapes"}) {
    const std::string filled = "fill the result of " + text;
    addQuotient("escape " + text + ": times filling its result", "escape " + text, fullSize, filled,
                fullSize, std::nullopt);
    addQuotient(filled + ": times the copy of the input", filled, fullSize, "copy", fullSize,
                std::nullopt);
  }
  addQuotient("copy, ten times the text", "copy", fullSize, "copy", tenth, std::nullopt);
  for (const Comparison &comparison : comparisons()) {
    addQuotient(comparison.measured + ", ten times the text", comparison.measured, fullSize,
                comparison.measured, tenth, 11);
  }
  return report;
}

}  // namespace

int main(int count, char **arguments) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  if (![[NSBundle bundleWithPath:@PLUGIN_BUNDLE] load]) {
    std::fputs("The plug-in's bundle does not load: " PLUGIN_BUNDLE "\n", stderr);
    return 1;
  }
  const benchmarks::Options options = benchmarks::takeOptions(count, arguments);
  std::vector<char *> withDefaults(arguments, arguments + count);
  std::string minimumTime =
      options.quick ? "--benchmark_min_time=0.01" : "--benchmark_min_time=0.1";
  std::string repetitions =
      options.quick ? "--benchmark_repetitions=1" : "--benchmark_repetitions=5";
  withDefaults.insert(withDefaults.begin() + 1, {minimumTime.data(), repetitions.data()});
  int countWithDefaults = static_cast<int>(withDefaults.size());
  benchmark::Initialize(&countWithDefaults, withDefaults.data());
  if (benchmark::ReportUnrecognizedArguments(countWithDefaults, withDefaults.data())) {
    return 2;
  }
  keepFreedMemory();
  addTextBenchmarks(fullSize);
  addTextBenchmarks(tenth);
  addAttributedBenchmarks();
  benchmarks::TimeCollector times;
  benchmark::RunSpecifiedBenchmarks(&times);
  const benchmarks::Report report = reportOf(times);
  if (options.asJSON) {
    report.printJSON();
  } else {
    report.printTable();
  }
  benchmark::Shutdown();
  [pool drain];
  return times.failed() ? 1 : 0;
}
