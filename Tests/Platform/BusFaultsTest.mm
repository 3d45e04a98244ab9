// Every call of the bus library fails in turn, while this process sends, is sent to, looks for
// others and comes and goes. Each failure ends in a status and in bounded time, nobody is left
// waiting, and the next event goes through.
#include "BusFixture.h"
#include "FailingBusCalls.h"

#include <Platform/AutoreleasePool.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <map>
#include <string>

using namespace platform_test;

namespace {

std::string received;

}  // namespace

@interface BusFaultsHandler : NSObject
@end

// Counts the calls of a timer.
@interface BusFaultsClock : NSObject {
 @public
  int _ticks;
}
@end

@implementation BusFaultsClock

- (void)tick:(NSTimer *)timer {
  (void)timer;
  ++_ticks;
}

@end

@implementation BusFaultsHandler

- (void)echo:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  [reply setDescriptor:[event paramDescriptorForKeyword:keyDirectObject]
            forKeyword:keyDirectObject];
}

- (void)note:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  received.assign(static_cast<const char *>([data bytes]), [data length]);
}

@end

namespace {

using namespace std::chrono_literals;

class BusFaults : public BusFixture {
 protected:
  BusFaults() : handler_([[BusFaultsHandler alloc] init]) {
    serve(echoEvent, @selector(echo:reply:));
    serve(noteEvent, @selector(note:reply:));
  }
  ~BusFaults() override { [handler_ release]; }

  void serve(AEEventID eventID, SEL selector) {
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:handler_
                                                       andSelector:selector
                                                     forEventClass:testClass
                                                        andEventID:eventID];
  }

  // Everything that a process does with the bus, small and large, both ways.
  void converse() {
    const platform::AutoreleasePool pool;
    received.clear();
    const OSStatus started = platform::startReceivingAppleEvents(testSignature, {});
    const Outcome small = sendAndWait(peerSignature, echoEvent, "small");
    expectAnswerOrStatus(small, "small");
    const Outcome large = sendAndWait(peerSignature, echoEvent, large_);
    expectAnswerOrStatus(large, large_);
    ProcessSerialNumber process = {0, kNoProcess};
    while (GetNextProcess(&process) == noErr) {
      SetFrontProcess(&process);
    }
    if (started == noErr && sendOneWay(peerSignature, askBackEvent, "asked back") == noErr) {
      runUntil([] { return !received.empty(); }, 200ms);
    }
    platform::stopReceivingAppleEvents();
  }

  static void expectAnswerOrStatus(const Outcome &outcome, const std::string &answer) {
    if (outcome.status == noErr) {
      EXPECT_TRUE(outcome.reply == answer);
    } else {
      EXPECT_FALSE(outcome.reply);
    }
  }

  // The peer would still be waiting for an answer that was lost, and not answer this.
  void expectServed() {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "again").reply, "again");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 15s);
  }

  // Each call of each function that a conversation needs, in a conversation of its own. How many
  // conversations that were.
  std::size_t failEachCall(int error) {
    std::size_t failures = 0;
    for (const auto &[function, calls] : callsOfAConversation()) {
      for (std::size_t number = 0; number < calls; ++number) {
        bool hasStruck = false;
        {
          const BusFault fault(function, number, error);
          converse();
          hasStruck = fault.hasStruck();
        }
        SCOPED_TRACE(function + ", call " + std::to_string(number) + ": " + std::strerror(error));
        EXPECT_TRUE(hasStruck || number > 0);
        expectServed();
        if (HasFailure()) {
          return failures;
        }
        failures += hasStruck ? 1 : 0;
      }
    }
    return failures;
  }

  std::map<std::string, std::size_t> callsOfAConversation() {
    const BusFault none;
    converse();
    return none.calls();
  }

  static std::size_t openDescriptors() {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
  }

  const platform::AutoreleasePool pool_;
  BusFaultsHandler *handler_;
  const std::string large_ = std::string(1'100'000, 'L');
};

TEST_F(BusFaults, WithoutAnyEverythingArrives) {
  const auto calls = callsOfAConversation();
  EXPECT_EQ(received, "asked back");
  for (const char *function :
       {"memfd_create", "sd_bus_add_object_vtable", "sd_bus_call_async", "sd_bus_message_append",
        "sd_bus_message_new_method_call", "sd_bus_message_new_method_return", "sd_bus_message_read",
        "sd_bus_process", "sd_bus_request_name", "sd_bus_send"}) {
    EXPECT_TRUE(calls.contains(function)) << function;
  }
}

TEST_F(BusFaults, EachCallThatFindsNoMemoryEndsInAStatusAndTheNextEventGoesThrough) {
  converse();
  const std::size_t descriptors = openDescriptors();
  EXPECT_GT(failEachCall(ENOMEM), 100U);
  EXPECT_EQ(openDescriptors(), descriptors);
}

TEST_F(BusFaults, EachCallThatFindsTheConnectionLostEndsInAStatusAndTheNextEventGoesThrough) {
  converse();
  const std::size_t descriptors = openDescriptors();
  EXPECT_GT(failEachCall(ENOTCONN), 100U);
  EXPECT_EQ(openDescriptors(), descriptors);
}

TEST_F(BusFaults, WhereEverythingFailsFromSomeCallOnTheNextEventGoesThroughAllTheSame) {
  converse();
  const std::size_t descriptors = openDescriptors();
  for (std::size_t call = 0; call < 60; call += 3) {
    {
      const BusFault fault(call, EIO);
      converse();
      EXPECT_TRUE(fault.hasStruck());
    }
    SCOPED_TRACE(call);
    expectServed();
  }
  EXPECT_EQ(openDescriptors(), descriptors);
}

// A turn that takes in all that comes lasts four seconds here, one of a thousand messages two.
TEST_F(BusFaults, AFloodOfMessagesLeavesTheRunLoopTimeForOtherThings) {
  received.clear();
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, {}), noErr);
  BusFaultsClock *clock = [[[BusFaultsClock alloc] init] autorelease];
  NSTimer *timer = [NSTimer scheduledTimerWithTimeInterval:0.001
                                                    target:clock
                                                  selector:@selector(tick:)
                                                  userInfo:nil
                                                   repeats:YES];
  // What comes back waits at the socket for the first turn.
  ASSERT_EQ(sendOneWay(peerSignature, askBackEvent, "asked back"), noErr);
  {
    const BusFlood flood(2ms);
    EXPECT_TRUE(runUntil([&] { return flood.count() > 0; }));
    const int before = clock->_ticks;
    EXPECT_TRUE(runUntil([&] { return clock->_ticks >= before + 5; }, 1s));
    EXPECT_GE(flood.count(), 10U);
  }
  [timer invalidate];
  EXPECT_TRUE(runUntil([] { return !received.empty(); }));
  EXPECT_EQ(received, "asked back");
  platform::stopReceivingAppleEvents();
}

}  // namespace
