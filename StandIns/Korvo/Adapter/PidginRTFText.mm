#import "PidginRTFText.h"

#import "StringConversion.h"

#include <Formats/PidginRTFWriter.h>
#import <HostContract/KorvoAttributePredicates.h>

// Declared, not implemented: a plug-in may bring it.
@interface NSAttributedString (OfferedByPlugIns)
- (NSString *)asPidginRTF;
@end

namespace korvo::adapter {
namespace {

formats::PidginAttributes attributesAt(NSAttributedString *text, NSUInteger index) {
  return {.bold = [text isBoldAtIndex:index] != NO,
          .italic = [text isItalicizedAtIndex:index] != NO,
          .underline = [text isUnderlinedAtIndex:index] != NO,
          .superscript = [text isSuperscriptAtIndex:index] != NO,
          .subscript = [text isSubscriptAtIndex:index] != NO};
}

NSString *convertedHere(NSAttributedString *text) {
  const std::u16string characters = utf16([text string]);
  formats::PidginRTFWriter writer(characters.size());
  NSRange run = NSMakeRange(0, 0);
  while (NSMaxRange(run) < characters.size()) {
    const NSUInteger start = NSMaxRange(run);
    (void)[text attributesAtIndex:start effectiveRange:&run];
    run = NSMakeRange(start, NSMaxRange(run) - start);
    writer.append(std::u16string_view(characters).substr(run.location, run.length),
                  attributesAt(text, start));
  }
  return stringFromUTF16(writer.finish());
}

}  // namespace

NSString *pidginRTF(NSAttributedString *text) {
  if (text == nil) {
    return @"";
  }
  return [text respondsToSelector:@selector(asPidginRTF)] ? [text asPidginRTF]
                                                          : convertedHere(text);
}

}  // namespace korvo::adapter
