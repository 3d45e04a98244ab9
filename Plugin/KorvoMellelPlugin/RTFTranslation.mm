#import "RTFTranslation.h"

#import "TextBridge.h"

#import <HostContract/HostContract.h>

#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>

namespace {

formats::ControlCharacters controlCharacters(BOOL escaped) {
  return escaped ? formats::ControlCharacters::escaped : formats::ControlCharacters::raw;
}

}  // namespace

@implementation NSAttributedString (RTFTranslation)

+ (NSAttributedString *)attributedStringFromRTF:(NSString *)rtf
                                     attributes:(NSDictionary *)attributes {
  const std::u16string text =
      formats::textOfPidginRTF(codeUnits(rtf), [](std::u16string_view rest) {
        NSLog(@"NSAttributedString.attributedStringFromRTF: Unknown control character in %@",
              stringWithCodeUnits(rest));
      });
  return [[[NSAttributedString alloc] initWithString:stringWithCodeUnits(text)
                                          attributes:attributes] autorelease];
}

- (NSString *)asPidginRTF {
  const std::u16string text = codeUnits([self string]);
  const std::u16string_view view = text;
  formats::PidginRTFWriter writer(text.size());
  for (std::size_t index = 0; index < view.size(); ++index) {
    formats::PidginAttributes attributes;
    attributes.bold = [self isBoldAtIndex:index] == YES;
    attributes.italic = [self isItalicizedAtIndex:index] == YES;
    attributes.underline = [self isUnderlinedAtIndex:index] == YES;
    attributes.superscript = [self isSuperscriptAtIndex:index] == YES;
    attributes.subscript = [self isSubscriptAtIndex:index] == YES;
    writer.append(view.substr(index, 1), attributes);
  }
  return stringWithCodeUnits(writer.finish());
}

@end

@implementation NSString (RTFTranslation)

- (NSString *)asPidginRTFEscapingControlSequences:(BOOL)escapeControlSequences {
  return stringWithCodeUnits(
      formats::pidginRTF(codeUnits(self), controlCharacters(escapeControlSequences)));
}

- (NSString *)firstCharacterEscapedIfNeededIncludingControlCodes:(BOOL)escapeControlCodes {
  if ([self length] == 0) {
    return @"";
  }
  const char16_t first = [self characterAtIndex:0];
  const std::u16string escaped =
      formats::pidginRTF({&first, 1}, controlCharacters(escapeControlCodes));
  return escaped.size() == 1 ? self : stringWithCodeUnits(escaped);
}

@end
