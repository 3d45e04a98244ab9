#pragma once

#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

@class NSDictionary;
typedef NSString *NSExceptionName;

FOUNDATION_EXPORT NSExceptionName const NSGenericException;
FOUNDATION_EXPORT NSExceptionName const NSRangeException;
FOUNDATION_EXPORT NSExceptionName const NSInvalidArgumentException;
FOUNDATION_EXPORT NSExceptionName const NSInternalInconsistencyException;
FOUNDATION_EXPORT NSExceptionName const NSMallocException;

@interface NSException : NSObject <NSCopying>
- (instancetype)initWithName:(NSExceptionName)aName
                      reason:(nullable NSString *)aReason
                    userInfo:(nullable NSDictionary *)aUserInfo NS_DESIGNATED_INITIALIZER;
+ (NSException *)exceptionWithName:(NSExceptionName)name
                            reason:(nullable NSString *)reason
                          userInfo:(nullable NSDictionary *)userInfo;
@property(readonly, copy) NSExceptionName name;
@property(nullable, readonly, copy) NSString *reason;
- (void)raise;
+ (void)raise:(NSExceptionName)name format:(NSString *)format, ... NS_FORMAT_FUNCTION(2, 3);
@end

@interface NSAssertionHandler : NSObject
@property(class, readonly, strong) NSAssertionHandler *currentHandler;
- (void)handleFailureInMethod:(SEL)selector
                       object:(id)object
                         file:(NSString *)fileName
                   lineNumber:(NSInteger)line
                  description:(nullable NSString *)format, ... NS_FORMAT_FUNCTION(5, 6);
@end

NS_ASSUME_NONNULL_END
