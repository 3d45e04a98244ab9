// Arrays whose strings are made when they are asked for, anew each time.
//
// A document may hold a million citations. As strings they would take several times the memory of
// the payload that they came in, all at once, while the plug-in looks at one after the other; and
// the records of a citation are longer still.
#pragma once

#import <Foundation/Foundation.h>

#include <string_view>
#include <vector>

// An autoreleased array of UTF-8 strings that lie in the payload, which it keeps.
NSArray *stringsInPayload(NSData *payload, std::vector<std::string_view> strings);

// An autoreleased array of the XML texts of these citations, which it keeps.
NSArray *recordMarkupsOfCitations(NSArray *citations);
