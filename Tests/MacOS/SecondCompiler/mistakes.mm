// Mistakes that clang's analyser has to find. Never built.
#import <Foundation/Foundation.h>

void keptForEver() {
  NSMutableArray *array = [[NSMutableArray alloc] init];
  [array addObject:@"kept"];
}

void releasedTwice() {
  NSMutableArray *array = [[NSMutableArray alloc] init];
  [array release];
  [array release];
}

// Owned by nobody, and given to a caller who will not give it back.
@interface Giver : NSObject
+ (NSArray *)array;
@end

@implementation Giver
+ (NSArray *)array {
  return [[NSArray alloc] init];
}
@end
