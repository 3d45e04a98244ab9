// The run loop and the handlers of processes without Cocoa. That whole processes talk to each other
// over them is shown by the tests of the word processor.
#include <Platform/EventDispatch.h>
#include <Platform/RunLoop.h>
#include <Platform/RunLoopTimer.h>
#include <Platform/WithoutCocoa/EventHandlers.h>
#include <Platform/WithoutCocoa/RunLoopTurn.h>

#include <ApplicationServices/ApplicationServices.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using platform::IncomingEvent;
using platform::RunLoopDescriptor;
using testing::HasSubstr;

class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe(ends_.data()), 0); }
  ~Pipe() {
    close(ends_[0]);
    close(ends_[1]);
  }
  Pipe(const Pipe &) = delete;
  Pipe &operator=(const Pipe &) = delete;

  int readingEnd() const { return ends_[0]; }
  int writingEnd() const { return ends_[1]; }
  void fill() const { EXPECT_EQ(write(ends_[1], "x", 1), 1); }
  void empty() const {
    char byte = 0;
    EXPECT_EQ(read(ends_[0], &byte, 1), 1);
  }

 private:
  std::array<int, 2> ends_{};
};

void turn() { platform::runLoopTurn(Clock::now()); }

TEST(RunLoopWithoutCocoa, ATurnHandlesAllThatIsReadyAndNothingElse) {
  const Pipe one;
  const Pipe other;
  const Pipe silent;
  std::string calls;
  const RunLoopDescriptor first(one.readingEnd(), [&] { one.empty(), calls += '1'; });
  const RunLoopDescriptor second(other.readingEnd(), [&] { other.empty(), calls += '2'; });
  const RunLoopDescriptor third(silent.readingEnd(), [&] { calls += '3'; });
  turn();
  EXPECT_EQ(calls, "");
  one.fill();
  other.fill();
  turn();
  EXPECT_EQ(calls, "12");
  turn();
  EXPECT_EQ(calls, "12");
}

TEST(RunLoopWithoutCocoa, WhatStaysReadyIsHandledByEachTurn) {
  const Pipe pipe;
  int calls = 0;
  const RunLoopDescriptor watch(pipe.readingEnd(), [&] { ++calls; });
  pipe.fill();
  turn();
  turn();
  EXPECT_EQ(calls, 2);
}

TEST(RunLoopWithoutCocoa, ATurnWaitsUntilItsTimeIsOver) {
  const auto begin = Clock::now();
  platform::runLoopTurn(begin + 30ms);
  EXPECT_GE(Clock::now() - begin, 30ms);
  platform::runLoopTurn(begin - 1h);
  EXPECT_LT(Clock::now() - begin, 30min);
}

TEST(RunLoopWithoutCocoa, ATurnEndsAsSoonAsSomethingWasHandled) {
  const Pipe pipe;
  const RunLoopDescriptor watch(pipe.readingEnd(), [&] { pipe.empty(); });
  pipe.fill();
  const auto begin = Clock::now();
  platform::runLoopTurn(begin + 1min);
  EXPECT_LT(Clock::now() - begin, 30s);
}

TEST(RunLoopWithoutCocoa, TheEndOfTheOtherSideIsReadiness) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  int calls = 0;
  const RunLoopDescriptor watch(ends[0], [&] { ++calls; });
  close(ends[1]);
  turn();
  EXPECT_EQ(calls, 1);
  close(ends[0]);
}

TEST(RunLoopWithoutCocoa, RoomToWriteCountsOnlyWhereItIsWatched) {
  const Pipe pipe;
  int calls = 0;
  RunLoopDescriptor watch(pipe.writingEnd(), [&] { ++calls; });
  turn();
  EXPECT_EQ(calls, 0);
  watch.setWatchesWriting(true);
  turn();
  EXPECT_EQ(calls, 1);
  watch.setWatchesWriting(false);
  turn();
  EXPECT_EQ(calls, 1);
}

TEST(RunLoopWithoutCocoa, ACallMayEndItsOwnWatchAndThoseBehindIt) {
  const Pipe one;
  const Pipe other;
  std::string calls;
  std::optional<RunLoopDescriptor> first;
  std::optional<RunLoopDescriptor> second;
  const auto end = [&](const char *name) {
    calls += name;
    second.reset();
  };
  first.emplace(one.readingEnd(), [&] { end("1"); });
  second.emplace(other.readingEnd(), [&] { end("2"); });
  one.fill();
  other.fill();
  turn();
  EXPECT_EQ(calls, "1");
  const auto endFirst = [&] { first.reset(); };
  std::optional<RunLoopDescriptor> third;
  third.emplace(other.readingEnd(), endFirst);
  turn();
  EXPECT_EQ(calls, "11");
  turn();
  EXPECT_EQ(calls, "11");
}

