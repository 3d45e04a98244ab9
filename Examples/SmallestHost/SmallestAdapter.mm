#import "SmallestAdapter.h"

// The library's only book.
@interface SmallestBook : NSObject <KorvoReference>
@end

@implementation SmallestBook
- (NSString *)UUID {
  return @"8E6F41B0-6F0B-4B7A-9F3B-0D5C3A0F2D11";
}
@end

@interface SmallestCitation : NSObject <KorvoCitation> {
  id<KorvoReference> reference;
  NSString *searchString;
}
@end

@implementation SmallestCitation
- (void)dealloc {
  [reference release];
  [searchString release];
  [super dealloc];
}
- (id<KorvoReference>)reference {
  return reference;
}
- (void)setReference:(id<KorvoReference>)newReference {
  [newReference retain];
  [reference release];
  reference = newReference;
}
- (NSString *)searchString {
  return searchString;
}
- (void)setSearchString:(NSString *)newSearchString {
  NSString *copy = [newSearchString copy];
  [searchString release];
  searchString = copy;
}
// This host's style knows no options: what an author asks for here changes nothing.
- (void)setPageRange:(NSString *)__attribute__((unused)) pageRange {
}
- (void)setInTextPrependString:(NSString *)__attribute__((unused)) text {
}
- (void)setInTextAppendString:(NSString *)__attribute__((unused)) text {
}
- (void)setIncludeInBibliography:(BOOL)__attribute__((unused)) include {
}
- (void)setIncludeInBody:(BOOL)__attribute__((unused)) include {
}
- (void)setStripEnclosure:(BOOL)__attribute__((unused)) strip {
}
- (void)setSuppressSuperscript:(BOOL)__attribute__((unused)) suppress {
}
- (void)setUseYearOnly:(BOOL)__attribute__((unused)) yearOnly {
}
@end

@interface SmallestCitationGroup : NSObject <KorvoCitationGroup> {
  NSMutableArray *citations;
}
@end

@implementation SmallestCitationGroup
- (id)init {
  self = [super init];
  citations = [[NSMutableArray alloc] init];
  return self;
}
- (void)dealloc {
  [citations release];
  [super dealloc];
}
- (void)addCitation:(id<KorvoCitation>)citation {
  [citations addObject:citation];
}
- (NSArray *)citations {
  return citations;
}
@end

// A style that knows how to cite one book.
@interface SmallestStyle : NSObject <KorvoBibStyle>
@end

@implementation SmallestStyle
- (NSString *)name {
  return @"Smallest";
}
- (BOOL)useSuperscriptInInTextCitations {
  return NO;
}
- (void)setPropertiesInCitationArray:(NSArray *)__attribute__((unused)) citations {
}
- (NSAttributedString *)
    attributedBibliographyStringForCitationArray:(NSArray *)__attribute__((unused)) citations
                                      attributes:(NSMutableDictionary *)__attribute__((unused))
                                                 attributes {
  return [[[NSAttributedString alloc]
      initWithString:@"Darwin, C. (1859). On the Origin of Species. London: John Murray.\n"]
      autorelease];
}
- (NSAttributedString *)attributedGroupStringForCitationArray:(NSArray *)citations {
  NSMutableArray *texts = [NSMutableArray array];
  for (NSUInteger index = 0; index < [citations count]; ++index) {
    SmallestCitation *citation = [citations objectAtIndex:index];
    // What was not found stays as the author wrote it.
    [texts addObject:[citation reference] != nil ? @"(Darwin, 1859)" : [citation searchString]];
  }
  return [[[NSAttributedString alloc] initWithString:[texts componentsJoinedByString:@" "]]
      autorelease];
}
@end

@implementation SmallestAdapter
- (id)init {
  self = [super init];
  book = [[SmallestBook alloc] init];
  style = [[SmallestStyle alloc] init];
  return self;
}
- (void)dealloc {
  [book release];
  [style release];
  [super dealloc];
}
- (NSArray *)selectedReferences {
  return [NSArray arrayWithObject:book];
}
- (NSString *)inTextCitationTagForReference:(id<KorvoReference>)__attribute__((unused)) reference {
  return @"Darwin1859";
}
- (void)displayEditorForReference:(id<KorvoReference>)reference {
  NSLog(@"editor for %@", [reference UUID]);
}
- (NSAttributedString *)summaryWithTitleForReference:(id<KorvoReference>)__attribute__((unused))
                                                     reference {
  return [[[NSAttributedString alloc] initWithString:@"Darwin 1859, On the Origin of Species"]
      autorelease];
}
// The library itself is never looked at here: nil will do.
- (id<KorvoLibrary>)currentLibrary {
  return nil;
}
- (NSSet *)referencesMatchingTag:(NSString *)tag
                       inLibrary:(id<KorvoLibrary>)__attribute__((unused)) library {
  return [tag hasPrefix:@"Darwin"] ? [NSSet setWithObject:book] : [NSSet set];
}
- (id<KorvoCitationGroup>)createCitationGroup {
  return [[[SmallestCitationGroup alloc] init] autorelease];
}
- (id<KorvoCitation>)createCitation {
  return [[[SmallestCitation alloc] init] autorelease];
}
- (NSArray *)citationStringArrayForCitationGroupString:(NSString *)groupString {
  return [groupString componentsSeparatedByString:@";"];
}
- (NSArray *)citationArrayForCitationGroupArray:(NSArray *)groups {
  NSMutableArray *citations = [NSMutableArray array];
  for (NSUInteger index = 0; index < [groups count]; ++index) {
    [citations addObjectsFromArray:[[groups objectAtIndex:index] citations]];
  }
  return citations;
}
// Right for texts without formatting, in ASCII, without braces and backslashes: all that the style
// above makes.
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
- (void)postNoticeWithHeader:(NSString *)header attributedSummary:(NSAttributedString *)summary {
  NSLog(@"%@: %@", header, [summary string]);
}
- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)name {
  return [name isEqualToString:[style name]] ? style : nil;
}
- (id<KorvoBibStyle>)defaultStyle {
  return style;
}
- (NSArray *)favoriteBibStyleNames {
  return [NSArray arrayWithObject:[style name]];
}
@end
