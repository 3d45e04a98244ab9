// The events that the test peer serves, and sending them.
#pragma once

#include "FourCharacterCodes.h"

#include <Tests/Support/EventSending.h>

#include <string_view>

namespace platform_test {

using test_support::Outcome;
using test_support::sendAndWait;
using test_support::sendOneWay;

inline constexpr OSType peerSignature = code("Peer");
inline constexpr OSType testSignature = code("Test");
inline constexpr AEEventClass testClass = code("TEST");

// Answers with the direct object that it was sent, of the same type.
inline constexpr AEEventID echoEvent = code("echo");
// Remembers the direct object.
inline constexpr AEEventID noteEvent = code("note");
// Answers with everything remembered, a line each, and forgets it.
inline constexpr AEEventID notesEvent = code("nots");
// Runs the modal panel's run loop mode for as many milliseconds as the direct object says, and
// remembers "nest" before and "nested" after it.
inline constexpr AEEventID nestEvent = code("nest");
// Sleeps for as many milliseconds as the direct object says, then answers.
inline constexpr AEEventID sleepEvent = code("slep");
// Sends the test process an echo event, waits for the answer, and sends that in a note event.
inline constexpr AEEventID askBackEvent = code("askb");
// Sends the test process a note event with the direct object and wants no answer.
inline constexpr AEEventID noteBackEvent = code("notb");
// Leaves its handler by an Objective-C exception.
inline constexpr AEEventID raiseEvent = code("rais");
// Leaves its handler by a C++ exception.
inline constexpr AEEventID throwEvent = code("thrw");
// Stops receiving.
inline constexpr AEEventID stopEvent = code("stop");
// Ends the peer without an answer.
inline constexpr AEEventID dieEvent = code("die ");

inline Outcome sendAndWait(OSType target, AEEventID eventID, std::string_view payload,
                           long timeOutInTicks = 20 * 60) {
  return sendAndWait(target, testClass, eventID, payload, timeOutInTicks);
}

inline OSStatus sendOneWay(OSType target, AEEventID eventID, std::string_view payload) {
  return sendOneWay(target, testClass, eventID, payload);
}

}  // namespace platform_test
