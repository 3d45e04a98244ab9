#include "BusFixture.h"

#include <Platform/AutoreleasePool.h>
#include <Platform/Bus/EventReceiver.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

using namespace platform_test;

namespace {

std::string received;
int depth = 0;
int deepest = 0;

}  // namespace

// What the test process itself serves.
@interface BetweenProcessesHandler : NSObject
@end

@implementation BetweenProcessesHandler

- (void)echo:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  [reply setDescriptor:[event paramDescriptorForKeyword:keyDirectObject]
            forKeyword:keyDirectObject];
}

- (void)note:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  received.append(static_cast<const char *>([data bytes]), [data length]);
}

// Notes what a queued reply holds.
- (void)answer:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)reply;
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  received.append("[").append(static_cast<const char *>([data bytes]), [data length]);
  NSData *error = [[event paramDescriptorForKeyword:keyErrorNumber] data];
  if ([error length] == sizeof(SInt32)) {
    SInt32 number = noErr;
    [error getBytes:&number length:sizeof number];
    received += std::to_string(number);
  }
  received += "]";
}

- (void)runLoop:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)event;
  (void)reply;
  received += "(";
  NSDate *end = [NSDate dateWithTimeIntervalSinceNow:0.3];
  while ([end timeIntervalSinceNow] > 0) {
    [[NSRunLoop currentRunLoop] runMode:@"NSModalPanelRunLoopMode" beforeDate:end];
  }
  received += ")";
}

// Asks the peer to note something here, and waits: the note must not come inside the wait.
- (void)nest:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  (void)event;
  (void)reply;
  received += "(";
  deepest = std::max(deepest, ++depth);
  sendAndWait(peerSignature, noteBackEvent, "inner");
  --depth;
  received += ")";
}

@end

namespace {

class BetweenProcesses : public BusFixture {
 protected:
  BetweenProcesses() : handler_([[BetweenProcessesHandler alloc] init]) {
    received.clear();
    depth = deepest = 0;
    serve(echoEvent, @selector(echo:reply:));
    serve(noteEvent, @selector(note:reply:));
    serve(nestEvent, @selector(nest:reply:));
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:handler_
                                                       andSelector:@selector(answer:reply:)
                                                     forEventClass:kCoreEventClass
                                                        andEventID:kAEAnswer];
  }

  ~BetweenProcesses() override { [handler_ release]; }

  void serve(AEEventID eventID, SEL selector) {
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:handler_
                                                       andSelector:selector
                                                     forEventClass:testClass
                                                        andEventID:eventID];
  }

  void expectEcho(std::size_t size) {
    std::string payload(size, '\0');
    for (std::size_t index = 0; index < size; index += 1 + index / 64) {
      payload[index] = static_cast<char>(index * 7 + size);
    }
    const Outcome outcome = sendAndWait(peerSignature, echoEvent, payload);
    ASSERT_EQ(outcome.status, noErr) << size;
    ASSERT_TRUE(outcome.reply) << size;
    EXPECT_TRUE(*outcome.reply == payload) << size;
    EXPECT_EQ(outcome.replyType, DescType{typeChar});
  }

  static OSStatus sendForQueuedReply(AEEventID eventID, std::string_view payload) {
    AEDesc target;
    AppleEvent event;
    EXPECT_EQ(AECreateDesc(typeApplSignature, &peerSignature, 4, &target), noErr);
    EXPECT_EQ(AECreateAppleEvent(testClass, eventID, &target, 7, kAnyTransactionID, &event), noErr);
    EXPECT_EQ(AEPutParamPtr(&event, keyDirectObject, typeChar, payload.data(),
                            static_cast<Size>(payload.size())),
              noErr);
    const OSStatus status = AESendMessage(&event, nullptr, kAEQueueReply, kNoTimeOut);
    AEDisposeDesc(&event);
    AEDisposeDesc(&target);
    return status;
  }

  const platform::AutoreleasePool pool_;
  BetweenProcessesHandler *handler_;
};

