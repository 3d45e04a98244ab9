#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSAutoreleasePool : NSObject
+ (void)addObject:(id)anObject;
- (void)drain;
@end

NS_ASSUME_NONNULL_END
