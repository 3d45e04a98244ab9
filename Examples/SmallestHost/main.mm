// The smallest host: one reference, one style, no windows of its own.
//
//   smallest-host BUNDLE
//
// loads the plug-in, prints what it says of itself and "ready", and serves the word processor until
// it is ended by a signal. Every operation of the contract is here, each as short as it can be; a
// real host replaces them one by one.

#import <HostContract/HostContract.h>
#import <Platform/AppleEventsProcess.h>

#import <Cocoa/Cocoa.h>

#include <cstdio>

static const FourCharCode hostSignature = 'K' << 24 | 'R' << 16 | 'V' << 8 | 'O';

// The library's only book.
@interface Book : NSObject <KorvoReference>
@end

@implementation Book
- (NSString *)UUID {
  return @"8E6F41B0-6F0B-4B7A-9F3B-0D5C3A0F2D11";
}
@end

@interface Citation : NSObject <KorvoCitation> {
  id<KorvoReference> reference;
  NSString *searchString;
}
@end

@implementation Citation
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

@interface CitationGroup : NSObject <KorvoCitationGroup> {
  NSMutableArray *citations;
}
@end

@implementation CitationGroup
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
@interface Style : NSObject <KorvoBibStyle>
@end

@implementation Style
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
    Citation *citation = [citations objectAtIndex:index];
    // What was not found stays as the author wrote it.
    [texts addObject:[citation reference] != nil ? @"(Darwin, 1859)" : [citation searchString]];
  }
  return [[[NSAttributedString alloc] initWithString:[texts componentsJoinedByString:@" "]]
      autorelease];
}
@end

@interface Adapter : NSObject <KorvoWordProcessorIntegrationAdapter> {
  Book *book;
  Style *style;
}
@end

@implementation Adapter
- (id)init {
  self = [super init];
  book = [[Book alloc] init];
  style = [[Style alloc] init];
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
  return [[[CitationGroup alloc] init] autorelease];
}
- (id<KorvoCitation>)createCitation {
  return [[[Citation alloc] init] autorelease];
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

static Class loadPlugin(NSString *path) {
  Class plugin = [[NSBundle bundleWithPath:path] principalClass];
  if (plugin == Nil ||
      ![plugin conformsToProtocol:@protocol(KorvoWordProcessorIntegrationPlugin)]) {
    std::fprintf(stderr, "smallest-host: %s is no word-processor plug-in\n", [path UTF8String]);
    return Nil;
  }
  return plugin;
}

int main(int argc, char **argv) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  if (argc != 2) {
    std::fprintf(stderr, "usage: smallest-host BUNDLE\n");
    return 2;
  }
  NSString *path = [NSString stringWithUTF8String:argv[1]];
  // AppKit would take the path for a document to open.
  argc = 1;
  [NSApplication sharedApplication];

  Class plugin = loadPlugin(path);
  if (plugin == Nil) {
    return 1;
  }
  std::printf("%s, version %ld, %s\n", [[plugin registrationName] UTF8String],
              static_cast<long>([plugin version]), [[plugin protocolType] UTF8String]);
  [plugin setAdapter:[[[Adapter alloc] init] autorelease]];

  // On macOS the bundle's Info.plist gives the application its signature; here it is claimed, after
  // the plug-in has installed its handlers and got its adapter.
  const OSStatus status = platform::startReceivingAppleEvents(
      hostSignature, [] { [NSApp activateIgnoringOtherApps:YES]; });
  if (status != noErr) {
    std::fprintf(stderr, "smallest-host: cannot receive Apple Events (%d)\n",
                 static_cast<int>(status));
    return 1;
  }
  [[plugin performSelector:@selector(defaultInstance)] start];
  std::puts("ready");
  std::fflush(stdout);
  [NSApp run];
  [pool drain];
  return 0;
}
