#include "FourCharacterCodes.h"

#include <Platform/AutoreleasePool.h>
#include <Tests/Support/RecordingCarrier.h>
#import <Tests/Support/Unspeakable.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace {

// What the handler does. No instance variable of it: GCC cannot encode its type for the runtime.
std::function<void(NSAppleEventDescriptor *event, NSAppleEventDescriptor *reply)> onEvent;

}  // namespace

@interface DispatchTestHandler : NSObject
- (void)handleEvent:(NSAppleEventDescriptor *)event withReplyEvent:(NSAppleEventDescriptor *)reply;
- (void)handleOtherwise:(NSAppleEventDescriptor *)event
         withReplyEvent:(NSAppleEventDescriptor *)reply;
@end

@implementation DispatchTestHandler
- (void)handleEvent:(NSAppleEventDescriptor *)event withReplyEvent:(NSAppleEventDescriptor *)reply {
  onEvent(event, reply);
}
- (void)handleOtherwise:(NSAppleEventDescriptor *)event
         withReplyEvent:(NSAppleEventDescriptor *)reply {
  (void)event;
  (void)reply;
}
@end

namespace {

using platform_test::code;

constexpr AEEventClass eventClass = code("clas");
constexpr AEEventID eventID = code("evnt");

class EventDispatch : public testing::Test {
 protected:
  EventDispatch() : handler_([[DispatchTestHandler alloc] init]) { install(eventID); }

  ~EventDispatch() override {
    for (const auto &installed : platform::installedEventHandlers()) {
      [[NSAppleEventManager sharedAppleEventManager]
          removeEventHandlerForEventClass:installed.eventClass
                               andEventID:installed.eventID];
    }
    [handler_ release];
    onEvent = nullptr;
  }

  void install(AEEventID identifier, SEL selector = @selector(handleEvent:withReplyEvent:)) {
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:handler_
                                                       andSelector:selector
                                                     forEventClass:eventClass
                                                        andEventID:identifier];
  }

  const platform::AutoreleasePool pool_;
  test_support::RecordingCarrier carrier_;
  DispatchTestHandler *handler_;
};

TEST_F(EventDispatch, HandlerGetsTheEventAndItsPayload) {
  std::string seen;
  onEvent = [&](NSAppleEventDescriptor *event, NSAppleEventDescriptor *) {
    EXPECT_EQ([event eventClass], eventClass);
    EXPECT_EQ([event eventID], eventID);
    NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
    seen.assign(static_cast<const char *>([data bytes]), [data length]);
  };
  EXPECT_EQ(carrier_.deliver(eventClass, eventID, "payload").status, noErr);
  EXPECT_EQ(seen, "payload");
}

TEST_F(EventDispatch, EventWithoutPayloadHasNoDirectObject) {
  bool called = false;
  onEvent = [&](NSAppleEventDescriptor *event, NSAppleEventDescriptor *) {
    called = true;
    EXPECT_EQ([event paramDescriptorForKeyword:keyDirectObject], nil);
  };
  EXPECT_EQ(carrier_.deliver(eventClass, eventID, std::nullopt).status, noErr);
  EXPECT_TRUE(called);
}

TEST_F(EventDispatch, WhatTheHandlerPutsIntoTheReplyGoesBack) {
  onEvent = [&](NSAppleEventDescriptor *, NSAppleEventDescriptor *reply) {
    NSData *answer = [NSData dataWithBytes:"an\0swer" length:7];
    [reply setDescriptor:[NSAppleEventDescriptor descriptorWithDescriptorType:typeChar data:answer]
              forKeyword:keyDirectObject];
  };
  const auto answer = carrier_.deliver(eventClass, eventID, "", true);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_EQ(answer.directObject(), std::string("an\0swer", 7));
}

TEST_F(EventDispatch, WithoutAWantedReplyTheHandlerGetsTheNullDescriptor) {
  DescType replyType = 0;
  onEvent = [&](NSAppleEventDescriptor *, NSAppleEventDescriptor *reply) {
    replyType = [reply descriptorType];
    [reply setDescriptor:[NSAppleEventDescriptor nullDescriptor] forKeyword:keyDirectObject];
  };
  EXPECT_TRUE(carrier_.deliver(eventClass, eventID, "").parameters.empty());
  EXPECT_EQ(replyType, DescType{typeNull});
}

