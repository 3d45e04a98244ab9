// Elements of arrays that the host made. What it put there is not vouched for: an element that is
// not what it should be counts as absent.
#pragma once

#import <Foundation/Foundation.h>

// The element, or nil for an NSNull. The index must be below the count.
id objectAt(NSArray *array, NSUInteger index);

// The element, or nil when it is no string.
NSString *stringAt(NSArray *array, NSUInteger index);

// The elements that are strings, in order. Nil is an empty array.
NSArray *stringsIn(NSArray *array);
