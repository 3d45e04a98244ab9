// Strings of Cocoa and of C++, for tests.
#pragma once

#include <Formats/Unicode.h>

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace plugin_test {

inline NSString *ns(std::string_view text) {
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}

// UTF-8, whatever is in the text: Cocoa's own conversion stops at a NUL and refuses half a
// surrogate pair.
inline std::string str(NSString *text) {
  if (text == nil) {
    return "(nil)";
  }
  std::u16string units([text length], u'\0');
  [text getCharacters:reinterpret_cast<unichar *>(units.data()) range:NSMakeRange(0, units.size())];
  return formats::encodeUTF8(units);
}

// The elements of the braces, as an NSArray.
inline NSArray *array(std::initializer_list<id> elements) {
  return [NSArray arrayWithObjects:elements.begin() count:elements.size()];
}

}  // namespace plugin_test
