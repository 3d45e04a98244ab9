#import "KOCitationGroup.h"

#import "KOCitation.h"

@implementation KOCitationGroup

- (void)dealloc {
  NSArray *citations = growing_ != nil ? growing_ : citations_;
  for (NSUInteger index = 0; index < [citations count]; ++index) {
    KOCitation *citation = [citations objectAtIndex:index];
    if ([citation group] == self) {
      [citation setGroup:nil];
    }
  }
  [growing_ release];
  [citations_ release];
  [super dealloc];
}

- (void)addCitation:(id<KorvoCitation>)citation {
  static const Class citationClass = [KOCitation class];
  static const Class arrayClass = [NSMutableArray class];
  if (![(id)citation isKindOfClass:citationClass]) {
    return;
  }
  if (growing_ == nil) {
    growing_ = [[arrayClass alloc] initWithCapacity:[citations_ count] + 1];
    [growing_ addObjectsFromArray:citations_];
    [citations_ release];
    citations_ = nil;
  }
  [growing_ addObject:citation];
  [(KOCitation *)citation setGroup:self];
}

- (NSArray *)citations {
  if (citations_ == nil) {
    static const Class arrayClass = [NSArray class];
    citations_ = growing_ != nil ? [growing_ copy] : [[arrayClass alloc] init];
    [growing_ release];
    growing_ = nil;
  }
  return [[citations_ retain] autorelease];
}

@end