TEST_F(EventDispatch, EventWithoutHandlerIsNotHandled) {
  EXPECT_EQ(carrier_.deliver(eventClass, code("none"), "").status, errAEEventNotHandled);
  EXPECT_EQ(carrier_.deliver(code("none"), eventID, "").status, errAEEventNotHandled);
}

TEST_F(EventDispatch, RemovedHandlerIsCalledNoMore) {
  onEvent = [](NSAppleEventDescriptor *, NSAppleEventDescriptor *) { FAIL(); };
  [[NSAppleEventManager sharedAppleEventManager] removeEventHandlerForEventClass:eventClass
                                                                      andEventID:eventID];
  EXPECT_EQ(carrier_.deliver(eventClass, eventID, "").status, errAEEventNotHandled);
}

TEST_F(EventDispatch, InstallingAgainReplacesAndMovesToTheEnd) {
  install(code("more"));
  install(eventID, @selector(handleOtherwise:withReplyEvent:));
  const auto installed = platform::installedEventHandlers();
  ASSERT_EQ(installed.size(), 2u);
  EXPECT_EQ(installed[0].eventID, code("more"));
  EXPECT_EQ(installed[1].eventID, eventID);
  EXPECT_EQ(installed[1].selector, "handleOtherwise:withReplyEvent:");
  EXPECT_EQ(installed[1].target, static_cast<void *>(handler_));
}

TEST_F(EventDispatch, HandlerMayRemoveItself) {
  onEvent = [](NSAppleEventDescriptor *event, NSAppleEventDescriptor *) {
    [[NSAppleEventManager sharedAppleEventManager]
        removeEventHandlerForEventClass:[event eventClass]
                             andEventID:[event eventID]];
  };
  EXPECT_EQ(carrier_.deliver(eventClass, eventID, "").status, noErr);
  EXPECT_TRUE(platform::installedEventHandlers().empty());
}

TEST_F(EventDispatch, ObjectiveCExceptionBecomesAStatusAndALine) {
  onEvent = [](NSAppleEventDescriptor *, NSAppleEventDescriptor *) {
    [NSException raise:@"OddException" format:@"the odd reason"];
  };
  testing::internal::CaptureStderr();
  const auto answer = carrier_.deliver(eventClass, eventID, "", true);
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_EQ(answer.status, errAEEventFailed);
  EXPECT_NE(log.find("'clas' 'evnt'"), std::string::npos) << log;
  EXPECT_NE(log.find("OddException: the odd reason"), std::string::npos) << log;
}

TEST_F(EventDispatch, ThrownObjectThatIsNoExceptionBecomesAStatusToo) {
  onEvent = [](NSAppleEventDescriptor *, NSAppleEventDescriptor *) { @throw @"a string"; };
  testing::internal::CaptureStderr();
  EXPECT_EQ(carrier_.deliver(eventClass, eventID, "").status, errAEEventFailed);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("a string"), std::string::npos);
}

TEST_F(EventDispatch, CppExceptionBecomesAStatusAndALine) {
  onEvent = [](NSAppleEventDescriptor *, NSAppleEventDescriptor *) {
    throw std::runtime_error("the other reason");
  };
  testing::internal::CaptureStderr();
  EXPECT_EQ(carrier_.deliver(eventClass, eventID, "").status, errAEEventFailed);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("the other reason"), std::string::npos);
}

TEST_F(EventDispatch, ExceptionsWhoseReasonIsNoTextBecomeAStatusAndALine) {
  const std::function<void()> throwers[] = {
      [] {
        const unichar loneSurrogate = 0xD800;
        [NSException raise:@"OddException"
                    format:@"%@", [NSString stringWithCharacters:&loneSurrogate length:1]];
      },
      [] { @throw [[[Unspeakable alloc] init] autorelease]; },
      [] { throw std::runtime_error("M\xFCller"); }};
  for (const auto &throwing : throwers) {
    onEvent = [&](NSAppleEventDescriptor *, NSAppleEventDescriptor *) { throwing(); };
    testing::internal::CaptureStderr();
    EXPECT_EQ(carrier_.deliver(eventClass, eventID, "").status, errAEEventFailed);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("'clas' 'evnt'"), std::string::npos) << log;
  }
}

TEST_F(EventDispatch, ThrownNumberBecomesAStatus) {
  onEvent = [](NSAppleEventDescriptor *, NSAppleEventDescriptor *) { throw 5; };
  EXPECT_EQ(carrier_.deliver(eventClass, eventID, "").status, errAEEventFailed);
}

}  // namespace
