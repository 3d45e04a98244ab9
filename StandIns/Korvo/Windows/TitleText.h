// Titles with marks for looks in them, as CSL has them: <i>, <b>, <sup>, <sub>, <sc>, <span …>.
#pragma once

#import <Cocoa/Cocoa.h>

namespace korvo::windows {

// The text as it is meant: an NSString where it has no marks, else an NSAttributedString with the
// font and its italic and bold faces. What is no such mark stays.
// Autoreleased.
id titleText(NSString *marked, NSFont *font);

}  // namespace korvo::windows
