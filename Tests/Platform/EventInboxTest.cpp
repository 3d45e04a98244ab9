#include <Platform/Bus/EventInbox.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using platform::EventInbox;
using platform::SharedBytes;
using platform::WaitingEvent;

WaitingEvent eventOfSize(std::size_t size, AEEventID eventID = 0) {
  const std::string bytes(size, 'x');
  WaitingEvent waiting;
  waiting.event.eventID = eventID;
  waiting.event.parameters.push_back(
      {keyDirectObject, typeChar, *SharedBytes::copyOf(std::as_bytes(std::span(bytes)))});
  return waiting;
}

TEST(EventInbox, GivesEventsBackInTheirOrder) {
  EventInbox inbox;
  EXPECT_TRUE(inbox.isEmpty());
  for (AEEventID eventID = 1; eventID <= 3; ++eventID) {
    EXPECT_TRUE(inbox.put(eventOfSize(10, eventID)));
  }
  for (AEEventID eventID = 1; eventID <= 3; ++eventID) {
    EXPECT_EQ(inbox.take()->event.eventID, eventID);
  }
  EXPECT_FALSE(inbox.take());
}

TEST(EventInbox, RefusesPastItsBoundAndHasRoomAgainAfterwards) {
  EventInbox inbox(100'000);
  EXPECT_TRUE(inbox.put(eventOfSize(60'000)));
  EXPECT_FALSE(inbox.put(eventOfSize(60'000)));
  EXPECT_TRUE(inbox.put(eventOfSize(20'000)));
  inbox.take();
  EXPECT_TRUE(inbox.put(eventOfSize(60'000)));
  EXPECT_FALSE(inbox.put(eventOfSize(200'000)));
}

TEST(EventInbox, EmptyEventsDoNotComeForFree) {
  EventInbox inbox(100'000);
  int taken = 0;
  while (taken < 1000 && inbox.put(eventOfSize(0))) {
    ++taken;
  }
  EXPECT_GT(taken, 10);
  EXPECT_LT(taken, 101);
}

TEST(EventInbox, MemoryFileCountsItsSizeAtLeast) {
  EventInbox inbox(3 * platform::largestInlineSize);
  EXPECT_TRUE(inbox.put(eventOfSize(2 * platform::largestInlineSize)));
  EXPECT_FALSE(inbox.put(eventOfSize(platform::largestInlineSize + 1)));
}

}  // namespace