TEST_F(BetweenProcesses, PayloadsOfEverySizeComeBackAsTheyWent) {
  for (const std::size_t size :
       {0, 1, 7, 8, 4096, 65'537, 1'048'575, 1'048'576, 1'048'577, 5'000'000, 104'857'600}) {
    expectEcho(size);
  }
}

TEST_F(BetweenProcesses, EventWithoutWantedReplyArrivesAndSaysSo) {
  EXPECT_EQ(sendOneWay(peerSignature, noteEvent, "one way"), noErr);
  EXPECT_EQ(sendAndWait(peerSignature, noteEvent, "both ways").status, noErr);
  EXPECT_EQ(peerNotes(), "one way\nboth ways with reply\n");
}

TEST_F(BetweenProcesses, LargeEventWithoutWantedReplyArrivesWhole) {
  const std::string payload(3'000'000, 'z');
  EXPECT_EQ(sendOneWay(peerSignature, noteEvent, payload), noErr);
  EXPECT_TRUE(peerNotes() == payload + "\n");
}

TEST_F(BetweenProcesses, AQueuedReplyComesAsAnEventAndInItsTurn) {
  ASSERT_EQ(sendForQueuedReply(echoEvent, "one"), noErr);
  ASSERT_EQ(sendForQueuedReply(echoEvent, std::string(3'000'000, 'z')), noErr);
  // Nothing comes before the run loop runs, also while something else is waited for.
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "x").reply, "x");
  EXPECT_EQ(received, "");
  EXPECT_TRUE(runUntil([] { return received.size() > 3'000'000; }));
  EXPECT_EQ(received.substr(0, 7), "[one][z");
}

TEST_F(BetweenProcesses, AQueuedReplyTellsOfARefusal) {
  ASSERT_EQ(sendForQueuedReply(code("none"), ""), noErr);
  ASSERT_EQ(sendForQueuedReply(raiseEvent, ""), noErr);
  EXPECT_TRUE(runUntil([] { return received == "[-1708][-10000]"; })) << received;
}

TEST_F(BetweenProcesses, AQueuedReplyTellsThatThereIsNoRoomWhileTheReceiverStillWaits) {
  ASSERT_EQ(sendOneWay(peerSignature, nestEvent, "3000"), noErr);
  const std::string filling(255 * 1'048'576, '\0');
  ASSERT_EQ(sendOneWay(peerSignature, noteEvent, filling), noErr);
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(sendForQueuedReply(noteEvent, std::string(2'000'000, 'x')), noErr);
  EXPECT_TRUE(runUntil([] { return received == "[-108]"; })) << received;
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2'500));
}

TEST_F(BetweenProcesses, AQueuedReplyTellsOfTheEndOfTheReceiver) {
  ASSERT_EQ(sendForQueuedReply(dieEvent, ""), noErr);
  EXPECT_TRUE(runUntil([] { return received == "[" + std::to_string(connectionInvalid) + "]"; }))
      << received;
}

TEST_F(BetweenProcesses, ManyEventsArriveInOrder) {
  std::string expected;
  for (int number = 0; number < 2000; ++number) {
    ASSERT_EQ(sendOneWay(peerSignature, noteEvent, std::to_string(number)), noErr);
    expected += std::to_string(number) + "\n";
  }
  EXPECT_EQ(peerNotes(), expected);
}

TEST_F(BetweenProcesses, ThePeerReachesThisProcessToo) {
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, {}), noErr);
  EXPECT_EQ(sendAndWait(peerSignature, noteBackEvent, "hello back").reply, "0");
  EXPECT_TRUE(runUntil([] { return received == "hello back"; })) << received;
}

TEST_F(BetweenProcesses, ThePeerWaitsForTheReplyOfThisProcess) {
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, {}), noErr);
  const std::string large(2'000'000, 'q');
  ASSERT_EQ(sendOneWay(peerSignature, askBackEvent, large), noErr);
  ASSERT_TRUE(runUntil([] { return !received.empty(); }));
  EXPECT_TRUE(received == large);
}

TEST_F(BetweenProcesses, EventsThatArriveInsideAWaitAreDispatchedAfterwardsAndNotNested) {
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, {}), noErr);
  ASSERT_EQ(sendOneWay(testSignature, nestEvent, ""), noErr);
  ASSERT_TRUE(runUntil([] { return received.ends_with("inner"); })) << received;
  EXPECT_EQ(received, "()inner");
  EXPECT_EQ(deepest, 1);
}

