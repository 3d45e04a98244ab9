#import "EchoingHost.h"

#include "LoadEvents.h"

@interface EchoingReference : NSObject <KorvoReference>
@end
@implementation EchoingReference
- (NSString *)UUID {
  return @"the reference";
}
@end

@interface EchoingCitation : PassiveCitation {
 @public
  NSString *searchText;
}
@end

@implementation EchoingCitation
- (void)dealloc {
  [searchText release];
  [super dealloc];
}
- (void)setSearchString:(NSString *)text {
  NSString *copy = [text copy];
  [searchText release];
  searchText = copy;
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
- (void)setPropertiesInCitationArray:(NSArray *)__attribute__((unused)) citations {
}
- (NSAttributedString *)attributedBibliographyStringForCitationArray:(NSArray *)citations
                                                          attributes:(NSMutableDictionary *)
                                                                         __attribute__((unused))
                                                                         attributes {
  NSString *text = [NSString stringWithFormat:@"{\\rtf1 %u}", (unsigned)[citations count]];
  NSData *rtf = [text dataUsingEncoding:NSUTF8StringEncoding];
  return [[[TextWithRTF alloc] initWithText:text rtf:rtf] autorelease];
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
  library = [[PassiveLibrary alloc] init];
  reference = [[EchoingReference alloc] init];
  style = [[EchoingStyle alloc] init];
  found = [[NSSet alloc] initWithObjects:&reference count:1];
  return self;
}
- (void)dealloc {
  [library release];
  [reference release];
  [style release];
  [found release];
  [super dealloc];
}

- (NSArray *)selectedReferences {
  return [NSArray arrayWithObject:reference];
}
- (NSString *)inTextCitationTagForReference:(id<KorvoReference>)__attribute__((unused)) one {
  return @"Selected 1999";
}
- (id<KorvoLibrary>)currentLibrary {
  return library;
}
// What begins with a question mark is not in the library.
- (NSSet *)referencesMatchingTag:(NSString *)tag
                       inLibrary:(id<KorvoLibrary>)__attribute__((unused)) wanted {
  return [tag hasPrefix:@"?"] ? [NSSet set] : found;
}
- (id<KorvoCitation>)createCitation {
  return [[[EchoingCitation alloc] init] autorelease];
}
- (id<KorvoBibStyle>)bibStyleNamed:(NSString *)__attribute__((unused)) name {
  return style;
}
- (id<KorvoBibStyle>)defaultStyle {
  return style;
}
- (NSArray *)favoriteBibStyleNames {
  return [NSArray arrayWithObject:[style name]];
}
@end
