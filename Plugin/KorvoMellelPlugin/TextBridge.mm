#import "TextBridge.h"

#include <Formats/Unicode.h>

std::u16string codeUnits(NSString *string) {
  std::u16string text([string length], u'\0');
  [string getCharacters:reinterpret_cast<unichar *>(text.data())
                  range:NSMakeRange(0, text.size())];
  return text;
}

NSString *stringWithCodeUnits(std::u16string_view text) {
  NSString *string =
      [NSString stringWithCharacters:reinterpret_cast<const unichar *>(text.data())
                              length:text.size()];
  return string != nil ? string : stringWithUTF8(formats::encodeUTF8(text));
}

NSString *stringWithUTF8(std::string_view bytes) {
  return stringWithCodeUnits(formats::decodeUTF8(bytes));
}

std::string_view bytesOf(NSData *data) {
  return {static_cast<const char *>([data bytes]), [data length]};
}
