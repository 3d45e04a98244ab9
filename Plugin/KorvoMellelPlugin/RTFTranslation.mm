// The writer sends five messages for every code unit; all else it does there has to be small beside
// them. So every method is looked up once, not at each message, and what a text consists of is read
// in place.

#import "RTFTranslation.h"

#import "TextBridge.h"

#include <Formats/PidginRTFReader.h>
#include <Formats/PidginRTFWriter.h>
#import <HostContract/HostContract.h>

#import <objc/runtime.h>

#include <bit>
#include <optional>

namespace {

formats::ControlCharacters controlCharacters(BOOL escaped) {
  return escaped ? formats::ControlCharacters::escaped : formats::ControlCharacters::raw;
}

// A method of one receiver, looked up once.
template <typename Result, typename... Arguments>
class FoundMethod {
 public:
  FoundMethod() = default;
  FoundMethod(id receiver, SEL selector)
      : receiver_(receiver),
        selector_(selector),
        function_(std::bit_cast<Function>([receiver methodForSelector:selector])) {}

  Result operator()(Arguments... arguments) const {
    return function_(receiver_, selector_, arguments...);
  }

 private:
  using Function = Result (*)(id, SEL, Arguments...);

  id receiver_ = nil;
  SEL selector_ = nullptr;
  Function function_ = nullptr;
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

// The text of an attributed string, unit by unit as it is at that moment: a predicate is the host's
// code, and may change the text or put another string in its place, which ends the old one.
class Characters {
 public:
  explicit Characters(NSAttributedString *text)
      : length_(text, @selector(length)), string_(text, @selector(string)) {}

  NSUInteger length() const { return length_(); }

  // Nothing where the text has become too short.
  std::optional<char16_t> at(NSUInteger index) {
    NSString *string = string_();
    if (string == nil) {
      return std::nullopt;
    }
    // The class as well: a new string may lie where the old one was.
    if (string != known_ || object_getClass(string) != knownClass_) {
      getToKnow(string);
    }
    return index < lengthOfKnown_() ? std::optional<char16_t>(unitOfKnown_(index)) : std::nullopt;
  }

 private:
  void getToKnow(NSString *string) {
    known_ = string;
    knownClass_ = object_getClass(string);
    lengthOfKnown_ = { string, @selector(length) };
    unitOfKnown_ = { string, @selector(characterAtIndex:) };
  }

  FoundMethod<NSUInteger> length_;
  FoundMethod<NSString *> string_;
  // Only compared: it may be gone.
  NSString *known_ = nil;
  Class knownClass_ = Nil;
  FoundMethod<NSUInteger> lengthOfKnown_;
  FoundMethod<unichar, NSUInteger> unitOfKnown_;
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
    if (const std::optional<char16_t> unit = characters.at(index)) {
      writer.append(*unit, attributes);
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
