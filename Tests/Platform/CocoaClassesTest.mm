#include "FourCharacterCodes.h"

#include <Platform/AutoreleasePool.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

namespace {

using platform::AutoreleasePool;
using platform_test::code;

NSAppleEventDescriptor *text(const char *bytes) {
  return [NSAppleEventDescriptor descriptorWithDescriptorType:typeChar
                                                        bytes:bytes
                                                       length:strlen(bytes)];
}

NSAppleEventDescriptor *newEvent() {
  return [NSAppleEventDescriptor appleEventWithEventClass:code("clas")
                                                  eventID:code("evnt")
                                         targetDescriptor:nil
                                                 returnID:kAutoGenerateReturnID
                                            transactionID:kAnyTransactionID];
}

TEST(NSAppleEventDescriptor, IsNotTheClassThatGNUstepHas) {
  EXPECT_STREQ(class_getName([NSAppleEventDescriptor class]), "KorvoAppleEventDescriptor");
  EXPECT_STREQ(class_getName([NSAppleEventManager class]), "KorvoAppleEventManager");
}

TEST(NSAppleEventDescriptor, KeepsTypeAndBytes) {
  const AutoreleasePool pool;
  NSData *bytes = [NSData dataWithBytes:"a\0b" length:3];
  NSAppleEventDescriptor *descriptor =
      [NSAppleEventDescriptor descriptorWithDescriptorType:code("BUFF") data:bytes];
  EXPECT_EQ([descriptor descriptorType], code("BUFF"));
  EXPECT_TRUE([[descriptor data] isEqual:bytes]);
}

TEST(NSAppleEventDescriptor, NumberIsInThisMachinesOrder) {
  const AutoreleasePool pool;
  const SInt32 number = errAEEventFailed;
  NSAppleEventDescriptor *descriptor = [NSAppleEventDescriptor descriptorWithInt32:number];
  EXPECT_EQ([descriptor descriptorType], code("long"));
  EXPECT_TRUE([[descriptor data] isEqual:[NSData dataWithBytes:&number length:4]]);
}

TEST(NSAppleEventDescriptor, DataOutlivesItsDescriptor) {
  const AutoreleasePool pool;
  NSData *data = nil;
  {
    const AutoreleasePool inner;
    data = [[text("kept") data] retain];
  }
  EXPECT_TRUE([data isEqual:[NSData dataWithBytes:"kept" length:4]]);
  [data release];
}

TEST(NSAppleEventDescriptor, DataBehavesAsAnyData) {
  const AutoreleasePool pool;
  NSData *data = [text("abcdef") data];
  EXPECT_TRUE([[data subdataWithRange:NSMakeRange(2, 2)] isEqual:[NSData dataWithBytes:"cd"
                                                                                length:2]]);
  NSMutableData *changeable = [[data mutableCopy] autorelease];
  [changeable appendBytes:"g" length:1];
  EXPECT_EQ([changeable length], 7u);
  NSData *copy = [[data copy] autorelease];
  EXPECT_TRUE([copy isEqual:data]);
  NSString *string = [[[NSString alloc] initWithData:data
                                            encoding:NSUTF8StringEncoding] autorelease];
  EXPECT_TRUE([string isEqualToString:@"abcdef"]);
  EXPECT_ANY_THROW([data subdataWithRange:NSMakeRange(5, 2)]);
}

TEST(NSAppleEventDescriptor, EmptyDataIsThereAndEmpty) {
  const AutoreleasePool pool;
  NSData *data = [text("") data];
  ASSERT_NE(data, nil);
  EXPECT_EQ([data length], 0u);
}

TEST(NSAppleEventDescriptor, NullDescriptorHasNoDataAndDropsParameters) {
  const AutoreleasePool pool;
  NSAppleEventDescriptor *null = [NSAppleEventDescriptor nullDescriptor];
  EXPECT_EQ([null descriptorType], DescType { typeNull });
  EXPECT_EQ([null data], nil);
  [null setDescriptor:text("a") forKeyword:keyDirectObject];
  EXPECT_EQ([null paramDescriptorForKeyword:keyDirectObject], nil);
  EXPECT_EQ([null eventClass], 0u);
}

TEST(NSAppleEventDescriptor, EventHoldsParameters) {
  const AutoreleasePool pool;
  NSAppleEventDescriptor *event = newEvent();
  EXPECT_EQ([event descriptorType], DescType { typeAppleEvent });
  EXPECT_EQ([event eventClass], code("clas"));
  EXPECT_EQ([event eventID], code("evnt"));
  EXPECT_EQ([event data], nil);
  EXPECT_EQ([event paramDescriptorForKeyword:keyDirectObject], nil);
  [event setParamDescriptor:text("one") forKeyword:keyDirectObject];
  [event setDescriptor:text("two") forKeyword:code("more")];
  [event setDescriptor:nil forKeyword:code("nil ")];
  EXPECT_TRUE([[[event descriptorForKeyword:keyDirectObject] data] isEqual:[text("one") data]]);
  EXPECT_TRUE([[[event paramDescriptorForKeyword:code("more")] data] isEqual:[text("two") data]]);
  EXPECT_EQ([event descriptorForKeyword:code("nil ")], nil);
  [event removeParamDescriptorWithKeyword:keyDirectObject];
  EXPECT_EQ([event descriptorForKeyword:keyDirectObject], nil);
}

TEST(NSAppleEventDescriptor, CanBeMadeOfADescriptorThatItThenOwns) {
  const AutoreleasePool pool;
  AEDesc plain;
  ASSERT_EQ(AECreateDesc(typeChar, "owned", 5, &plain), noErr);
  NSAppleEventDescriptor *descriptor =
      [[[NSAppleEventDescriptor alloc] initWithAEDescNoCopy:&plain] autorelease];
  EXPECT_TRUE([[descriptor data] isEqual:[text("owned") data]]);
  EXPECT_EQ([descriptor aeDesc]->dataHandle, plain.dataHandle);
}

}  // namespace
