// Pidgin RTF for everyone in the host process: plain text with bold, italic, underline, superscript
// and subscript, and nothing else.
#pragma once

#import <Cocoa/Cocoa.h>

@interface NSAttributedString (RTFTranslation)

// The text that pidgin RTF holds, every character with the given attributes (nil for none).
// Formatting is dropped, and so are the escapes that asPidginRTF writes: this is no inverse of it.
+ (NSAttributedString *)attributedStringFromRTF:(NSString *)rtf
                                     attributes:(NSDictionary *)attributes;

// The receiver as pidgin RTF. Asks the host's predicates (isBoldAtIndex: and its four companions)
// about every UTF-16 code unit.
- (NSString *)asPidginRTF;

@end

@interface NSString (RTFTranslation)

// The receiver with everything above ASCII escaped, and with control characters (the apostrophe,
// braces, the backslash and line feeds) escaped too where asked for.
- (NSString *)asPidginRTFEscapingControlSequences:(BOOL)escapeControlSequences;

// The same for the first UTF-16 code unit alone. Meant for strings of one: where that unit needs no
// escape, the whole receiver is returned.
- (NSString *)firstCharacterEscapedIfNeededIncludingControlCodes:(BOOL)escapeControlCodes;

@end
