// Attributed strings to measure the writer with.
//
// A plain NSAttributedString answers the predicates as a host does, by looking up attributes;
// one of these answers from a number, as cheaply as a method can, so that what is left of the time
// is the writer's.
#pragma once

#import <Cocoa/Cocoa.h>

// Both have a new set of attributes every so many code units, and plain text in every other run.
constexpr NSUInteger unitsOfARun = 32;

@interface CheapText : NSAttributedString {
  NSString *text_;
  NSUInteger length_;
  NSUInteger questions_;
}
// How often a predicate was asked since the last call.
- (NSUInteger)takeQuestions;
@end

NSAttributedString *textWithAttributes(NSString *text);
