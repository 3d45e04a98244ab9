// Cocoa's strings and data, and the views that Formats works on. Each conversion is one copy in
// bulk.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

// The UTF-16 code units of the string; none for nil.
std::u16string codeUnits(NSString *string);

// The same for one string after the other, in memory that serves again: each view is valid until
// the next call.
class CodeUnitReader {
 public:
  std::u16string_view operator()(NSString *string);

 private:
  std::u16string units_;
};

// An autoreleased string of these code units; never nil. GNUstep refuses lone surrogates: where it
// does, they become U+FFFD.
NSString *stringWithCodeUnits(std::u16string_view text);

// The same with lone surrogates kept. Such a string has no UTF-8: it is for texts that go back
// to Cocoa only.
NSString *stringWithExactCodeUnits(std::u16string_view text);

// An autoreleased string of UTF-8 bytes; what is ill-formed becomes U+FFFD.
NSString *stringWithUTF8(std::string_view bytes);

// The bytes of the data, borrowed from it; none for nil.
std::string_view bytesOf(NSData *data);
