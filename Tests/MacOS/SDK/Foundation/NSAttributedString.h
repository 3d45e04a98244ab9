#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString *NSAttributedStringKey;

@interface NSAttributedString : NSObject <NSCopying, NSMutableCopying>
@property(readonly, copy) NSString *string;
@end

@interface NSAttributedString (NSExtendedAttributedString)
@property(readonly) NSUInteger length;
- (instancetype)initWithString:(NSString *)str;
- (instancetype)initWithString:(NSString *)str
                    attributes:(nullable NSDictionary<NSAttributedStringKey, id> *)attrs;
- (instancetype)initWithAttributedString:(NSAttributedString *)attrStr;
@end

@interface NSMutableAttributedString : NSAttributedString
@end

@interface NSMutableAttributedString (NSExtendedMutableAttributedString)
- (void)appendAttributedString:(NSAttributedString *)attrString;
@end

NS_ASSUME_NONNULL_END
