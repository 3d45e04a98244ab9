// No memory: during each request each block that is asked for is refused in turn. The request ends
// in one of its documented ways, everything that it had is given back, and the next is served as
// ever.

#include "Support/FailingAllocator.h"
#import "Support/RequestTest.h"

#include <iostream>

namespace plugin_test {
namespace {

using Asked = FailingAllocator::Asked;
using Refuses = FailingAllocator::Refuses;

class AllocationFailure : public RequestTest {
 protected:
  ~AllocationFailure() override { std::cout << "[ requests ] " << delivered_ << '\n'; }

  struct Served {
    Outcome outcome;
    std::size_t asked = 0;
    bool wasRefused = false;
  };

  // The memory is short for the agent and for what it calls, not for this test.
  Served serve(const GoldenRequest &request, Asked who, std::size_t refused,
               Refuses refuses = Refuses::one) {
    ++delivered_;
    Served served;
    served.outcome = deliver(request.eventID, request.payload, typeChar,
                             [&](const std::function<void()> &dispatch) {
                               const FailingAllocator allocator(who, refused, refuses);
                               dispatch();
                             });
    served.asked = FailingAllocator::asked();
    served.wasRefused = FailingAllocator::hasRefused();
    return served;
  }

  Outcome goldenOutcome(const GoldenRequest &request) {
    const Outcome golden = serve(request, Asked::byAnybody, 0).outcome;
    EXPECT_EQ(fault(request.eventID, request.payload, golden), "") << request.name << golden;
    return golden;
  }

  // Blocks that exist after the request was served as it should be.
  std::size_t aliveAfterServing(const GoldenRequest &request, const Outcome &golden) {
    EXPECT_EQ(serve(request, Asked::byAnybody, 0).outcome, golden);
    forget();
    return FailingAllocator::alive();
  }

  void refuse(const GoldenRequest &request, Asked who, std::size_t number, Refuses refuses,
              bool isStrict) {
    const Served served = serve(request, who, number, refuses);
    EXPECT_TRUE(served.wasRefused);
    EXPECT_LE(served.outcome.events.size() + (served.outcome.reply ? 1 : 0), 1u) << served.outcome;
    if (isStrict) {
      EXPECT_EQ(faultInForm(request.eventID, request.payload, served.outcome, false), "")
          << served.outcome;
    }
  }

  void refuseEach(Asked who, Refuses refuses, bool isStrict) {
    for (const GoldenRequest &request : goldenRequests()) {
      const Outcome golden = goldenOutcome(request);
      const std::size_t asked = serve(request, who, 0).asked;
      total_ += asked;
      for (std::size_t number = 1; number <= asked; ++number) {
        SCOPED_TRACE(request.name + ", block " + std::to_string(number));
        const std::size_t alive = aliveAfterServing(request, golden);
        refuse(request, who, number, refuses, isStrict);
        EXPECT_EQ(aliveAfterServing(request, golden), alive);
      }
    }
  }

  std::size_t delivered_ = 0;
  std::size_t total_ = 0;
};

TEST_F(AllocationFailure, EveryBlockThatThePluginAsksForMayBeRefused) {
  refuseEach(Asked::byPlugin, Refuses::one, true);
  EXPECT_GT(total_, 50u);
}

TEST_F(AllocationFailure, ThePluginMayGetNoMoreMemoryFromAnyBlockOn) {
  refuseEach(Asked::byPlugin, Refuses::allThatFollow, true);
}

// Also what carries the answer: it may be lost on the way, as any event may.
TEST_F(AllocationFailure, EveryBlockThatAnybodyAsksForMayBeRefused) {
  refuseEach(Asked::byAnybody, Refuses::one, false);
}

TEST_F(AllocationFailure, NobodyMayGetMoreMemoryFromAnyBlockOn) {
  refuseEach(Asked::byAnybody, Refuses::allThatFollow, false);
}

TEST_F(AllocationFailure, WithoutAnOutgoingBufferTheRequestIsCancelled) {
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    {
      const NoMemory noMemory(agentClass_);
      const Outcome outcome = serve(request, Asked::byAnybody, 0).outcome;
      if (request.eventID == "PRSQ" || request.eventID == "SCNQ" || request.eventID == "LVBQ") {
        EXPECT_EQ(outcome.events, std::vector<std::string>{"Rmcr"}) << request.name;
        EXPECT_EQ(outcome.reply, std::nullopt) << request.name;
      } else if (request.eventID == "FIND") {
        EXPECT_EQ(faultInForm(request.eventID, request.payload, outcome, true), "");
      } else {
        EXPECT_EQ(outcome, golden) << request.name;
      }
    }
    EXPECT_EQ(serve(request, Asked::byAnybody, 0).outcome, golden);
  }
}

}  // namespace
}  // namespace plugin_test
