#import <SubstituteHostObjects/TextBridge.h>

#include <Formats/Unicode.h>

namespace host {

NSString *stringFromUTF8(std::string_view bytes) {
  return stringFromUTF16(formats::decodeUTF8(bytes));
}

NSString *stringFromUTF16(std::u16string_view text) {
  NSString *string =
      [NSString stringWithCharacters:reinterpret_cast<const unichar *>(text.data())
                              length:text.size()];
  // GNUstep makes no string of a lone surrogate; Cocoa does.
  return string != nil ? string : stringFromUTF16(formats::decodeUTF8(formats::encodeUTF8(text)));
}

std::string utf8(NSString *string) { return formats::encodeUTF8(utf16(string)); }

std::u16string utf16(NSString *string) {
  std::u16string text([string length], u'\0');
  [string getCharacters:reinterpret_cast<unichar *>(text.data())
                  range:NSMakeRange(0, text.size())];
  return text;
}

}  // namespace host
