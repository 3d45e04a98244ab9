#import "Unspeakable.h"

@implementation Unspeakable
- (NSString *)description {
  [NSException raise:@"Unspeakable" format:@"even this is not told"];
  return nil;
}
@end
