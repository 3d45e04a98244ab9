#import "AttributedTexts.h"

#import <HostContract/HostContract.h>

namespace {

enum Style : unsigned { bold = 1, italic = 2, underline = 4, superscript = 8, subscript = 16 };

// Steps through all sets of styles.
unsigned stylesAt(NSUInteger index) {
  const NSUInteger run = index / unitsOfARun;
  return run % 2 == 0 ? 0 : static_cast<unsigned>(run / 2 % 32);
}

bool carries(NSAttributedString *text, NSString *attribute, NSUInteger index) {
  return [text attribute:attribute atIndex:index effectiveRange:nullptr] != nil;
}

}  // namespace

@implementation NSAttributedString (KorvoAttributePredicates)

- (BOOL)isBoldAtIndex:(NSUInteger)index {
  return carries(self, @"bold", index) ? YES : NO;
}
- (BOOL)isItalicizedAtIndex:(NSUInteger)index {
  return carries(self, @"italic", index) ? YES : NO;
}
- (BOOL)isUnderlinedAtIndex:(NSUInteger)index {
  return carries(self, @"underline", index) ? YES : NO;
}
- (BOOL)isSuperscriptAtIndex:(NSUInteger)index {
  return carries(self, @"superscript", index) ? YES : NO;
}
- (BOOL)isSubscriptAtIndex:(NSUInteger)index {
  return carries(self, @"subscript", index) ? YES : NO;
}

@end

@implementation CheapText

// The designated initializer of an abstract class, whose own -init would call this one again.
- (instancetype)initWithString:(NSString *)text attributes:(NSDictionary *)attributes {
  (void)attributes;
  text_ = [text retain];
  length_ = [text length];
  return self;
}

- (void)dealloc {
  [text_ release];
  [super dealloc];
}

- (NSString *)string {
  return text_;
}

- (NSUInteger)length {
  return length_;
}

- (NSDictionary *)attributesAtIndex:(NSUInteger)index effectiveRange:(NSRange *)range {
  if (range != nullptr) {
    *range = NSMakeRange(index, 1);
  }
  return [NSDictionary dictionary];
}

- (NSUInteger)takeQuestions {
  const NSUInteger questions = questions_;
  questions_ = 0;
  return questions;
}

- (BOOL)isBoldAtIndex:(NSUInteger)index {
  ++questions_;
  return (stylesAt(index) & bold) != 0 ? YES : NO;
}
- (BOOL)isItalicizedAtIndex:(NSUInteger)index {
  ++questions_;
  return (stylesAt(index) & italic) != 0 ? YES : NO;
}
- (BOOL)isUnderlinedAtIndex:(NSUInteger)index {
  ++questions_;
  return (stylesAt(index) & underline) != 0 ? YES : NO;
}
- (BOOL)isSuperscriptAtIndex:(NSUInteger)index {
  ++questions_;
  return (stylesAt(index) & superscript) != 0 ? YES : NO;
}
- (BOOL)isSubscriptAtIndex:(NSUInteger)index {
  ++questions_;
  return (stylesAt(index) & subscript) != 0 ? YES : NO;
}

@end

NSAttributedString *textWithAttributes(NSString *text) {
  NSMutableAttributedString *result =
      [[[NSMutableAttributedString alloc] initWithString:text] autorelease];
  const struct {
    Style style;
    NSString *attribute;
  } names[] = {{bold, @"bold"},
               {italic, @"italic"},
               {underline, @"underline"},
               {superscript, @"superscript"},
               {subscript, @"subscript"}};
  for (NSUInteger start = 0; start < [text length]; start += unitsOfARun) {
    NSMutableDictionary *attributes = [NSMutableDictionary dictionary];
    for (const auto &name : names) {
      if ((stylesAt(start) & name.style) != 0) {
        [attributes setObject:@"" forKey:name.attribute];
      }
    }
    [result setAttributes:attributes
                    range:NSMakeRange(start, MIN(unitsOfARun, [text length] - start))];
  }
  return [[result copy] autorelease];
}
