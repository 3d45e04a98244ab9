// What a character of an attributed string looks like, read off its attributes.
#import <HostContract/KorvoAttributePredicates.h>

#import <Cocoa/Cocoa.h>

namespace {

bool hasFontTrait(NSAttributedString *text, NSUInteger index, NSFontTraitMask trait) {
  NSFont *font = [text attribute:NSFontAttributeName atIndex:index effectiveRange:nullptr];
  return font != nil && ([[NSFontManager sharedFontManager] traitsOfFont:font] & trait) != 0;
}

// 0 where the attribute is missing or is no number.
int numberAt(NSAttributedString *text, NSString *attribute, NSUInteger index) {
  id value = [text attribute:attribute atIndex:index effectiveRange:nullptr];
  return [value respondsToSelector:@selector(intValue)] ? [value intValue] : 0;
}

}  // namespace

@implementation NSAttributedString (KorvoAttributePredicates)

- (BOOL)isBoldAtIndex:(NSUInteger)index {
  return hasFontTrait(self, index, NSBoldFontMask) ? YES : NO;
}

- (BOOL)isItalicizedAtIndex:(NSUInteger)index {
  return hasFontTrait(self, index, NSItalicFontMask) ? YES : NO;
}

- (BOOL)isUnderlinedAtIndex:(NSUInteger)index {
  return numberAt(self, NSUnderlineStyleAttributeName, index) != NSUnderlineStyleNone ? YES : NO;
}

- (BOOL)isSuperscriptAtIndex:(NSUInteger)index {
  return numberAt(self, NSSuperscriptAttributeName, index) > 0 ? YES : NO;
}

- (BOOL)isSubscriptAtIndex:(NSUInteger)index {
  return numberAt(self, NSSuperscriptAttributeName, index) < 0 ? YES : NO;
}

@end
