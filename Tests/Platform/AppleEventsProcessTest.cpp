#include "RawSender.h"

#include <Platform/Bus/BusNames.h>

#include <chrono>
#include <cstdlib>
#include <vector>

using namespace platform_test;

namespace {

using platform::ProcessWatch;
using platform::startReceivingAppleEvents;
using platform::stopReceivingAppleEvents;

class AppleEventsProcess : public BusFixture {};
class AppleEventsProcessAndAnother : public RawSender {};

TEST_F(AppleEventsProcess, SignatureThatAnotherProcessHasIsRefused) {
  EXPECT_EQ(startReceivingAppleEvents(peerSignature, {}), portInUse);
  EXPECT_EQ(startReceivingAppleEvents(testSignature, {}), noErr);
}

TEST_F(AppleEventsProcess, SignatureIsFreeAgainWhenItsProcessEnds) {
  endPeer();
  EXPECT_EQ(startReceivingAppleEvents(peerSignature, {}), noErr);
}

TEST_F(AppleEventsProcess, SignatureIsFreeAgainAfterStopping) {
  ASSERT_EQ(startReceivingAppleEvents(testSignature, {}), noErr);
  stopReceivingAppleEvents();
  stopReceivingAppleEvents();
  EXPECT_EQ(sendOneWay(testSignature, echoEvent, ""), procNotFound);
  EXPECT_EQ(startReceivingAppleEvents(testSignature, {}), noErr);
}

TEST_F(AppleEventsProcess, StartingTwiceOrWithoutASignatureIsRefused) {
  EXPECT_EQ(startReceivingAppleEvents(0, {}), paramErr);
  EXPECT_EQ(startReceivingAppleEvents(testSignature, {}), noErr);
  EXPECT_EQ(startReceivingAppleEvents(code("More"), {}), paramErr);
}

TEST_F(AppleEventsProcess, ActivationCallsBack) {
  int activations = 0;
  ASSERT_EQ(startReceivingAppleEvents(testSignature, [&] { ++activations; }), noErr);
  std::vector<OSType> signatures;
  ProcessSerialNumber number{0, kNoProcess};
  while (GetNextProcess(&number) == noErr && signatures.size() < 10) {
    ProcessInfoRec information{};
    information.processInfoLength = sizeof information;
    ASSERT_EQ(GetProcessInformation(&number, &information), noErr);
    signatures.push_back(information.processSignature);
    if (information.processSignature == testSignature) {
      EXPECT_NE(number.lowLongOfPSN, 0u);
      EXPECT_EQ(SetFrontProcess(&number), noErr);
    }
  }
  EXPECT_EQ(signatures, (std::vector<OSType>{peerSignature, testSignature}));
  EXPECT_EQ(activations, 0);
  EXPECT_TRUE(runUntil([&] { return activations == 1; }));
}

std::size_t countProcesses() {
  std::size_t count = 0;
  for (ProcessSerialNumber number{0, kNoProcess}; GetNextProcess(&number) == noErr;) {
    ++count;
  }
  return count;
}

// One program may own as many names as the bus lets it. A search that took time for each of them at
// each step would hold a host up for minutes.
TEST_F(AppleEventsProcessAndAnother, ThousandsOfNamesHoldNoSearchUp) {
  constexpr OSType names = 4000;
  for (OSType signature = 0x10000000; signature < 0x10000000 + names; ++signature) {
    ASSERT_GE(sd_bus_request_name(client_.get(), platform::busName(signature).c_str(), 0), 0);
  }
  // Each of them is asked for once.
  EXPECT_EQ(countProcesses(), names + 1);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(countProcesses(), names + 1);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST(AppleEventsProcessWithoutPermission, SignatureThatTheBusDeniesIsRefusedAsSuch) {
  const test_support::PrivateBus bus("<deny own=\"" + platform::busName(testSignature) + "\"/>");
  EXPECT_EQ(startReceivingAppleEvents(testSignature, {}), errAEEventNotPermitted);
  EXPECT_EQ(startReceivingAppleEvents(code("More"), {}), noErr);
  stopReceivingAppleEvents();
}

TEST_F(AppleEventsProcess, SerialNumberIsVoidOnceItsProcessHasEnded) {
  ProcessSerialNumber number{0, kNoProcess};
  ASSERT_EQ(GetNextProcess(&number), noErr);
  endPeer();
  startPeer();
  ProcessInfoRec information{};
  information.processInfoLength = sizeof information;
  EXPECT_EQ(GetProcessInformation(&number, &information), procNotFound);
  EXPECT_EQ(SetFrontProcess(&number), procNotFound);
}

TEST_F(AppleEventsProcess, WatchTellsOfEachEndAndEachStart) {
  std::vector<bool> changes;
  const ProcessWatch watch(peerSignature, [&](bool isRunning) { changes.push_back(isRunning); });
  EXPECT_TRUE(watch.isRunning());
  endPeer();
  ASSERT_TRUE(runUntil([&] { return changes == std::vector<bool>{false}; }));
  EXPECT_FALSE(watch.isRunning());
  startPeer();
  ASSERT_TRUE(runUntil([&] { return changes == (std::vector<bool>{false, true}); }));
  EXPECT_TRUE(watch.isRunning());
}

TEST_F(AppleEventsProcess, WatchOfAProcessThatDoesNotRunYet) {
  endPeer();
  bool started = false;
  const ProcessWatch watch(peerSignature, [&](bool isRunning) { started = isRunning; });
  EXPECT_FALSE(watch.isRunning());
  startPeer();
  EXPECT_TRUE(runUntil([&] { return started; }));
}

TEST_F(AppleEventsProcess, WatchMayBeDestroyedByItsOwnCall) {
  std::unique_ptr<ProcessWatch> watch;
  int calls = 0;
  watch = std::make_unique<ProcessWatch>(peerSignature, [&](bool) {
    ++calls;
    watch.reset();
  });
  endPeer();
  EXPECT_TRUE(runUntil([&] { return watch == nullptr; }));
  startPeer();
  EXPECT_FALSE(runUntil([&] { return calls > 1; }, std::chrono::milliseconds(200)));
}

// The watch asks the bus a question: what arrives before the answer is taken in with it.
TEST_F(AppleEventsProcessAndAnother, WhatArrivesWhileAWatchBeginsIsHandled) {
  int activations = 0;
  ASSERT_EQ(startReceivingAppleEvents(testSignature, [&] { ++activations; }), noErr);
  ASSERT_FALSE(runUntil([] { return false; }, std::chrono::milliseconds(50)));
  sd_bus_message *message = nullptr;
  ASSERT_GE(
      sd_bus_message_new_method_call(client_.get(), &message, "org.korvo.AppleEvents.S54657374",
                                     objectPath, interfaceName, "Activate"),
      0);
  const Message activation = adoptMessage(message);
  sd_bus_message_set_expect_reply(message, 0);
  ASSERT_GE(sd_bus_send(client_.get(), message, nullptr), 0);
  // The bus has handed it on when it has answered what came behind it.
  ASSERT_GE(sd_bus_call_method(client_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus", "GetId", nullptr, nullptr, ""),
            0);
  EXPECT_TRUE(ProcessWatch(peerSignature, {}).isRunning());
  EXPECT_TRUE(runUntil([&] { return activations == 1; }, std::chrono::seconds(5)));
}

TEST_F(AppleEventsProcess, DestroyedWatchIsSilentThoughAChangeWasUnderWay) {
  int calls = 0;
  auto watch = std::make_unique<ProcessWatch>(peerSignature, [&](bool) { ++calls; });
  endPeer();
  // The sends in that took the news off the bus; the call would come with the next turn.
  watch.reset();
  EXPECT_FALSE(runUntil([&] { return calls > 0; }, std::chrono::milliseconds(200)));
}

TEST_F(AppleEventsProcess, BusThatComesBackFindsEverythingAsItWas) {
  std::vector<bool> changes;
  ASSERT_EQ(startReceivingAppleEvents(testSignature, {}), noErr);
  const ProcessWatch watch(peerSignature, [&](bool isRunning) { changes.push_back(isRunning); });
  bus_.stop();
  ASSERT_TRUE(runUntil([&] { return changes == std::vector<bool>{false}; }));
  EXPECT_EQ(sendOneWay(peerSignature, noteEvent, ""), connectionInvalid);
  bus_.start();
  ASSERT_TRUE(runUntil([&] { return changes == (std::vector<bool>{false, true}); }));
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "again").reply, "again");
  EXPECT_EQ(sendAndWait(peerSignature, noteBackEvent, "").reply, "0");
}

TEST_F(AppleEventsProcess, SendThatFindsTheBusReplacedUsesTheNewOne) {
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "old").reply, "old");
  endPeer();
  bus_.stop();
  bus_.start();
  startPeer();
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "new").reply, "new");
}

TEST_F(AppleEventsProcess, WithoutABusEverythingSaysSo) {
  bus_.stop();
  ProcessSerialNumber number{0, kNoProcess};
  EXPECT_EQ(sendOneWay(peerSignature, echoEvent, ""), connectionInvalid);
  EXPECT_EQ(sendAndWait(peerSignature, echoEvent, "").status, connectionInvalid);
  EXPECT_EQ(GetNextProcess(&number), connectionInvalid);
  EXPECT_EQ(startReceivingAppleEvents(testSignature, {}), connectionInvalid);
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(startReceivingAppleEvents(testSignature, {}), connectionInvalid);
}

}  // namespace
