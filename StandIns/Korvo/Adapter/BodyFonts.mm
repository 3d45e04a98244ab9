#import "BodyFonts.h"

#import "Owned.h"

#include <array>

namespace korvo::adapter {
namespace {

constexpr CGFloat bodySize = 12;

NSFont *fontOfFamily(NSString *family, NSFontTraitMask traits) {
  return [[NSFontManager sharedFontManager] fontWithFamily:family
                                                    traits:traits
                                                    weight:(traits & NSBoldFontMask) != 0 ? 9 : 5
                                                      size:bodySize];
}

// Italics carry meaning in a bibliography: a family without them is of no use.
NSString *bodyFamily() {
  NSString *const wanted[] = {@"Times New Roman", @"Liberation Serif", @"FreeSerif",
                              @"DejaVu Serif"};
  for (NSString *family : wanted) {
    NSFont *italic = fontOfFamily(family, NSItalicFontMask);
    if (italic != nil &&
        ([[NSFontManager sharedFontManager] traitsOfFont:italic] & NSItalicFontMask) != 0) {
      return family;
    }
  }
  return [[NSFont userFontOfSize:bodySize] familyName];
}

Owned<NSFont *> makeFont(bool bold, bool italic) {
  static const Owned<NSString *> family = Owned<NSString *>::retaining(bodyFamily());
  const NSFontTraitMask traits = (bold ? NSBoldFontMask : 0) | (italic ? NSItalicFontMask : 0);
  NSFont *font = fontOfFamily(family.get(), traits);
  return Owned<NSFont *>::retaining(font != nil ? font : [NSFont userFontOfSize:bodySize]);
}

}  // namespace

NSFont *bodyFont(bool bold, bool italic) {
  static const std::array<Owned<NSFont *>, 4> fonts = {
      makeFont(false, false), makeFont(false, true), makeFont(true, false), makeFont(true, true)};
  return fonts[(bold ? 2 : 0) + (italic ? 1 : 0)].get();
}

}  // namespace korvo::adapter
