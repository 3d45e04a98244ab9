#import "TitleText.h"

#include <algorithm>
#include <iterator>

namespace korvo::windows {
namespace {

constexpr float smaller = 0.75F;

struct Mark {
  NSString *name;
  NSFontTraitMask trait;
  int raised;  // superscript 1, subscript -1
};

const Mark marks[] = {
    {@"i", NSItalicFontMask, 0},
    {@"b", NSBoldFontMask, 0},
    {@"sup", 0, 1},
    {@"sub", 0, -1},
    {@"sc", 0, 0},
    {@"span", 0, 0},
};

struct Look {
  NSFontTraitMask traits = 0;
  int raised = 0;
};

// The mark between "<" and ">"; nullptr where there is none. A span has attributes.
const Mark *markIn(NSString *tag) {
  NSString *text = [tag hasPrefix:@"/"] ? [tag substringFromIndex:1] : tag;
  const auto *found = std::ranges::find_if(marks, [&](const Mark &mark) {
    return [text isEqual:mark.name] || ([mark.name isEqual:@"span"] && [text hasPrefix:@"span "]);
  });
  return found == std::end(marks) ? nullptr : found;
}

void apply(const Mark &mark, bool begins, Look &look) {
  look.traits = begins ? look.traits | mark.trait : look.traits & ~mark.trait;
  if (mark.raised != 0) {
    look.raised = begins ? mark.raised : 0;
  }
}

NSDictionary *attributesOf(const Look &look, NSFont *font) {
  NSFont *face = look.traits == 0
                     ? font
                     : [[NSFontManager sharedFontManager] convertFont:font toHaveTrait:look.traits];
  if (look.raised != 0) {
    face = [[NSFontManager sharedFontManager]
        convertFont:face
             toSize:static_cast<float>([font pointSize]) * smaller];
  }
  NSMutableParagraphStyle *paragraph =
      [[[NSParagraphStyle defaultParagraphStyle] mutableCopy] autorelease];
  [paragraph setLineBreakMode:NSLineBreakByTruncatingTail];
  return [NSDictionary
      dictionaryWithObjectsAndKeys:face, NSFontAttributeName, paragraph,
                                   NSParagraphStyleAttributeName,
                                   [NSNumber numberWithInt:look.raised], NSSuperscriptAttributeName,
                                   [NSColor controlTextColor], NSForegroundColorAttributeName, nil];
}

void append(NSMutableAttributedString *text, NSString *piece, const Look &look, NSFont *font) {
  NSAttributedString *run = [[NSAttributedString alloc] initWithString:piece
                                                            attributes:attributesOf(look, font)];
  [text appendAttributedString:run];
  [run release];
}

}  // namespace

id titleText(NSString *marked, NSFont *font) {
  if ([marked rangeOfString:@"<"].location == NSNotFound) {
    return marked;
  }
  NSMutableAttributedString *text = [[[NSMutableAttributedString alloc] init] autorelease];
  Look look;
  NSScanner *scanner = [NSScanner scannerWithString:marked];
  [scanner setCharactersToBeSkipped:nil];
  while (![scanner isAtEnd]) {
    NSString *piece = nil;
    if ([scanner scanUpToString:@"<" intoString:&piece]) {
      append(text, piece, look, font);
    }
    const NSUInteger place = [scanner scanLocation];
    NSString *tag = nil;
    if ([scanner scanString:@"<" intoString:nullptr] &&
        [scanner scanUpToString:@">" intoString:&tag] && ![scanner isAtEnd]) {
      if (const Mark *mark = markIn(tag)) {
        apply(*mark, ![tag hasPrefix:@"/"], look);
        [scanner scanString:@">" intoString:nullptr];
        continue;
      }
    }
    // A sign of the text itself.
    if (place < [marked length]) {
      append(text, @"<", look, font);
      [scanner setScanLocation:place + 1];
    }
  }
  return text;
}

}  // namespace korvo::windows
