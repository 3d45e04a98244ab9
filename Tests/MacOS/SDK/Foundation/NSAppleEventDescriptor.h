#pragma once

#import <CoreServices/CoreServices.h>
#import <Foundation/NSData.h>
#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSAppleEventDescriptor : NSObject <NSCopying>
+ (NSAppleEventDescriptor *)nullDescriptor;
+ (NSAppleEventDescriptor *)descriptorWithInt32:(SInt32)signedInt;
+ (NSAppleEventDescriptor *)descriptorWithString:(NSString *)string;
+ (nullable NSAppleEventDescriptor *)descriptorWithDescriptorType:(DescType)descriptorType
                                                            bytes:(nullable const void *)bytes
                                                           length:(NSUInteger)byteCount;
+ (nullable NSAppleEventDescriptor *)descriptorWithDescriptorType:(DescType)descriptorType
                                                             data:(nullable NSData *)data;
+ (NSAppleEventDescriptor *)appleEventWithEventClass:(AEEventClass)eventClass
                                             eventID:(AEEventID)eventID
                                    targetDescriptor:
                                        (nullable NSAppleEventDescriptor *)targetDescriptor
                                            returnID:(AEReturnID)returnID
                                       transactionID:(AETransactionID)transactionID;
@property(nullable, readonly) const AEDesc *aeDesc;
@property(readonly) DescType descriptorType;
@property(readonly, copy) NSData *data;
@property(readonly) SInt32 int32Value;
@property(nullable, readonly, copy) NSString *stringValue;
@property(readonly) AEEventClass eventClass;
@property(readonly) AEEventID eventID;
- (void)setParamDescriptor:(NSAppleEventDescriptor *)descriptor forKeyword:(AEKeyword)keyword;
- (nullable NSAppleEventDescriptor *)paramDescriptorForKeyword:(AEKeyword)keyword;
- (void)removeParamDescriptorWithKeyword:(AEKeyword)keyword;
- (void)setDescriptor:(NSAppleEventDescriptor *)descriptor forKeyword:(AEKeyword)keyword;
- (nullable NSAppleEventDescriptor *)descriptorForKeyword:(AEKeyword)keyword;
@end

NS_ASSUME_NONNULL_END
