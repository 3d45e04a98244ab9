// Pidgin RTF beside what it cannot do without: copying the text, and asking the host's
// predicates. Each also at a tenth of the size, which shows whether it is linear.

#import "AttributedTexts.h"

#import <HostContract/HostContract.h>
#import <RTFTranslation.h>

#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "MixedText.h"
#include "RatioReporter.h"

namespace {

using benchmarks::Comparison;
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

void copy(const std::u16string &text, benchmark::State &) {
  benchmark::DoNotOptimize(std::u16string(text));
}

void read(const std::u16string &rtf, benchmark::State &) {
  benchmark::DoNotOptimize(formats::textOfPidginRTF(rtf));
}

void escape(const std::u16string &text, benchmark::State &) {
  benchmark::DoNotOptimize(formats::pidginRTF(text, ControlCharacters::escaped));
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

std::vector<Comparison> comparisons() {
  std::vector<Comparison> result;
  const auto addRatio = [&](const std::string &measured, const std::string &baseline, double aim) {
    result.push_back({sized(measured, fullSize), sized(baseline, fullSize), aim});
  };
  const auto addLinear = [&](const std::string &measured) {
    result.push_back({sized(measured, fullSize), sized(measured, tenth), 11});
  };
  addRatio("escape ASCII", "copy", 4);
  addRatio("escape mixed text", "copy", 12);
  addRatio("escape all escapes", "copy", 12);
  addRatio("read mixed RTF", "copy", 4);
  addRatio("read all controls", "copy", 12);
  addRatio("category escape mixed text", "copy through Cocoa", 12);
  addRatio("category read mixed RTF", "copy through Cocoa", 4);
  addRatio("category write, cheap predicates", "ask cheap predicates", 2);
  result.push_back({sized("category write, attribute predicates", tenth),
                    sized("ask attribute predicates", tenth), 2});
  for (const char *const name : {"escape ASCII", "escape mixed text", "escape all escapes",
                                 "read mixed RTF", "category escape mixed text",
                                 "category read mixed RTF", "category write, cheap predicates"}) {
    addLinear(name);
  }
  return result;
}

bool takeOption(int &count, char **arguments, std::string_view option) {
  const auto end = std::remove(arguments + 1, arguments + count, option);
  const bool found = end != arguments + count;
  count = static_cast<int>(end - arguments);
  return found;
}

}  // namespace

int main(int count, char **arguments) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  if (![[NSBundle bundleWithPath:@PLUGIN_BUNDLE] load]) {
    std::fputs("The plug-in's bundle does not load: " PLUGIN_BUNDLE "\n", stderr);
    return 1;
  }
  const bool asJSON = takeOption(count, arguments, "--json");
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
    return 2;
  }
  // Freed memory is kept: else large results would be charged for fresh pages and small ones not.
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  addTextBenchmarks(fullSize);
  addTextBenchmarks(tenth);
  addAttributedBenchmarks();
  benchmarks::RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  if (asJSON) {
    reporter.printJSON(comparisons());
  } else {
    reporter.printTable(comparisons());
  }
  benchmark::Shutdown();
  [pool drain];
  return 0;
}
