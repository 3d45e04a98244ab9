// What the programs of the load tests say to each other beside the requests of the word processor.
#pragma once

#include <Formats/EventTable.h>

namespace load_test {

using formats::fourCharacterCode;
using formats::korvoSignature;

inline constexpr formats::FourCharacterCode loadClass = fourCharacterCode("LOAD");
// To the host: answers with the bytes that are allocated there now, as digits.
inline constexpr formats::FourCharacterCode liveBytesEvent = fourCharacterCode("live");
// To the host: counts the objects of each class from now on. What follows needs it.
inline constexpr formats::FourCharacterCode countObjectsEvent = fourCharacterCode("cobj");
// To the host: answers with the number of NSTimers that are alive, as digits.
inline constexpr formats::FourCharacterCode liveTimersEvent = fourCharacterCode("timr");
// To the host: answers with a line "NUMBER CLASS" for each class that has more objects, or fewer,
// than when it was asked before.
inline constexpr formats::FourCharacterCode newObjectsEvent = fourCharacterCode("objs");
// To the host: sits in a modal run loop, so that what arrives has to wait, until the host is
// brought to the front, or the seconds in the payload have passed.
inline constexpr formats::FourCharacterCode holdEvent = fourCharacterCode("hold");
// To the host: allocates as many bytes as the payload says, and loses them.
inline constexpr formats::FourCharacterCode leakEvent = fourCharacterCode("leak");
// To the host: leaves a timer behind that never fires, or a descriptor.
inline constexpr formats::FourCharacterCode leakTimerEvent = fourCharacterCode("lktm");
inline constexpr formats::FourCharacterCode leakDescriptorEvent = fourCharacterCode("lkfd");
// To the word processor, from a sender: all was sent; the payload is "SENDER ANSWERED".
inline constexpr formats::FourCharacterCode doneEvent = fourCharacterCode("done");

// How long a reply is waited for: two minutes, in sixtieths of a second.
inline constexpr long replyTimeOut = 120 * 60;

// The style that the host of these tests knows: a group in it is its search texts in parentheses.
inline constexpr char styleName[] = "Echo";

}  // namespace load_test
