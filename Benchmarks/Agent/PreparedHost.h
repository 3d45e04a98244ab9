// A host whose operations cost next to nothing: every answer was made in advance, and the same few
// objects are given out again and again. What is left of a request's time is the plug-in's.
#pragma once

#include "Citations.h"

#import <Tests/Support/PassiveHost.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace benchmarks {

// One in this many is not in the library.
inline constexpr std::size_t citationsForOneUnknown = 256;

// What the plug-in does between the calls by which the host can tell.
enum class Step {
  decode,        // the event taken apart
  parse,         // each citation made a string, taken apart, matched; noted, where nothing matches
  format,        // each group's text asked for
  measure,       // each text converted, for the size of the reply
  bibliography,  // asked for as RTF
  assemble,      // each text converted again, into the reply
  send,          // the reply made an event
};
inline constexpr std::size_t stepCount = static_cast<std::size_t>(Step::send) + 1;
// Nanoseconds.
using StepTimes = std::array<std::int64_t, stepCount>;

}  // namespace benchmarks

@class PreparedStyle;

@interface PreparedHost : PassiveHost {
  std::size_t citationCount;
  std::size_t firstCitation;
  std::size_t groupsSplit;
  std::size_t conversions;
  NSArray *splitGroups;
  NSArray *allCitations;
  NSSet *found;
  NSSet *nothing;
  id library;
  id citation;
  id group;
  PreparedStyle *style;
  NSDictionary *textAttributes;
  BOOL isTiming;
  benchmarks::Step currentStep;
  std::int64_t stepBegan;
  benchmarks::StepTimes stepTimes;
}
// For one document of that many citations, of which the first is `citationAt(first)`. Made in
// advance as everything else.
- (void)prepareDocumentOfCitations:(std::size_t)count from:(std::size_t)first;
// Whether every text of the document was asked for, and converted twice.
- (BOOL)wasAskedForWholeDocument;
// Processor time of this process in each step since the start.
- (void)startSteps;
- (benchmarks::StepTimes)finishSteps;
@end
