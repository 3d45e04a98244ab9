#import "EchoingHost.h"

#include "LoadEvents.h"

@interface EchoingLibrary : NSObject <KorvoLibrary>
@end
@implementation EchoingLibrary
@end

@interface EchoingReference : NSObject <KorvoReference>
@end
@implementation EchoingReference
- (NSString *)UUID {
  return @"the reference";
}
@end

@interface EchoingCitation : NSObject <KorvoCitation> {
 @public
  id<KorvoReference> citedReference;
  NSString *searchText;
}
@end

@implementation EchoingCitation
- (void)dealloc {
  [searchText release];
  [super dealloc];
}
- (id<KorvoReference>)reference {
  return citedReference;
}
// The host's own reference outlives every citation.
- (void)setReference:(id<KorvoReference>)newReference {
  citedReference = newReference;
}
- (void)setSearchString:(NSString *)text {
  NSString *copy = [text copy];
  [searchText release];
  searchText = copy;
}
- (void)setPageRange:(NSString *)__attribute__((unused))text {
}
- (void)setInTextPrependString:(NSString *)__attribute__((unused))text {
}
- (void)setInTextAppendString:(NSString *)__attribute__((unused))text {
}
- (void)setIncludeInBibliography:(BOOL)__attribute__((unused))flag {
}
- (void)setIncludeInBody:(BOOL)__attribute__((unused))flag {
}
- (void)setStripEnclosure:(BOOL)__attribute__((unused))flag {
}
- (void)setSuppressSuperscript:(BOOL)__attribute__((unused))flag {
}
- (void)setUseYearOnly:(BOOL)__attribute__((unused))flag {
}
@end

@interface EchoingGroup : NSObject <KorvoCitationGroup> {
  NSMutableArray *members;
}
@end

@implementation EchoingGroup
- (id)init {
  self = [super init];
  members = [[NSMutableArray alloc] init];
  return self;
}
- (void)dealloc {
  [members release];
  [super dealloc];
}
- (void)addCitation:(id<KorvoCitation>)citation {
  [members addObject:citation];
}
- (NSArray *)citations {
  return members;
}
@end

// Converted without AppKit's text system, which wants a display.
@interface EchoingBibliography : NSAttributedString {
  NSString *text;
}
@end

@implementation EchoingBibliography
- (id)initWithString:(NSString *)string {
  text = [string copy];
  return self;
}
- (void)dealloc {
  [text release];
  [super dealloc];
}
- (NSString *)string {
  return text;
}
- (NSDictionary *)attributesAtIndex:(NSUInteger)__attribute__((unused))index
                     effectiveRange:(NSRange *)range {
  if (range != nullptr) {
    *range = NSMakeRange(0, [text length]);
  }
  return [NSDictionary dictionary];
}
- (NSData *)RTFFromRange:(NSRange)__attribute__((unused))range
      documentAttributes:(NSDictionary *)__attribute__((unused))attributes {
  return [text dataUsingEncoding:NSUTF8StringEncoding];
}
@end

@interface EchoingStyle : NSObject <KorvoBibStyle>
@end

@implementation EchoingStyle
- (NSString *)name {
  return [NSString stringWithUTF8String:load_test::styleName];
}
- (BOOL)useSuperscriptInInTextCitations {
  return NO;
}
- (void)setPropertiesInCitationArray:(NSArray *)__attribute__((unused))citations {
}
- (NSAttributedString *)attributedBibliographyStringForCitationArray:(NSArray *)citations
                                                          attributes:(NSMutableDictionary *)
                                                                         __attribute__((unused))
                                                                         attributes {
  NSString *text = [NSString stringWithFormat:@"{\\rtf1 %u}", (unsigned)[citations count]];
  return [[[EchoingBibliography alloc] initWithString:text] autorelease];
}
- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citations {
  NSMutableString *text = [NSMutableString stringWithString:@"("];
  for (NSUInteger index = 0; index < [citations count]; ++index) {
    EchoingCitation *citation = [citations objectAtIndex:index];
    [text appendString:index == 0 ? @"" : @"; "];
    [text appendString:citation->searchText];
  }
  [text appendString:@")"];
  return [[[NSAttributedString alloc] initWithString:text] autorelease];
}
@end

@implementation EchoingHost

- (id)init {
  self = [super init];
  library = [[EchoingLibrary alloc] init];
  reference = [[EchoingReference alloc] init];
  style = [[EchoingStyle alloc] init];
  found = [[NSSet alloc] initWithObjects:&reference count:1];
  attributes = [[NSDictionary alloc] init];
  return self;
}
- (void)dealloc {
  [library release];
  [reference release];
  [style release];
  [found release];
  [attributes release];
  [super dealloc];
}

- (NSArray *)selectedReferences {
  return [NSArray arrayWithObject:reference];
}
- (NSString *)inTextCitationTagForReference:(id<KorvoReference>)__attribute__((unused))one {
  return @"Selected 1999";
}
- (void)displayEditorForReference:(id<KorvoReference>)__attribute__((unused))one {
}
- (NSAttributedString *)summaryWithTitleForReference:(id<KorvoReference>)__attribute__((unused))
                                                     one {
  return [[[NSAttributedString alloc] initWithString:@"a title"] autorelease];
}
- (id<KorvoLibrary>)currentLibrary {
  return library;
}
// What begins with a question mark is not in the library.
- (NSSet *)referencesMatchingTag:(NSString *)tag
                       inLibrary:(id<KorvoLibrary>)__attribute__((unused))wanted {
  return [tag hasPrefix:@"?"] ? [NSSet set] : found;
}
- (id<KorvoCitationGroup>)createCitationGroup {
  return [[[EchoingGroup alloc] init] autorelease];
}
- (id<KorvoCitation>)createCitation {
  return [[[EchoingCitation alloc] init] autorelease];
}
- (NSArray *)citationStringArrayForCitationGroupString:(NSString *)groupString {
  return [groupString componentsSeparatedByString:@";"];
}
- (NSArray *)citationArrayForCitationGroupArray:(NSArray *)groups {
  NSMutableArray *all = [NSMutableArray arrayWithCapacity:[groups count]];
  for (NSUInteger index = 0; index < [groups count]; ++index) {
    [all addObjectsFromArray:[[groups objectAtIndex:index] citations]];
  }
  return all;
}
- (NSString *)pidginRTFForAttributedString:(NSAttributedString *)text {
  return [text string];
}
- (NSDictionary *)bodyTextAttributes {
  return attributes;
}
- (NSDictionary *)subtitleTextAttributes {
  return attributes;
}
- (NSDictionary *)notesTextAttributes {
  return attributes;
}
- (void)postNoticeWithHeader:(NSString *)__attribute__((unused))header
           attributedSummary:(NSAttributedString *)__attribute__((unused))summary {
}
- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)__attribute__((unused))name {
  return style;
}
- (id<KorvoBibStyle>)defaultStyle {
  return style;
}
- (NSArray *)favoriteBibStyleNames {
  return [NSArray arrayWithObject:[style name]];
}
@end
