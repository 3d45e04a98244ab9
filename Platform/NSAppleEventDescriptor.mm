#include "Descriptor.h"
#include "SharedBytesData.h"

#import <ApplicationServices/ApplicationServices.h>

using platform::EventRecord;

namespace {

// A lack of memory is told by the exception that Cocoa has for it: what is there must not pass for
// absent.
bool succeeded(OSErr status) {
  if (status == memFullErr) {
    [NSException raise:NSMallocException format:@"no memory for an Apple Event"];
  }
  return status == noErr;
}

}  // namespace

@implementation NSAppleEventDescriptor

+ (NSAppleEventDescriptor *)nullDescriptor {
  const AEDesc null = {typeNull, nullptr};
  return [[[self alloc] initWithAEDescNoCopy:&null] autorelease];
}

+ (NSAppleEventDescriptor *)descriptorWithDescriptorType:(DescType)descriptorType
                                                   bytes:(const void *)bytes
                                                  length:(NSUInteger)byteCount {
  AEDesc descriptor;
  if (!succeeded(AECreateDesc(descriptorType, bytes, static_cast<Size>(byteCount), &descriptor))) {
    return nil;
  }
  return [[[self alloc] initWithAEDescNoCopy:&descriptor] autorelease];
}

+ (NSAppleEventDescriptor *)descriptorWithDescriptorType:(DescType)descriptorType
                                                    data:(NSData *)data {
  return [self descriptorWithDescriptorType:descriptorType bytes:[data bytes] length:[data length]];
}

+ (NSAppleEventDescriptor *)descriptorWithInt32:(SInt32)signedInt {
  return [self descriptorWithDescriptorType:typeSInt32 bytes:&signedInt length:sizeof signedInt];
}

+ (NSAppleEventDescriptor *)appleEventWithEventClass:(AEEventClass)eventClass
                                             eventID:(AEEventID)eventID
                                    targetDescriptor:(NSAppleEventDescriptor *)targetDescriptor
                                            returnID:(AEReturnID)returnID
                                       transactionID:(AETransactionID)transactionID {
  AppleEvent event;
  if (AECreateAppleEvent(eventClass, eventID, [targetDescriptor aeDesc], returnID, transactionID,
                         &event) != noErr) {
    return nil;
  }
  return [[[self alloc] initWithAEDescNoCopy:&event] autorelease];
}

- (instancetype)initWithAEDescNoCopy:(const AEDesc *)descriptor {
  self = [super init];
  if (self != nil) {
    _descriptor = *descriptor;
  }
  return self;
}

- (instancetype)init {
  self = [super init];
  if (self != nil) {
    AEInitializeDesc(&_descriptor);
  }
  return self;
}

- (void)dealloc {
  AEDisposeDesc(&_descriptor);
  [super dealloc];
}

- (const AEDesc *)aeDesc {
  return &_descriptor;
}

- (DescType)descriptorType {
  return _descriptor.descriptorType;
}

- (NSData *)data {
  if (_descriptor.dataHandle == nullptr || platform::eventRecord(&_descriptor) != nullptr) {
    return nil;
  }
  return platform::dataSharing(platform::descriptorData(&_descriptor));
}

- (AEEventClass)eventClass {
  const EventRecord *event = platform::eventRecord(&_descriptor);
  return event == nullptr ? 0 : event->eventClass;
}

- (AEEventID)eventID {
  const EventRecord *event = platform::eventRecord(&_descriptor);
  return event == nullptr ? 0 : event->eventID;
}

- (NSAppleEventDescriptor *)paramDescriptorForKeyword:(AEKeyword)keyword {
  AEDesc parameter;
  if (!succeeded(AEGetParamDesc(&_descriptor, keyword, typeWildCard, &parameter))) {
    return nil;
  }
  return [[[NSAppleEventDescriptor alloc] initWithAEDescNoCopy:&parameter] autorelease];
}

- (NSAppleEventDescriptor *)descriptorForKeyword:(AEKeyword)keyword {
  return [self paramDescriptorForKeyword:keyword];
}

- (void)setParamDescriptor:(NSAppleEventDescriptor *)descriptor forKeyword:(AEKeyword)keyword {
  succeeded(AEPutParamDesc(&_descriptor, keyword, [descriptor aeDesc]));
}

- (void)setDescriptor:(NSAppleEventDescriptor *)descriptor forKeyword:(AEKeyword)keyword {
  [self setParamDescriptor:descriptor forKeyword:keyword];
}

- (void)removeParamDescriptorWithKeyword:(AEKeyword)keyword {
  AEDeleteParam(&_descriptor, keyword);
}

@end
