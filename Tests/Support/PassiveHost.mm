#import "PassiveHost.h"

@implementation PassiveLibrary
@end

@implementation PassiveCitation

- (id<KorvoReference>)reference {
  return citedReference;
}

- (void)setReference:(id<KorvoReference>)newReference {
  citedReference = newReference;
}

- (void)setSearchString:(NSString *)__attribute__((unused)) text {
}

- (void)setPageRange:(NSString *)__attribute__((unused)) text {
}

- (void)setInTextPrependString:(NSString *)__attribute__((unused)) text {
}

- (void)setInTextAppendString:(NSString *)__attribute__((unused)) text {
}

- (void)setIncludeInBibliography:(BOOL)__attribute__((unused)) flag {
}

- (void)setIncludeInBody:(BOOL)__attribute__((unused)) flag {
}

- (void)setStripEnclosure:(BOOL)__attribute__((unused)) flag {
}

- (void)setSuppressSuperscript:(BOOL)__attribute__((unused)) flag {
}

- (void)setUseYearOnly:(BOOL)__attribute__((unused)) flag {
}

@end

@implementation PassiveGroup

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

@implementation TextWithRTF

// The abstract class's own initializers make an object of another class.
- (id)initWithText:(NSString *)newText rtf:(NSData *)newRTF {
  text = [newText copy];
  rtf = [newRTF copy];
  return self;
}

- (void)dealloc {
  [text release];
  [rtf release];
  [super dealloc];
}

- (NSString *)string {
  return text;
}

- (NSUInteger)length {
  return [text length];
}

- (NSDictionary *)attributesAtIndex:(NSUInteger)__attribute__((unused)) index
                     effectiveRange:(NSRange *)range {
  if (range != nullptr) {
    *range = NSMakeRange(0, [text length]);
  }
  return [NSDictionary dictionary];
}

- (NSData *)RTFFromRange:(NSRange)__attribute__((unused)) range
      documentAttributes:(NSDictionary *)__attribute__((unused)) attributes {
  return rtf;
}

@end

@implementation PassiveHost

- (NSArray *)selectedReferences {
  return [NSArray array];
}

- (NSString *)inTextCitationTagForReference:(id<KorvoReference>)__attribute__((unused)) reference {
  return nil;
}

- (void)displayEditorForReference:(id<KorvoReference>)__attribute__((unused)) reference {
}

- (NSAttributedString *)summaryWithTitleForReference:(id<KorvoReference>)__attribute__((unused))
                                                     reference {
  return [[[NSAttributedString alloc] initWithString:@"a title"] autorelease];
}

- (id<KorvoLibrary>)currentLibrary {
  return nil;
}

- (NSSet *)referencesMatchingTag:(NSString *)__attribute__((unused)) tag
                       inLibrary:(id<KorvoLibrary>)__attribute__((unused)) library {
  return [NSSet set];
}

- (id<KorvoCitationGroup>)createCitationGroup {
  return [[[PassiveGroup alloc] init] autorelease];
}

- (id<KorvoCitation>)createCitation {
  return [[[PassiveCitation alloc] init] autorelease];
}

- (NSArray *)citationStringArrayForCitationGroupString:(NSString *)groupString {
  return [groupString componentsSeparatedByString:@";"];
}

- (NSArray *)citationArrayForCitationGroupArray:(NSArray *)groups {
  NSMutableArray *citations = [NSMutableArray arrayWithCapacity:[groups count]];
  for (NSUInteger index = 0; index < [groups count]; ++index) {
    [citations addObjectsFromArray:[[groups objectAtIndex:index] citations]];
  }
  return citations;
}

- (NSString *)pidginRTFForAttributedString:(NSAttributedString *)text {
  return [text string];
}

- (NSDictionary *)bodyTextAttributes {
  return [NSDictionary dictionary];
}

- (NSDictionary *)subtitleTextAttributes {
  return [NSDictionary dictionary];
}

- (NSDictionary *)notesTextAttributes {
  return [NSDictionary dictionary];
}

- (void)postNoticeWithHeader:(NSString *)__attribute__((unused)) header
           attributedSummary:(NSAttributedString *)__attribute__((unused)) summary {
}

- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)__attribute__((unused)) name {
  return nil;
}

- (id<KorvoBibStyle>)defaultStyle {
  return nil;
}

- (NSArray *)favoriteBibStyleNames {
  return [NSArray array];
}

@end