// What macOS may do, tests may ask for; and only for as long as they do.
TEST_F(BetweenProcesses, EventsAreDispatchedInsideAHandlersRunLoopWhereATestAsksForThat) {
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, {}), noErr);
  serve(nestEvent, @selector(runLoop:reply:));
  for (const bool nests : {true, false}) {
    received.clear();
    platform::EventReceiver::shared().setNestsHandlers(nests);
    ASSERT_EQ(sendOneWay(testSignature, nestEvent, ""), noErr);
    ASSERT_EQ(sendOneWay(testSignature, noteEvent, "1"), noErr);
    ASSERT_EQ(sendOneWay(testSignature, noteEvent, "2"), noErr);
    const std::string expected = nests ? "(12)" : "()12";
    EXPECT_TRUE(runUntil([&] { return received.size() == expected.size(); }));
    EXPECT_EQ(received, expected);
  }
}

TEST_F(BetweenProcesses, EventsThatArriveDuringAModalSessionWaitTheirTurn) {
  ASSERT_EQ(sendOneWay(peerSignature, nestEvent, "300"), noErr);
  ASSERT_EQ(sendOneWay(peerSignature, noteEvent, "first"), noErr);
  ASSERT_EQ(sendOneWay(peerSignature, nestEvent, "50"), noErr);
  ASSERT_EQ(sendOneWay(peerSignature, noteEvent, "second"), noErr);
  EXPECT_EQ(peerNotes(), "nest\nnested\nfirst\nnest\nnested\nsecond\n");
}

TEST_F(BetweenProcesses, ActivationGetsThroughDuringAModalSession) {
  ASSERT_EQ(sendOneWay(peerSignature, nestEvent, "500"), noErr);
  ProcessSerialNumber number{0, kNoProcess};
  ASSERT_EQ(GetNextProcess(&number), noErr);
  EXPECT_EQ(SetFrontProcess(&number), noErr);
  EXPECT_EQ(peerNotes(), "nest\nactivated\nnested\n");
}

TEST_F(BetweenProcesses, EventWithoutHandlerIsNotHandled) {
  EXPECT_EQ(sendAndWait(peerSignature, code("none"), "").status, errAEEventNotHandled);
  EXPECT_EQ(sendOneWay(peerSignature, code("none"), ""), noErr);
}

TEST_F(BetweenProcesses, SignatureThatNobodyHasIsNotFoundWithAndWithoutWantedReply) {
  EXPECT_EQ(sendAndWait(code("None"), echoEvent, "").status, procNotFound);
  EXPECT_EQ(sendOneWay(code("None"), echoEvent, ""), procNotFound);
}

TEST_F(BetweenProcesses, ReplyThatDoesNotComeInTimeIsATimeOut) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(sendAndWait(peerSignature, sleepEvent, "2000", 12).status, errAETimeout);
  const auto taken = std::chrono::steady_clock::now() - start;
  EXPECT_GE(taken, std::chrono::milliseconds(200));
  EXPECT_LT(taken, std::chrono::milliseconds(1500));
}

TEST_F(BetweenProcesses, LateReplyDoesNoHarm) {
  EXPECT_EQ(sendAndWait(peerSignature, sleepEvent, "300", 3).status, errAETimeout);
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "next").reply, "next");
}

TEST_F(BetweenProcesses, TimeOutsWithAMeaningOfTheirOwnAreWaitedOut) {
  EXPECT_EQ(sendAndWait(peerSignature, sleepEvent, "100", kNoTimeOut).reply, "awake");
  EXPECT_EQ(sendAndWait(peerSignature, sleepEvent, "100", kAEDefaultTimeout).reply, "awake");
  EXPECT_EQ(sendAndWait(peerSignature, sleepEvent, "100", 0).status, errAETimeout);
}

TEST_F(BetweenProcesses, ExceptionsThatLeaveAHandlerAreItsFailureAndItLivesOn) {
  EXPECT_EQ(sendAndWait(peerSignature, raiseEvent, "").status, errAEEventFailed);
  EXPECT_EQ(sendAndWait(peerSignature, throwEvent, "").status, errAEEventFailed);
  EXPECT_EQ(sendOneWay(peerSignature, raiseEvent, ""), noErr);
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "alive").reply, "alive");
}

TEST_F(BetweenProcesses, ProcessThatDiesBeforeItAnswersIsAnInvalidConnection) {
  EXPECT_EQ(sendAndWait(peerSignature, dieEvent, "", kNoTimeOut).status, connectionInvalid);
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "").status, procNotFound);
}

