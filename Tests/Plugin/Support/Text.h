// Strings of Cocoa and of C++, for tests.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace plugin_test {

inline NSString *ns(std::string_view text) {
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}

inline std::string str(NSString *text) {
  return text == nil ? "(nil)" : std::string([text UTF8String]);
}

// The elements of the braces, as an NSArray.
inline NSArray *array(std::initializer_list<id> elements) {
  return [NSArray arrayWithObjects:elements.begin() count:elements.size()];
}

}  // namespace plugin_test
