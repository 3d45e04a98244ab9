#import "HostArray.h"

id objectAt(NSArray *array, NSUInteger index) {
  id element = [array objectAtIndex:index];
  return element == [NSNull null] ? nil : element;
}

NSString *stringAt(NSArray *array, NSUInteger index) {
  id element = [array objectAtIndex:index];
  return [element isKindOfClass:[NSString class]] ? element : nil;
}

NSArray *stringsIn(NSArray *array) {
  NSMutableArray *strings = [NSMutableArray arrayWithCapacity:[array count]];
  for (NSUInteger index = 0; index < [array count]; ++index) {
    NSString *string = stringAt(array, index);
    if (string != nil) {
      [strings addObject:string];
    }
  }
  return strings;
}
