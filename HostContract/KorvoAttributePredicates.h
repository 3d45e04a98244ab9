// What the host adds to every attributed string: whether the character at an index
// (UTF-16 code units) carries a style. The answer is exactly YES or NO; an index at or
// past the length is a programming error.
#pragma once

#import <Foundation/Foundation.h>

@interface NSAttributedString (KorvoAttributePredicates)
- (BOOL)isBoldAtIndex:(NSUInteger)index;
- (BOOL)isItalicizedAtIndex:(NSUInteger)index;
- (BOOL)isUnderlinedAtIndex:(NSUInteger)index;
- (BOOL)isSuperscriptAtIndex:(NSUInteger)index;
- (BOOL)isSubscriptAtIndex:(NSUInteger)index;
@end
