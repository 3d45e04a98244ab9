#import <SubstituteHostObjects/KOCitationGroup.h>

#import <SubstituteHostObjects/KOCitation.h>

@implementation KOCitationGroup

- (id)init {
  self = [super init];
  if (self != nil) citations_ = [[NSMutableArray alloc] init];
  return self;
}

- (void)dealloc {
  for (NSUInteger index = 0; index < [citations_ count]; ++index) {
    KOCitation *citation = [citations_ objectAtIndex:index];
    if ([citation group] == self) [citation setGroup:nil];
  }
  [citations_ release];
  [super dealloc];
}

- (void)addCitation:(id<KorvoCitation>)citation {
  if (![(id)citation isKindOfClass:[KOCitation class]]) return;
  [citations_ addObject:citation];
  [(KOCitation *)citation setGroup:self];
}

- (NSArray *)citations {
  return [[citations_ copy] autorelease];
}

@end
