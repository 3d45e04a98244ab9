#import "KOCitationGroup.h"

#import "KOCitation.h"

@implementation KOCitationGroup

- (id)init {
  self = [super init];
  if (self != nil) {
    citations_ = [[NSMutableArray alloc] init];
  }
  return self;
}

- (void)dealloc {
  for (NSUInteger index = 0; index < [citations_ count]; ++index) {
    KOCitation *citation = [citations_ objectAtIndex:index];
    if ([citation group] == self) {
      [citation setGroup:nil];
    }
  }
  [citations_ release];
  [copy_ release];
  [super dealloc];
}

- (void)addCitation:(id<KorvoCitation>)citation {
  static const Class citationClass = [KOCitation class];
  if (![(id)citation isKindOfClass:citationClass]) {
    return;
  }
  [citations_ addObject:citation];
  [copy_ release];
  copy_ = nil;
  [(KOCitation *)citation setGroup:self];
}

- (NSArray *)citations {
  if (copy_ == nil) {
    copy_ = [citations_ copy];
  }
  return [[copy_ retain] autorelease];
}

@end
