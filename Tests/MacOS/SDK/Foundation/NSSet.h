#pragma once

#import <Foundation/NSArray.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSSet<__covariant ObjectType> : NSObject <NSCopying, NSMutableCopying>
@property(readonly) NSUInteger count;
- (NSEnumerator<ObjectType> *)objectEnumerator;
- (nullable ObjectType)anyObject;
+ (instancetype)set;
+ (instancetype)setWithObject:(ObjectType)object;
@end

NS_ASSUME_NONNULL_END
