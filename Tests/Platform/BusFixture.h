// A private bus with the test peer on it.
#pragma once

#include "TestEvents.h"

#include <Platform/AppleEventsProcess.h>
#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/PrivateBus.h>
#include <Tests/Support/RunLoopWait.h>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

namespace platform_test {

using test_support::ChildProcess;
using test_support::PrivateBus;
using test_support::runUntil;

class BusFixture : public testing::Test {
 protected:
  BusFixture() { startPeer(); }
  ~BusFixture() override { platform::stopReceivingAppleEvents(); }

  void startPeer() {
    peer_ = std::make_unique<ChildProcess>(std::vector<std::string>{PLATFORM_TEST_PEER});
    EXPECT_EQ(peer_->readLine(), "0");
  }

  // Returns once the bus has seen it too; the run loop does not run meanwhile.
  void endPeer() {
    peer_->end();
    for (int round = 0; round < 2000; ++round) {
      if (sendOneWay(peerSignature, noteEvent, "") == procNotFound) {
        return;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ADD_FAILURE() << "the bus still knows the peer";
  }

  std::string peerNotes() { return sendAndWait(peerSignature, notesEvent, "").reply.value_or("?"); }

  PrivateBus bus_;
  std::unique_ptr<ChildProcess> peer_;
};

}  // namespace platform_test