TEST(RunLoopWithoutCocoa, AWatchThatACallMakesIsServedByTheNextTurn) {
  const Pipe pipe;
  int calls = 0;
  std::unique_ptr<RunLoopDescriptor> made;
  const RunLoopDescriptor watch(pipe.readingEnd(), [&] {
    if (!made) {
      made = std::make_unique<RunLoopDescriptor>(pipe.readingEnd(), [&] { ++calls; });
    }
  });
  pipe.fill();
  turn();
  EXPECT_EQ(calls, 0);
  turn();
  EXPECT_EQ(calls, 1);
}

TEST(RunLoopWithoutCocoa, ACallMayTakeTurnsItself) {
  const Pipe one;
  const Pipe other;
  std::string calls;
  const RunLoopDescriptor first(one.readingEnd(), [&] {
    one.empty();
    turn();
    calls += '1';
  });
  const RunLoopDescriptor second(other.readingEnd(), [&] { other.empty(), calls += '2'; });
  one.fill();
  other.fill();
  turn();
  EXPECT_EQ(calls, "21");
}

TEST(RunLoopWithoutCocoa, ATimerCallsOnceAtItsTime) {
  int calls = 0;
  platform::RunLoopTimer timer([&] { ++calls; });
  ASSERT_TRUE(timer.isUsable());
  const auto begin = Clock::now();
  timer.callAfter(20ms);
  platform::runLoopTurn(begin + 1min);
  EXPECT_EQ(calls, 1);
  EXPECT_GE(Clock::now() - begin, 20ms);
  platform::runLoopTurn(Clock::now() + 30ms);
  EXPECT_EQ(calls, 1);
}

class HandlersWithoutCocoa : public testing::Test {
 protected:
  static constexpr AEEventClass eventClass = 1;
  static constexpr AEEventID eventID = 2;

  ~HandlersWithoutCocoa() override { platform::removeEventHandler(eventClass, eventID); }

  static OSStatus dispatched(const IncomingEvent &event = {.eventClass = eventClass,
                                                           .eventID = eventID}) {
    const auto reply = platform::dispatchAppleEvent(event);
    EXPECT_TRUE(!reply || reply->empty());
    return reply ? OSStatus{noErr} : reply.error();
  }
};

TEST_F(HandlersWithoutCocoa, AnEventFindsTheHandlerOfItsClassAndID) {
  std::vector<IncomingEvent> events;
  platform::setEventHandler(eventClass, eventID,
                            [&](const IncomingEvent &event) { events.push_back(event); });
  EXPECT_EQ(dispatched({.eventClass = eventClass, .eventID = 3}), errAEEventNotHandled);
  EXPECT_EQ(dispatched({.eventClass = 3, .eventID = eventID}), errAEEventNotHandled);
  EXPECT_TRUE(events.empty());
  const auto data = platform::SharedBytes::copyOf(std::as_bytes(std::span("text", 4)));
  ASSERT_TRUE(data);
  EXPECT_EQ(dispatched({.eventClass = eventClass,
                        .eventID = eventID,
                        .parameters = {{keyDirectObject, typeChar, *data}},
                        .wantsReply = true}),
            noErr);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].parameters.at(0).data.size(), 4U);
  EXPECT_TRUE(events[0].wantsReply);
}

TEST_F(HandlersWithoutCocoa, TheOneSetLastIsCalled) {
  std::string calls;
  platform::setEventHandler(eventClass, eventID, [&](const IncomingEvent &) { calls += '1'; });
  platform::setEventHandler(eventClass, eventID, [&](const IncomingEvent &) { calls += '2'; });
  EXPECT_EQ(dispatched(), noErr);
  EXPECT_EQ(calls, "2");
  platform::removeEventHandler(eventClass, eventID);
  EXPECT_EQ(dispatched(), errAEEventNotHandled);
}

TEST_F(HandlersWithoutCocoa, AHandlerMayRemoveItself) {
  const std::string text(100, 'x');
  std::string seen;
  platform::setEventHandler(eventClass, eventID, [text, &seen](const IncomingEvent &) {
    platform::removeEventHandler(eventClass, eventID);
    seen = text;
  });
  EXPECT_EQ(dispatched(), noErr);
  EXPECT_EQ(seen, text);
  EXPECT_EQ(dispatched(), errAEEventNotHandled);
}

TEST_F(HandlersWithoutCocoa, AnExceptionIsToldInOneLineAndAnswered) {
  platform::setEventHandler(eventClass, eventID,
                            [](const IncomingEvent &) { throw std::runtime_error("broken"); });
  testing::internal::CaptureStderr();
  EXPECT_EQ(dispatched(), errAEEventFailed);
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_THAT(log, HasSubstr("was left by an exception: broken\n"));
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1);
}

}  // namespace
