// What the host returned, and what it put into arrays, is not vouched for: an object that is not
// what it should be counts as absent.
#pragma once

#import <Foundation/Foundation.h>

// The element, or nil for an NSNull. The index must be below the count.
id objectAt(NSArray *array, NSUInteger index);

// The element, or nil when it is no string.
NSString *stringAt(NSArray *array, NSUInteger index);

// The elements that are strings, in order. Nil is an empty array.
NSArray *stringsIn(NSArray *array);

// The object, or nil when it is not of the class. For what goes on to Cocoa: GNUstep, given a
// number for a dictionary of text attributes, raises while it holds a lock, and the next request
// would wait for that lock for ever.
id ofClass(Class wanted, id object);
