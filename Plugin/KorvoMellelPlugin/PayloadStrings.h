// Arrays whose strings are made when they are asked for, anew each time.
//
// A document may hold a million citations. As strings they would take several times the memory of
// the payload that they came in, all at once, while the plug-in looks at one after the other; and
// the records of a citation are longer still.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>
#include <vector>

// Both can be read without a string for each text: only the host wants strings.
@protocol KorvoMellelTexts
// The code units of the string at this index.
- (std::u16string)codeUnitsAtIndex:(NSUInteger)index;
@end

// Reads the texts of an array of strings, one after the other: without making strings where the
// array is one of these.
class TextReader {
 public:
  // Of no array: to be replaced.
  TextReader() = default;
  // Borrows the array.
  explicit TextReader(NSArray *array);

  // Valid until the next call.
  std::u16string_view operator()(NSUInteger index);

 private:
  NSArray *array_ = nil;
  id<KorvoMellelTexts> texts_ = nil;  // the array, or nil where it has strings only
  std::u16string units_ = {};
};

// An autoreleased array of UTF-8 strings that lie in the payload, which it keeps.
NSArray *stringsInPayload(NSData *payload, std::vector<std::string_view> strings);

// An autoreleased array of the XML texts of these citations, which it keeps.
NSArray *recordMarkupsOfCitations(NSArray *citations);
