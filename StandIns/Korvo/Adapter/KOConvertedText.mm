#import "KOConvertedText.h"

#import "PidginRTFText.h"

@implementation KOConvertedText

// Without a message to super: the initializers of the abstract class call each other.
- (id)initWithAttributedString:(NSAttributedString *)text {
  text_ = [text copy];
  return self;
}

- (id)initWithString:(NSString *)string attributes:(NSDictionary *)attributes {
  text_ = [[NSAttributedString alloc] initWithString:string attributes:attributes];
  return self;
}

- (void)dealloc {
  [text_ release];
  [pidginRTF_ release];
  [rtf_ release];
  [rtfAttributes_ release];
  [super dealloc];
}

- (NSString *)string {
  return [text_ string];
}

- (NSUInteger)length {
  return [text_ length];
}

- (NSDictionary *)attributesAtIndex:(NSUInteger)index effectiveRange:(NSRange *)range {
  return [text_ attributesAtIndex:index effectiveRange:range];
}

- (NSString *)pidginRTF {
  if (pidginRTF_ == nil) {
    pidginRTF_ = [korvo::adapter::pidginRTF(text_) copy];
  }
  return pidginRTF_;
}

- (NSData *)RTFFromRange:(NSRange)range documentAttributes:(NSDictionary *)attributes {
  if (!NSEqualRanges(range, NSMakeRange(0, [text_ length]))) {
    return [text_ RTFFromRange:range documentAttributes:attributes];
  }
  if (rtf_ == nil || !(attributes == rtfAttributes_ || [attributes isEqual:rtfAttributes_])) {
    [rtf_ release];
    rtf_ = [[text_ RTFFromRange:range documentAttributes:attributes] copy];
    [rtfAttributes_ release];
    // The values too: whoever asks may change theirs afterwards.
    rtfAttributes_ = attributes == nil
                         ? nil
                         : [[NSDictionary alloc] initWithDictionary:attributes copyItems:YES];
  }
  return [[rtf_ retain] autorelease];
}

@end
