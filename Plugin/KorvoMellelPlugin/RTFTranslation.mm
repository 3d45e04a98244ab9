// The writer sends five messages for every code unit; all else it does there has to be small beside
// them. So every method is looked up once, not at each message, and what a text consists of is read
// in place.

#import "RTFTranslation.h"

#import "TextBridge.h"

#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>
#import <HostContract/HostContract.h>

#include <bit>

namespace {

formats::ControlCharacters controlCharacters(BOOL escaped) {
  return escaped ? formats::ControlCharacters::escaped : formats::ControlCharacters::raw;
}

// A method of one receiver, looked up once.
template <typename Result, typename... Arguments>
class FoundMethod {
 public:
  FoundMethod(id receiver, SEL selector)
      : receiver_(receiver),
        selector_(selector),
        function_(std::bit_cast<Function>([receiver methodForSelector:selector])) {}

  Result operator()(Arguments... arguments) const {
    return function_(receiver_, selector_, arguments...);
  }

 private:
  using Function = Result (*)(id, SEL, Arguments...);

  id receiver_;
  SEL selector_;
  Function function_;
};

class Predicates {
 public:
  explicit Predicates(NSAttributedString *text)
      : isBold_(text, @selector(isBoldAtIndex:)),
        isItalicized_(text, @selector(isItalicizedAtIndex:)),
        isUnderlined_(text, @selector(isUnderlinedAtIndex:)),
        isSuperscript_(text, @selector(isSuperscriptAtIndex:)),
        isSubscript_(text, @selector(isSubscriptAtIndex:)) {}

  // Asks in this order, which hosts see.
  formats::PidginAttributes at(NSUInteger index) const {
    formats::PidginAttributes attributes;
    attributes.bold = isBold_(index) == YES;
    attributes.italic = isItalicized_(index) == YES;
    attributes.underline = isUnderlined_(index) == YES;
    attributes.superscript = isSuperscript_(index) == YES;
    attributes.subscript = isSubscript_(index) == YES;
    return attributes;
  }

 private:
  using Predicate = FoundMethod<BOOL, NSUInteger>;

  Predicate isBold_;
  Predicate isItalicized_;
  Predicate isUnderlined_;
  Predicate isSuperscript_;
  Predicate isSubscript_;
};

// The text of an attributed string as it is now, however it changes while it is read.
class Characters {
 public:
  explicit Characters(NSAttributedString *text)
      : text_(text),
        lengthNow_(text, @selector(length)),
        fetchedLength_(lengthNow_()),
        unitAt_([text string], @selector(characterAtIndex:)) {}

  NSUInteger length() const { return lengthNow_(); }

  char16_t at(NSUInteger index) {
    // Some classes answer -string with a copy, which a change of the text leaves behind.
    if (const NSUInteger length = lengthNow_(); length != fetchedLength_) {
      fetchedLength_ = length;
      unitAt_ = { [text_ string], @selector(characterAtIndex:) };
    }
    return unitAt_(index);
  }

 private:
  NSAttributedString *text_;
  FoundMethod<NSUInteger> lengthNow_;
  NSUInteger fetchedLength_;
  FoundMethod<unichar, NSUInteger> unitAt_;
};

}  // namespace

@implementation NSAttributedString (RTFTranslation)

+ (NSAttributedString *)attributedStringFromRTF:(NSString *)rtf
                                     attributes:(NSDictionary *)attributes {
  const std::u16string text =
      formats::textOfPidginRTF(codeUnits(rtf), [](std::u16string_view rest) {
        NSLog(@"NSAttributedString.attributedStringFromRTF: Unknown control character in %@",
              stringWithExactCodeUnits(rest));
      });
  return [[[NSAttributedString alloc] initWithString:stringWithExactCodeUnits(text)
                                          attributes:attributes] autorelease];
}

- (NSString *)asPidginRTF {
  Characters characters(self);
  const Predicates predicates(self);
  formats::PidginRTFWriter writer(characters.length());
  for (NSUInteger index = 0; index < characters.length(); ++index) {
    const formats::PidginAttributes attributes = predicates.at(index);
    // A predicate is the host's code, and could have cut the text.
    if (index < characters.length()) {
      writer.append(characters.at(index), attributes);
    }
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
