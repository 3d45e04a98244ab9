#import "FuzzedHost.h"

#include <stdexcept>

using fuzzing::FuzzedData;
using fuzzing::hostScript;
using fuzzing::stringOf;

namespace fuzzing {

HostScript &hostScript() {
  static HostScript script;
  return script;
}

NSString *stringOf(std::u16string_view units) {
  NSString *string = [NSString stringWithCharacters:reinterpret_cast<const unichar *>(units.data())
                                             length:units.size()];
  if (string != nil) {
    return string;
  }
  // GNUstep makes no string of code units with an unpaired surrogate, but it formats one.
  NSMutableString *spelt = [NSMutableString string];
  for (const char16_t unit : units) {
    [spelt appendFormat:@"%C", static_cast<unichar>(unit)];
  }
  return spelt;
}

}  // namespace fuzzing

namespace {

enum class Answer { good, nothing, odd };

// How the next message is answered; an exception leaves at once.
Answer nextAnswer() {
  FuzzedData *data = hostScript().data;
  const unsigned choice = data == nullptr ? 0 : data->byte();
  if (choice < 0xFC) {
    return Answer::good;
  }
  hostScript().hasMisbehaved = true;
  switch (choice) {
    case 0xFC:
      return Answer::nothing;
    case 0xFD:
      [NSException raise:NSGenericException format:@"a host's trouble"];
      return Answer::nothing;
    case 0xFE:
      throw std::runtime_error("a host's trouble");
    default:
      return Answer::odd;
  }
}

std::size_t choice(std::size_t choices) {
  return hostScript().data == nullptr ? 0 : hostScript().data->choice(choices);
}

NSString *someText(NSString *otherwise) {
  return hostScript().data == nullptr ? otherwise : stringOf(hostScript().data->units());
}

}  // namespace

@interface FuzzedReference : NSObject <KorvoReference>
@end
@implementation FuzzedReference
- (NSString *)UUID {
  return nextAnswer() == Answer::good ? @"uuid" : nil;
}
@end

@interface FuzzedCitation : PassiveCitation {
 @public
  NSString *search;
}
@end
@implementation FuzzedCitation
- (void)dealloc {
  [citedReference release];
  [search release];
  [super dealloc];
}
- (id<KorvoReference>)reference {
  return nextAnswer() == Answer::good ? citedReference : nil;
}
- (void)setReference:(id<KorvoReference>)reference {
  nextAnswer();
  [reference retain];
  [citedReference release];
  citedReference = reference;
}
- (void)setSearchString:(NSString *)text {
  nextAnswer();
  [text retain];
  [search release];
  search = text;
}
- (void)setPageRange:(NSString *)__attribute__((unused)) text {
  nextAnswer();
}
@end

@interface FuzzedGroup : PassiveGroup
@end
@implementation FuzzedGroup
- (void)addCitation:(id<KorvoCitation>)citation {
  nextAnswer();
  [super addCitation:citation];
}
- (NSArray *)citations {
  return nextAnswer() == Answer::nothing ? nil : members;
}
@end

@interface FuzzedBibliography : TextWithRTF
@end
@implementation FuzzedBibliography
- (NSData *)RTFFromRange:(NSRange)__attribute__((unused)) range
      documentAttributes:(NSDictionary *)__attribute__((unused)) attributes {
  switch (nextAnswer()) {
    case Answer::good:
      return rtf;
    case Answer::nothing:
      return nil;
    case Answer::odd:
      break;
  }
  return [NSData data];
}
@end

@interface FuzzedStyle : NSObject <KorvoBibStyle>
@end
@implementation FuzzedStyle
- (NSString *)name {
  switch (nextAnswer()) {
    case Answer::good:
      return [NSString stringWithUTF8String:fuzzing::goodStyleName.data()];
    case Answer::nothing:
      return nil;
    case Answer::odd:
      break;
  }
  return someText(@"");
}
- (BOOL)useSuperscriptInInTextCitations {
  return choice(2) == 1;
}
- (void)setPropertiesInCitationArray:(NSArray *)__attribute__((unused)) citations {
  nextAnswer();
}
- (NSAttributedString *)
    attributedBibliographyStringForCitationArray:(NSArray *)__attribute__((unused)) citations
                                      attributes:(NSMutableDictionary *)__attribute__((unused))
                                                 attributes {
  if (nextAnswer() != Answer::good) {
    return nil;
  }
  NSData *rtf = [NSData dataWithBytes:fuzzing::goodBibliography.data()
                               length:fuzzing::goodBibliography.size()];
  return [[[FuzzedBibliography alloc] initWithText:@"works" rtf:rtf] autorelease];
}
// "(Smith; Jones)": what was searched for.
- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citations {
  if (nextAnswer() != Answer::good) {
    return nil;
  }
  NSMutableString *text = [NSMutableString stringWithString:@"("];
  for (NSUInteger index = 0; index < [citations count]; ++index) {
    FuzzedCitation *citation = [citations objectAtIndex:index];
    [text appendString:index > 0 ? @"; " : @""];
    [text appendString:citation->search];
  }
  [text appendString:@")"];
  return [[[NSAttributedString alloc] initWithString:text] autorelease];
}
@end

