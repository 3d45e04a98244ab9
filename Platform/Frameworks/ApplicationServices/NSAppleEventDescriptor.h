// Cocoa's view of a descriptor or an Apple Event.
//
// GNUstep has a class of this name of its own, empty in some releases; two classes of one name
// cannot live in one process, so this one goes by another name at run time.
#pragma once

#include <ApplicationServices/AEDataModel.h>
#import <Foundation/Foundation.h>

#define NSAppleEventDescriptor KorvoAppleEventDescriptor

@interface NSAppleEventDescriptor : NSObject {
 @private
  AEDesc _descriptor;
}

// The descriptor without data, of typeNull. What a handler gets as its reply event when the
// sender wants none: what is put into it is dropped.
+ (NSAppleEventDescriptor *)nullDescriptor;
// nil when memory is short.
+ (NSAppleEventDescriptor *)descriptorWithDescriptorType:(DescType)descriptorType
                                                   bytes:(const void *)bytes
                                                  length:(NSUInteger)byteCount;
// nil when memory is short. Nil data counts as empty data.
+ (NSAppleEventDescriptor *)descriptorWithDescriptorType:(DescType)descriptorType
                                                    data:(NSData *)data;
// Of typeSInt32. nil when memory is short.
+ (NSAppleEventDescriptor *)descriptorWithInt32:(SInt32)signedInt;
// An event without parameters; the target may be nil.
+ (NSAppleEventDescriptor *)appleEventWithEventClass:(AEEventClass)eventClass
                                             eventID:(AEEventID)eventID
                                    targetDescriptor:(NSAppleEventDescriptor *)targetDescriptor
                                            returnID:(AEReturnID)returnID
                                       transactionID:(AETransactionID)transactionID;

// Takes the descriptor over: it is disposed of with this object, also when this returns nil.
- (instancetype)initWithAEDescNoCopy:(const AEDesc *)descriptor;
// Borrowed; valid as long as this object.
- (const AEDesc *)aeDesc;

- (DescType)descriptorType;
// The bytes, shared and not copied; nil for an event and for the null descriptor.
- (NSData *)data;

// 0 when this is no event.
- (AEEventClass)eventClass;
// 0 when this is no event.
- (AEEventID)eventID;

// nil when there is no such parameter, and when this is no event.
- (NSAppleEventDescriptor *)paramDescriptorForKeyword:(AEKeyword)keyword;
- (NSAppleEventDescriptor *)descriptorForKeyword:(AEKeyword)keyword;

// Puts the parameter in place of what was under the keyword. Does nothing when this is no event.
- (void)setParamDescriptor:(NSAppleEventDescriptor *)descriptor forKeyword:(AEKeyword)keyword;
- (void)setDescriptor:(NSAppleEventDescriptor *)descriptor forKeyword:(AEKeyword)keyword;
- (void)removeParamDescriptorWithKeyword:(AEKeyword)keyword;

@end
