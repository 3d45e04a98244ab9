#pragma once

#import <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString *NSAttributedStringDocumentType;
typedef NSString *NSAttributedStringDocumentAttributeKey;

APPKIT_EXTERN NSAttributedStringDocumentType const NSRTFTextDocumentType;

@interface NSAttributedString (NSAttributedStringDocumentFormats)
- (nullable NSData *)RTFFromRange:(NSRange)range
               documentAttributes:(NSDictionary<NSAttributedStringDocumentAttributeKey, id> *)dict;
@end

NS_ASSUME_NONNULL_END
