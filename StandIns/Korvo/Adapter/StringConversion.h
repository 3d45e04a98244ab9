// Cocoa's strings and those of the standard library. One copy each, in bulk.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace korvo::adapter {

// Autoreleased. What is no text becomes U+FFFD.
NSString *stringFromUTF8(std::string_view bytes);
NSString *stringFromUTF16(std::u16string_view text);

// Empty for nil. In UTF-8 a lone surrogate becomes U+FFFD.
std::string utf8(NSString *string);
std::u16string utf16(NSString *string);

}  // namespace korvo::adapter