@implementation FuzzedHost

- (id<KorvoBibStyle>)style {
  static FuzzedStyle *const style = [[FuzzedStyle alloc] init];
  return style;
}

- (NSArray *)selectedReferences {
  NSMutableArray *references = [NSMutableArray array];
  const Answer answer = nextAnswer();
  for (std::size_t count = choice(4); count > 0; --count) {
    [references addObject:answer == Answer::odd ? (id)[NSNull null]
                                                : [[[FuzzedReference alloc] init] autorelease]];
  }
  return answer == Answer::nothing ? nil : references;
}

- (NSString *)inTextCitationTagForReference:(id<KorvoReference>)__attribute__((unused)) reference {
  return nextAnswer() == Answer::nothing ? nil : someText(@"tag");
}

- (void)displayEditorForReference:(id<KorvoReference>)__attribute__((unused)) reference {
  nextAnswer();
}

- (NSAttributedString *)summaryWithTitleForReference:(id<KorvoReference>)__attribute__((unused))
                                                     reference {
  return nextAnswer() == Answer::good
             ? [[[NSAttributedString alloc] initWithString:@"title"] autorelease]
             : nil;
}

- (id<KorvoLibrary>)currentLibrary {
  return nextAnswer() == Answer::good ? [[[PassiveLibrary alloc] init] autorelease] : nil;
}

- (NSSet *)referencesMatchingTag:(NSString *)__attribute__((unused)) tag
                       inLibrary:(id<KorvoLibrary>)__attribute__((unused)) library {
  constexpr std::size_t counts[] = {1, 0, 2, 12};
  NSMutableSet *references = [NSMutableSet set];
  const Answer answer = nextAnswer();
  for (std::size_t count = counts[choice(4)]; count > 0; --count) {
    [references addObject:[[[FuzzedReference alloc] init] autorelease]];
  }
  return answer == Answer::nothing ? nil : references;
}

- (id<KorvoCitationGroup>)createCitationGroup {
  return nextAnswer() == Answer::good ? [[[FuzzedGroup alloc] init] autorelease] : nil;
}

- (id<KorvoCitation>)createCitation {
  return nextAnswer() == Answer::good ? [[[FuzzedCitation alloc] init] autorelease] : nil;
}

- (NSArray *)citationStringArrayForCitationGroupString:(NSString *)groupString {
  switch (nextAnswer()) {
    case Answer::good:
      return [groupString componentsSeparatedByString:@";"];
    case Answer::nothing:
      return nil;
    case Answer::odd:
      break;
  }
  return [NSArray arrayWithObjects:[NSNull null], someText(@""), nil];
}

- (NSArray *)citationArrayForCitationGroupArray:(NSArray *)groups {
  if (nextAnswer() == Answer::nothing) {
    return nil;
  }
  NSMutableArray *citations = [NSMutableArray array];
  for (NSUInteger index = 0; index < [groups count]; ++index) {
    NSArray *members = [[groups objectAtIndex:index] citations];
    [citations addObjectsFromArray:members != nil ? members : [NSArray array]];
  }
  return citations;
}

- (NSString *)pidginRTFForAttributedString:(NSAttributedString *)text {
  switch (nextAnswer()) {
    case Answer::good:
      return [text string];
    case Answer::nothing:
      return nil;
    case Answer::odd:
      break;
  }
  return someText(@"");
}

- (NSDictionary *)bodyTextAttributes {
  return nextAnswer() == Answer::good ? [NSDictionary dictionary] : nil;
}
- (NSDictionary *)subtitleTextAttributes {
  return [self bodyTextAttributes];
}
- (NSDictionary *)notesTextAttributes {
  return [self bodyTextAttributes];
}

- (void)postNoticeWithHeader:(NSString *)__attribute__((unused)) header
           attributedSummary:(NSAttributedString *)__attribute__((unused)) summary {
  nextAnswer();
}

// Every name but those that begin with a question mark is one of its style's.
- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)name {
  return nextAnswer() == Answer::good && ![name hasPrefix:@"?"] ? [self style] : nil;
}

- (id<KorvoBibStyle>)defaultStyle {
  return choice(2) == 0 ? [self style] : nil;
}

- (NSArray *)favoriteBibStyleNames {
  return [NSArray array];
}
@end
