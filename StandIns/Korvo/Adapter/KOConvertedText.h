// Attributed text that a style has made. It never changes, so what it was converted to is
// remembered: a document of many citations holds the same texts in one scan as in the next, and
// each is asked for twice a scan.
#pragma once

#import <Cocoa/Cocoa.h>

@interface KOConvertedText : NSAttributedString {
  NSAttributedString *text_;
  NSString *pidginRTF_;
  NSData *rtf_;
  NSDictionary *rtfAttributes_;
}
- (id)initWithAttributedString:(NSAttributedString *)text;

// As of korvo::adapter::pidginRTF().
- (NSString *)pidginRTF;

// Of the whole, it is made anew only for other attributes than the last time.
- (NSData *)RTFFromRange:(NSRange)range documentAttributes:(NSDictionary *)attributes;
@end
