#import "PreparedHost.h"

#include <ctime>

using benchmarks::citationsForOneUnknown;
using benchmarks::differentCitations;
using benchmarks::Step;
using benchmarks::stepCount;
using benchmarks::StepTimes;

namespace {

// Nanoseconds of this process.
std::int64_t processorTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

bool isUnknown(std::size_t place) { return place % citationsForOneUnknown == 100; }

}  // namespace

@interface PreparedReference : NSObject <KorvoReference>
@end
@implementation PreparedReference
- (NSString *)UUID {
  return @"reference";
}
@end

// The one group is given out for every citation.
@interface PreparedGroup : PassiveGroup
@end
@implementation PreparedGroup
- (void)addCitation:(id<KorvoCitation>)__attribute__((unused)) citation {
}
@end

@interface PreparedHost (Steps)
- (void)enter:(Step)step;
@end

@interface PreparedStyle : NSObject <KorvoBibStyle> {
 @public
  PreparedHost *host;
  NSArray *texts;
  TextWithRTF *bibliographyText;
  std::size_t groupsFormatted;
}
@end
@implementation PreparedStyle
- (NSString *)name {
  return @"Prepared Style";
}
// The first question while a reply is put together.
- (BOOL)useSuperscriptInInTextCitations {
  [host enter:Step::assemble];
  return NO;
}
- (void)setPropertiesInCitationArray:(NSArray *)__attribute__((unused)) citations {
  [host enter:Step::format];
}
- (NSAttributedString *)
    attributedBibliographyStringForCitationArray:(NSArray *)__attribute__((unused)) citations
                                      attributes:(NSMutableDictionary *)__attribute__((unused))
                                                 attributes {
  [host enter:Step::bibliography];
  return bibliographyText;
}
- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)__attribute__((unused))
                                                              citations {
  return [texts objectAtIndex:groupsFormatted++ % differentCitations];
}
@end

@implementation PreparedHost (Steps)
- (void)enter:(Step)step {
  if (!isTiming) {
    return;
  }
  const std::int64_t now = processorTime();
  stepTimes[static_cast<std::size_t>(currentStep)] += now - stepBegan;
  currentStep = step;
  stepBegan = now;
}
@end

@implementation PreparedHost

- (id)init {
  self = [super init];
  library = [[PassiveLibrary alloc] init];
  citation = [[PassiveCitation alloc] init];
  PreparedGroup *preparedGroup = [[PreparedGroup alloc] init];
  [preparedGroup->members addObject:citation];
  group = preparedGroup;
  PreparedReference *reference = [[[PreparedReference alloc] init] autorelease];
  found = [[NSSet alloc] initWithObjects:&reference count:1];
  nothing = [[NSSet alloc] init];
  textAttributes = [[NSDictionary alloc] init];
  style = [[PreparedStyle alloc] init];
  style->host = self;
  NSMutableArray *split = [[NSMutableArray alloc] init];
  NSMutableArray *texts = [[NSMutableArray alloc] init];
  for (std::size_t place = 0; place < differentCitations; ++place) {
    NSString *written = [NSString stringWithUTF8String:benchmarks::citationAt(place).c_str()];
    [split addObject:[NSArray arrayWithObject:written]];
    NSString *rtf = [NSString stringWithFormat:@"(Smith et al., {\\i %d}%s)",
                                               static_cast<int>(1950 + place % 75),
                                               place % 10 == 9 ? ", p. 4\\u8211 7" : ""];
    [texts addObject:[[[TextWithRTF alloc] initWithText:rtf rtf:nil] autorelease]];
  }
  splitGroups = split;
  style->texts = texts;
  return self;
}

- (void)prepareDocumentOfCitations:(std::size_t)count from:(std::size_t)first {
  // An entry of the bibliography for one in four citations, some 200 bytes each.
  constexpr std::size_t citationsForOneEntry = 4;
  constexpr std::size_t bytesOfAnEntry = 200;
  citationCount = count;
  firstCitation = first;
  groupsSplit = 0;
  conversions = 0;
  style->groupsFormatted = 0;
  if ([allCitations count] == count) {
    return;
  }
  [allCitations release];
  NSMutableArray *citations = [[NSMutableArray alloc] initWithCapacity:count];
  for (std::size_t index = 0; index < count; ++index) {
    [citations addObject:citation];
  }
  allCitations = citations;
  [style->bibliographyText release];
  NSData *rtf = [NSMutableData dataWithLength:count / citationsForOneEntry * bytesOfAnEntry];
  style->bibliographyText = [[TextWithRTF alloc] initWithText:@"bibliography" rtf:rtf];
}

- (BOOL)wasAskedForWholeDocument {
  return groupsSplit == citationCount && style->groupsFormatted == citationCount &&
         conversions == 2 * citationCount;
}

- (void)startSteps {
  isTiming = YES;
  stepTimes = {};
  currentStep = Step::decode;
  stepBegan = processorTime();
}

- (StepTimes)finishSteps {
  [self enter:Step::send];
  isTiming = NO;
  return stepTimes;
}

- (id<KorvoLibrary>)currentLibrary {
  [self enter:Step::parse];
  return library;
}

- (NSSet *)referencesMatchingTag:(NSString *)__attribute__((unused)) tag
                       inLibrary:(id<KorvoLibrary>)__attribute__((unused)) searched {
  return isUnknown((firstCitation + groupsSplit - 1) % differentCitations) ? nothing : found;
}

- (id<KorvoCitationGroup>)createCitationGroup {
  return group;
}
- (id<KorvoCitation>)createCitation {
  return citation;
}
- (NSArray *)citationStringArrayForCitationGroupString:(NSString *)__attribute__((unused))
                                                       groupString {
  return [splitGroups objectAtIndex:(firstCitation + groupsSplit++) % differentCitations];
}
- (NSArray *)citationArrayForCitationGroupArray:(NSArray *)__attribute__((unused)) groups {
  return allCitations;
}

- (NSString *)pidginRTFForAttributedString:(NSAttributedString *)text {
  ++conversions;
  if (conversions == 1) {
    [self enter:Step::measure];
  } else if (conversions == 2 * citationCount) {
    [self enter:Step::send];
  }
  return static_cast<TextWithRTF *>(text)->text;
}

- (NSDictionary *)bodyTextAttributes {
  return textAttributes;
}
- (NSDictionary *)subtitleTextAttributes {
  return textAttributes;
}
- (NSDictionary *)notesTextAttributes {
  return textAttributes;
}
- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)__attribute__((unused)) name {
  return style;
}
- (id<KorvoBibStyle>)defaultStyle {
  return style;
}
@end
