// A host that does everything wrong, one thing at a time: each call that the plug-in makes to it
// during each request goes wrong in each way. The request then ends in one of its documented ways,
// with nothing left behind, and the next one is served as ever.

#import "Support/HostileHost.h"
#import "Support/RequestTest.h"

#include <Tests/Support/Effort.h>

#include <iostream>

namespace plugin_test {
namespace {

class MisbehavingHost : public RequestTest {
 protected:
  MisbehavingHost() {
    // Between the plug-in and the host that it would otherwise meet.
    [agentClass_ setAdapter:(id)[InterposedObject before:host_]];
    useInDialog([InterposedObject before:chosenStyle_]);
  }
  ~MisbehavingHost() override {
    hostCalls().begin();
    [agentClass_ setAdapter:host_];
    std::cout << "[ requests ] " << delivered_ << '\n';
  }

  Outcome deliver(const GoldenRequest &request) {
    ++delivered_;
    return RequestTest::deliver(request);
  }

  // What the request does when nothing goes wrong; leaves the number of calls in hostCalls().
  Outcome goldenOutcome(const GoldenRequest &request) {
    hostCalls().begin();
    const Outcome golden = deliver(request);
    EXPECT_EQ(fault(request.eventID, request.payload, golden), "") << request.name << golden;
    return golden;
  }

  void expectUnharmed(const GoldenRequest &request, const Outcome &golden,
                      const std::string &what) {
    hostCalls().begin();
    if ([agentClass_ adapter] == nil) {
      [agentClass_ setAdapter:(id)[InterposedObject before:host_]];
    }
    EXPECT_EQ(deliver(request), golden) << "after " << what;
  }

  // The chosen call of the request goes wrong, then the request is made again with nothing wrong.
  void expectMastered(const GoldenRequest &request, const Outcome &golden, std::size_t call,
                      const Misbehaviour &misbehaviour, bool andAllThatFollow) {
    hostCalls().begin(call, &misbehaviour, andAllThatFollow);
    const std::size_t alive = [InterposedObject alive];
    const Outcome outcome = deliver(request);
    const HostCalls seen = hostCalls();
    if (!seen.wentWrong) {
      return;
    }
    EXPECT_LE([InterposedObject alive], alive) << request.name << ", " << misbehaviour.name;
    const std::string what = request.name + ", call " + std::to_string(call) + " " +
                             seen.chosenCall + " " + misbehaviour.name;
    const std::string wrong =
        faultInForm(request.eventID, request.payload, outcome, misbehaviour.throws);
    if (!wrong.empty()) {
      ADD_FAILURE() << what << ": " << wrong << '\n' << outcome;
    }
    expectUnharmed(request, golden, what);
  }

  std::size_t delivered_ = 0;
};

TEST_F(MisbehavingHost, EveryCallOfEveryRequestMayGoWrongInEveryWay) {
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    const std::size_t calls = hostCalls().count;
    for (std::size_t call = 1; call <= calls; call += test_support::effort(1, 3)) {
      for (const Misbehaviour &misbehaviour : misbehaviours()) {
        if (!misbehaviour.isLarge) {
          expectMastered(request, golden, call, misbehaviour, false);
        }
      }
    }
  }
}

TEST_F(MisbehavingHost, EveryCallMayBeAnsweredWithTenThousandAndWithAMebibyte) {
  for (const char *name : {"insertion", "lookup of two matches", "preliminary scan of one",
                           "final scan by dialog", "live bibliography of one"}) {
    const GoldenRequest &request = goldenRequestNamed(name);
    const Outcome golden = goldenOutcome(request);
    const std::size_t calls = hostCalls().count;
    for (std::size_t call = 1; call <= calls; ++call) {
      for (const Misbehaviour &misbehaviour : misbehaviours()) {
        if (misbehaviour.isLarge) {
          expectMastered(request, golden, call, misbehaviour, false);
        }
      }
    }
  }
}

// As when the host's database is closed under it: from one call on, nothing works.
TEST_F(MisbehavingHost, EveryCallFromAnyOnMayGoWrong) {
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    const std::size_t calls = hostCalls().count;
    for (std::size_t call = 1; call <= calls; ++call) {
      for (const char *name :
           {"leaves the call undone", "answers with an object of another class",
            "answers with null objects inside", "answers with lone surrogates"}) {
        expectMastered(request, golden, call, misbehaviourNamed(name), true);
      }
    }
  }
}

// Where the host's assertion handler returns instead of raising, the answer goes out all the same,
// in the size that was measured; a text that has changed meanwhile writes nothing outside of it.
TEST_F(MisbehavingHost, TextsThatChangeWhileTheyAreCopiedStayInsideTheBuffer) {
  assertions_->raises = NO;
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    const std::size_t calls = hostCalls().count;
    for (std::size_t call = 1; call <= calls; ++call) {
      for (const char *name : {"answers with longer text", "answers with shorter text",
                               "answers with nothing in it"}) {
        hostCalls().begin(call, &misbehaviourNamed(name));
        assertions_->errors.clear();
        const Outcome outcome = deliver(request);
        const HostCalls seen = hostCalls();
        if (seen.wentWrong && assertions_->errors.empty()) {
          EXPECT_EQ(faultInForm(request.eventID, request.payload, outcome, false), "")
              << request.name << ", " << seen.chosenCall << outcome;
        }
        EXPECT_LE(outcome.events.size() + (outcome.reply ? 1 : 0), 1u);
        expectUnharmed(request, golden, request.name + ", " + seen.chosenCall);
      }
    }
  }
}

// The host closes down and takes its adapter away while it is asked something.
TEST_F(MisbehavingHost, TheAdapterMayBeReplacedDuringEveryCall) {
  static Class agentClass = agentClass_;
  static const Misbehaviour replacing = {"replaces the adapter", false, [](NSInvocation *call) {
                                           [agentClass setAdapter:nil];
                                           [call invoke];
                                           return true;
                                         }};
  for (const GoldenRequest &request : goldenRequests()) {
    const Outcome golden = goldenOutcome(request);
    const std::size_t calls = hostCalls().count;
    for (std::size_t call = 1; call <= calls; ++call) {
      // Held by nobody but the agent.
      NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
      [agentClass_ setAdapter:(id)[InterposedObject before:host_]];
      [pool drain];
      expectMastered(request, golden, call, replacing, false);
    }
  }
}

TEST_F(MisbehavingHost, ADialogThatFailsIsClosedAndTheHostGoesBackToWhereItWas) {
  const GoldenRequest &request = goldenRequestNamed("final scan by dialog");
  const Outcome golden = goldenOutcome(request);
  duringModalLoop() = [] { [NSException raise:@"HostFailure" format:@"while the dialog runs"]; };
  const Outcome outcome = deliver(request);
  EXPECT_EQ(faultInForm(request.eventID, request.payload, outcome, true), "");
  EXPECT_THAT(outcome.calls,
              testing::ElementsAre("isHidden", "activateIgnoringOtherApps YES", "openDialog",
                                   "center", "makeKeyAndOrderFront", "orderFrontRegardless",
                                   "runModal", "close", "deactivate", "send Rmcr", "activate"));
  application_->hidden = YES;
  EXPECT_THAT(deliver(request).calls,
              testing::ElementsAre("isHidden", "unhide", "openDialog", "center",
                                   "makeKeyAndOrderFront", "orderFrontRegardless", "runModal",
                                   "close", "hide", "send Rmcr", "activate"));
  application_->hidden = NO;
  duringModalLoop() = {};
  EXPECT_EQ(deliver(request), golden);
}

}  // namespace
}  // namespace plugin_test
