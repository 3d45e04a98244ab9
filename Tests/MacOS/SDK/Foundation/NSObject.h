#pragma once

#import <Foundation/NSObjCRuntime.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString, NSMethodSignature, NSInvocation;
typedef struct _NSZone NSZone;

@protocol NSObject
- (BOOL)isEqual:(id _Nullable)object;
@property(readonly) NSUInteger hash;
@property(readonly) Class _Nullable superclass;
- (Class)class;
- (instancetype)self;
- (id)performSelector:(SEL)aSelector;
- (id)performSelector:(SEL)aSelector withObject:(id _Nullable)object;
- (BOOL)isProxy;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)isMemberOfClass:(Class)aClass;
- (BOOL)conformsToProtocol:(Protocol *)aProtocol;
- (BOOL)respondsToSelector:(SEL)aSelector;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
- (NSUInteger)retainCount;
@property(readonly, copy) NSString *description;
@end

@protocol NSCopying
- (id)copyWithZone:(NSZone *_Nullable)zone;
@end

@protocol NSMutableCopying
- (id)mutableCopyWithZone:(NSZone *_Nullable)zone;
@end

@protocol NSCoding
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
  Class isa;
}
+ (void)load;
+ (void)initialize;
- (instancetype)init;
+ (instancetype)new;
+ (instancetype)alloc;
- (void)dealloc;
- (id)copy;
- (id)mutableCopy;
+ (BOOL)instancesRespondToSelector:(SEL)aSelector;
+ (BOOL)conformsToProtocol:(Protocol *)protocol;
- (IMP)methodForSelector:(SEL)aSelector;
+ (IMP)instanceMethodForSelector:(SEL)aSelector;
+ (NSString *)description;
+ (Class _Nullable)superclass;
+ (Class)class;
- (void)performSelector:(SEL)aSelector
             withObject:(id _Nullable)argument
             afterDelay:(NSTimeInterval)delay;
@end

NS_ASSUME_NONNULL_END
