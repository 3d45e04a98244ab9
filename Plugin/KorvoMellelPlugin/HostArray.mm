#import "HostArray.h"

id objectAt(NSArray *array, NSUInteger index) {
  id element = [array objectAtIndex:index];
  return element == [NSNull null] ? nil : element;
}

NSString *stringAt(NSArray *array, NSUInteger index) {
  // By its name the class would be looked up each time, which takes longer than all the rest.
  static const Class stringClass = [NSString class];
  return ofClass(stringClass, [array objectAtIndex:index]);
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

id ofClass(Class wanted, id object) { return [object isKindOfClass:wanted] ? object : nil; }
