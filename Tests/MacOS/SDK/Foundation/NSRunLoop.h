#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

typedef double NSTimeInterval;

@interface NSDate : NSObject <NSCopying>
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)secs;
@end

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop *currentRunLoop;
- (void)runUntilDate:(NSDate *)limitDate;
@end

NS_ASSUME_NONNULL_END
