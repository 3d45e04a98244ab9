#import "StringConversion.h"

#include <Formats/Unicode.h>

namespace korvo::adapter {

namespace {

constexpr char16_t byteOrderMark = 0xFEFF;
constexpr char16_t byteOrderMarkTurnedRound = 0xFFFE;

// Nil for lone surrogates in GNUstep; Cocoa makes a string of them. The plug-in has the like of its
// own: it shares with the host only Formats, which knows no Cocoa.
NSString *stringOrNil(std::u16string_view text) {
  // GNUstep drops a byte order mark, and turns round the bytes of all others behind one that is
  // turned round; Cocoa takes either for a character.
  if (text.starts_with(byteOrderMark) || text.starts_with(byteOrderMarkTurnedRound)) {
    return [stringOrNil(u' ' + std::u16string(text)) substringFromIndex:1];
  }
  // A message to a class by its name looks the name up, which takes as long as half of the string.
  static const Class stringClass = [NSString class];
  return [stringClass stringWithCharacters:reinterpret_cast<const unichar *>(text.data())
                                    length:text.size()];
}

}  // namespace

NSString *stringFromUTF8(std::string_view bytes) {
  // Decoded text has no lone surrogates.
  return stringOrNil(formats::decodeUTF8(bytes));
}

NSString *stringFromUTF16(std::u16string_view text) {
  NSString *string = stringOrNil(text);
  return string != nil ? string : stringFromUTF8(formats::encodeUTF8(text));
}

std::string utf8(NSString *string) { return formats::encodeUTF8(utf16(string)); }

std::u16string utf16(NSString *string) {
  std::u16string text([string length], u'\0');
  [string getCharacters:reinterpret_cast<unichar *>(text.data()) range:NSMakeRange(0, text.size())];
  return text;
}

}  // namespace korvo::adapter
