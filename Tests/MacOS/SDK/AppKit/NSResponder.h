#pragma once

#import <Foundation/Foundation.h>

#define APPKIT_EXTERN FOUNDATION_EXPORT
#define IBOutlet __attribute__((iboutlet))
#define IBAction void) __attribute__((ibaction)

NS_ASSUME_NONNULL_BEGIN

@interface NSResponder : NSObject <NSCoding>
- (instancetype)init NS_DESIGNATED_INITIALIZER;
@property(nullable, assign) NSResponder *nextResponder;
@end

NS_ASSUME_NONNULL_END
