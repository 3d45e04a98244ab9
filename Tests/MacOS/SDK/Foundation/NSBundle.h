#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle *mainBundle;
+ (nullable instancetype)bundleWithPath:(NSString *)path;
+ (NSBundle *)bundleForClass:(Class)aClass;
- (BOOL)load;
@property(readonly, copy) NSString *bundlePath;
@property(nullable, readonly, copy) NSString *bundleIdentifier;
@property(nullable, readonly, copy) NSDictionary<NSString *, id> *infoDictionary;
@property(nullable, readonly) Class principalClass;
- (nullable NSString *)pathForResource:(nullable NSString *)name ofType:(nullable NSString *)ext;
- (NSString *)localizedStringForKey:(NSString *)key
                              value:(nullable NSString *)value
                              table:(nullable NSString *)tableName __attribute__((format_arg(1)));
- (nullable id)objectForInfoDictionaryKey:(NSString *)key;
@end

NS_ASSUME_NONNULL_END