TEST_F(BetweenProcesses, EventsBehindOneThatStopsTheReceiverAreToldSo) {
  ASSERT_EQ(sendOneWay(peerSignature, nestEvent, "300"), noErr);
  ASSERT_EQ(sendOneWay(peerSignature, stopEvent, ""), noErr);
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "").status, procNotFound);
}

TEST_F(BetweenProcesses, WaitEndsWhenTheBusEnds) {
  std::thread end([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    bus_.stop();
  });
  EXPECT_EQ(sendAndWait(peerSignature, sleepEvent, "3000", kNoTimeOut).status, connectionInvalid);
  end.join();
}

TEST_F(BetweenProcesses, EventsThatArrivedBeforeTheBusEndedAreHandled) {
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, {}), noErr);
  for (const char *text : {"one ", "two ", "three"}) {
    ASSERT_EQ(sendAndWait(peerSignature, noteBackEvent, text).reply, "0");
  }
  bus_.stop();
  EXPECT_TRUE(runUntil([] { return received == "one two three"; })) << received;
}

TEST_F(BetweenProcesses, WaitingForOneselfIsRefusedInsteadOfHanging) {
  ASSERT_EQ(platform::startReceivingAppleEvents(testSignature, {}), noErr);
  EXPECT_EQ(sendAndWait(testSignature, echoEvent, "", kNoTimeOut).status, errAEEventFailed);
}

TEST_F(BetweenProcesses, ManyParametersArriveAsTheyWent) {
  AEDesc target;
  AppleEvent event;
  AppleEvent reply;
  ASSERT_EQ(AECreateDesc(typeApplSignature, &peerSignature, 4, &target), noErr);
  ASSERT_EQ(AECreateAppleEvent(testClass, noteEvent, &target, kAutoGenerateReturnID,
                               kAnyTransactionID, &event),
            noErr);
  // More than the bus takes in one array: what does not fit travels in memory files.
  const std::string mebibyte(1'048'576, 'm');
  for (AEKeyword keyword = 1; keyword <= 60; ++keyword) {
    ASSERT_EQ(AEPutParamPtr(&event, keyword, typeChar, mebibyte.data(), 1'048'576), noErr);
  }
  ASSERT_EQ(AEPutParamPtr(&event, keyDirectObject, typeChar, "the last", 8), noErr);
  EXPECT_EQ(AESendMessage(&event, &reply, kAENoReply, kNoTimeOut), noErr);
  // Under the sanitizers the receiver copies what it has of the message anew with each piece that
  // arrives: half a minute on a busy machine.
  EXPECT_EQ(sendAndWait(peerSignature, notesEvent, "", 100 * 60).reply, "the last\n");
  AEDisposeDesc(&event);
  AEDisposeDesc(&target);
}

TEST_F(BetweenProcesses, MoreThanOneMessageHoldsIsRefusedAndTheConnectionLives) {
  AEDesc target;
  AppleEvent event;
  AppleEvent reply;
  ASSERT_EQ(AECreateDesc(typeApplSignature, &peerSignature, 4, &target), noErr);
  ASSERT_EQ(AECreateAppleEvent(testClass, noteEvent, &target, kAutoGenerateReturnID,
                               kAnyTransactionID, &event),
            noErr);
  const std::string mebibyte(1'048'577, 'm');
  for (AEKeyword keyword = 1; keyword <= 17; ++keyword) {
    ASSERT_EQ(AEPutParamPtr(&event, keyword, typeChar, mebibyte.data(), 1'048'577), noErr);
  }
  EXPECT_EQ(AESendMessage(&event, &reply, kAENoReply, kNoTimeOut), memFullErr);
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "alive").reply, "alive");
  AEDisposeDesc(&event);
  AEDisposeDesc(&target);
}

TEST_F(BetweenProcesses, EventsPastTheBoundOfTheInboxAreRefusedAndNothingElseIsLost) {
  std::string large;
  large.resize(104'857'600, 'l');
  ASSERT_EQ(sendOneWay(peerSignature, nestEvent, "3000"), noErr);
  ASSERT_EQ(sendOneWay(peerSignature, echoEvent, large), noErr);
  ASSERT_EQ(sendOneWay(peerSignature, echoEvent, large), noErr);
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, large).status, memFullErr);
  EXPECT_EQ(peerNotes(), "nest\nnested\n");
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "room again").reply, "room again");
}

}  // namespace
