#import "TextBridge.h"

#include <Formats/Unicode.h>

#include <algorithm>

std::u16string codeUnits(NSString *string) {
  std::u16string text([string length], u'\0');
  [string getCharacters:reinterpret_cast<unichar *>(text.data()) range:NSMakeRange(0, text.size())];
  return text;
}

std::u16string_view CodeUnitReader::operator()(NSString *string) {
  const NSUInteger length = [string length];
  // What was there before is overwritten: only growth is filled.
  if (units_.size() < length) {
    units_.resize(length);
  }
  [string getCharacters:reinterpret_cast<unichar *>(units_.data()) range:NSMakeRange(0, length)];
  return {units_.data(), length};
}

namespace {

bool isSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }

constexpr char16_t byteOrderMark = 0xFEFF;
constexpr char16_t byteOrderMarkTurnedRound = 0xFFFE;

// Each message to a class by its name looks the name up, which takes as long as half of a string.
Class stringClass() {
  static const Class known = [NSString class];
  return known;
}

// Nil where the text is long or not plain. Of bytes GNUstep makes a string in two thirds of the
// time that it takes for code units, and nearly every text is short and plain.
template <typename Unit>
NSString *plainStringOrNil(std::basic_string_view<Unit> text) {
  char bytes[128];
  if (text.size() >= sizeof bytes || formats::copyPlainASCII(text, bytes) < text.size()) {
    return nil;
  }
  bytes[text.size()] = '\0';
  return [stringClass() stringWithUTF8String:bytes];
}

// Nil for lone surrogates in GNUstep. A host has the like of its own: it shares with the plug-in
// only Formats, which knows no Cocoa.
NSString *stringOrNil(std::u16string_view text) {
  if (NSString *plain = plainStringOrNil(text)) {
    return plain;
  }
  // Cocoa takes the first code unit as it is. GNUstep drops a byte order mark, and turns round the
  // bytes of all others behind one that is turned round: any text could come of that, or none.
  if (text.starts_with(byteOrderMark) || text.starts_with(byteOrderMarkTurnedRound)) {
    return [stringOrNil(u' ' + std::u16string(text)) substringFromIndex:1];
  }
  return [stringClass() stringWithCharacters:reinterpret_cast<const unichar *>(text.data())
                                      length:text.size()];
}

// GNUstep makes no string of code units with half a surrogate pair among them; but it formats one,
// and appends what has one. Two halves that are formatted one after the other are a pair again.
NSString *stringWithLoneSurrogates(std::u16string_view text) {
  NSMutableString *string = [NSMutableString stringWithCapacity:text.size()];
  while (!text.empty()) {
    const auto surrogate = std::ranges::find_if(text, isSurrogate);
    const auto length = static_cast<std::size_t>(surrogate - text.begin());
    [string appendString:stringOrNil(text.substr(0, length))];
    text.remove_prefix(length);
    if (!text.empty()) {
      [string appendFormat:@"%C", static_cast<unichar>(text.front())];
      text.remove_prefix(1);
    }
  }
  return [[string copy] autorelease];
}

}  // namespace

NSString *stringWithCodeUnits(std::u16string_view text) {
  NSString *string = stringOrNil(text);
  return string != nil ? string : stringOrNil(formats::decodeUTF8(formats::encodeUTF8(text)));
}

NSString *stringWithExactCodeUnits(std::u16string_view text) {
  NSString *string = stringOrNil(text);
  return string != nil ? string : stringWithLoneSurrogates(text);
}

NSString *stringWithUTF8(std::string_view bytes) {
  NSString *plain = plainStringOrNil(bytes);
  // Decoded text has no lone surrogates.
  return plain != nil ? plain : stringOrNil(formats::decodeUTF8(bytes));
}

std::string_view bytesOf(NSData *data) {
  return {static_cast<const char *>([data bytes]), [data length]};
}
