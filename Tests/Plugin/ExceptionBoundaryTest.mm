// No exception leaves the plug-in where the system called it: each handler, the class's start and
// the agent's end, with exceptions of every kind.

#import "Support/HostileHost.h"
#import "Support/RequestTest.h"

#import <Tests/Support/Unspeakable.h>

#include <exception>
#include <new>

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

struct Kind {
  const char *misbehaviour;
  std::string reason;
  void (*raise)();
};

const Kind kinds[] = {
    {"raises an NSException", "HostFailure: the host's database is gone",
     [] { [NSException raise:@"HostFailure" format:@"the host's database is gone"]; }},
    {"throws a std::bad_alloc", "std::bad_alloc", [] { throw std::bad_alloc(); }},
    {"throws an int", "an object that is no std::exception", [] { throw 42; }},
};

const Kind *raised = nullptr;
void raiseIt(id, SEL) { raised->raise(); }
void raiseWhileLogging(NSString *) { raised->raise(); }
void throwUnspeakable(id, SEL) { @throw [[[Unspeakable alloc] init] autorelease]; }

class ExceptionBoundary : public RequestTest {
 protected:
  ExceptionBoundary() { [agentClass_ setAdapter:(id)[InterposedObject before:host_]]; }
  ~ExceptionBoundary() override { hostCalls().begin(); }

  // The first call to the host goes wrong.
  Answer deliverTo(const GoldenRequest &request, const Kind &kind) {
    forget();
    hostCalls().begin(1, &misbehaviourNamed(kind.misbehaviour));
    OSType eventID = 0;
    for (const char character : request.eventID) {
      eventID = eventID << 8 | static_cast<unsigned char>(character);
    }
    const Answer answer = carrier_.deliver(code("mLeL"), eventID, request.payload, true);
    EXPECT_TRUE(hostCalls().wentWrong) << request.name;
    hostCalls().begin();
    return answer;
  }
};

std::string line(const std::string &method, const std::string &event, const Kind &kind) {
  return "KorvoMellelAgent." + method + ": event '" + event +
         "' was ended by an exception: " + kind.reason;
}

TEST_F(ExceptionBoundary, HandlersThatAskTheHostEndInThemselvesAndSayWhy) {
  const struct {
    const char *request;
    const char *method;
    Strings events;
    std::size_t activations;
  } cases[] = {
      {"insertion", "handleFindStringEvent", {}, 1},
      {"lookup", "handleFindCitationEvent", {}, 0},
      {"preliminary scan of one", "handlePreliminaryScanEvent", {"Rmcr"}, 1},
      {"final scan of one", "handleFinalScanEvent", {"Rmcr"}, 1},
      {"live bibliography of one", "handleCreateBibliographyEvent", {}, 0},
  };
  for (const auto &expected : cases) {
    const GoldenRequest &request = goldenRequestNamed(expected.request);
    const Outcome golden = RequestTest::deliver(request);
    for (const Kind &kind : kinds) {
      SCOPED_TRACE(request.name + ", " + kind.misbehaviour);
      const Answer answer = deliverTo(request, kind);
      EXPECT_EQ(answer.status, noErr);
      EXPECT_EQ(answer.errorNumber(), errAEEventFailed);
      EXPECT_EQ(answer.directObject(), std::nullopt);
      EXPECT_THAT(log_->lines(), ElementsAre(line(expected.method, request.eventID, kind)));
      EXPECT_EQ(eventsSent(), expected.events);
      EXPECT_EQ(carrier_.activated.size(), expected.activations);
      EXPECT_EQ(RequestTest::deliver(request), golden);
    }
  }
}

TEST_F(ExceptionBoundary, CancelNamesTheDocumentOfTheRequest) {
  deliverTo(goldenRequestNamed("preliminary scan of several"), kinds[0]);
  EXPECT_EQ(payloadSent(), std::string("\0\0\0\0\1\2", 6));
  deliverTo(goldenRequestNamed("final scan of several"), kinds[1]);
  EXPECT_EQ(payloadSent(), std::string("\0\0\0\0\1\2", 6));
}

TEST_F(ExceptionBoundary, CancelThatFailsAsWellIsLeftAtThat) {
  carrier_.onSend = [](const platform::OutgoingEvent &) { throw 42; };
  const Answer answer = deliverTo(goldenRequestNamed("final scan of one"), kinds[0]);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_EQ(log_->lines().size(), 1u);
}

TEST_F(ExceptionBoundary, WhoWantsNoReplyGetsNone) {
  hostScript().split = [](NSString *) -> NSArray * { throw 42; };
  const GoldenRequest &request = goldenRequestNamed("live bibliography of one");
  const Answer answer = AgentTest::deliver("LVBQ", *request.payload, false);
  EXPECT_EQ(answer.status, noErr);
  EXPECT_THAT(answer.parameters, IsEmpty());
  EXPECT_EQ(log_->lines().size(), 1u);
}

TEST_F(ExceptionBoundary, HandshakeEndsInItself) {
  for (const Kind &kind : kinds) {
    raised = &kind;
    const ReplacedMethod preferences(agentClass_, @selector(sendPreferences), asMethod(raiseIt));
    forget();
    const Answer answer = AgentTest::deliver("IMHR", "\0\5\0\1", true);
    EXPECT_EQ(answer.errorNumber(), errAEEventFailed);
    EXPECT_THAT(log_->lines(), ElementsAre(line("handleHandshakeEvent", "IMHR", kind)));
  }
}

// All that the retired scan does is a line in the log; so it is the log that fails.
TEST_F(ExceptionBoundary, RetiredScanEndsInItself) {
  for (const Kind &kind : kinds) {
    raised = &kind;
    forget();
    NSLog_printf_handler *const capturing = _NSLog_printf_handler;
    _NSLog_printf_handler = raiseWhileLogging;
    const Answer answer = AgentTest::deliver("Rmci", "anything", true);
    _NSLog_printf_handler = capturing;
    EXPECT_EQ(answer.status, noErr);
  }
}

TEST_F(ExceptionBoundary, StartOfTheClassEndsInItself) {
  for (const Kind &kind : kinds) {
    raised = &kind;
    const ReplacedMethod preferences(agentClass_, @selector(sendPreferences), asMethod(raiseIt));
    forget();
    [agentClass_ initialize];
    EXPECT_THAT(log_->lines(),
                ElementsAre("KorvoMellelAgent.initialize: ended by an exception: " + kind.reason));
  }
}

TEST_F(ExceptionBoundary, EndOfTheAgentEndsInItselfAndIsWhole) {
  for (const Kind &kind : kinds) {
    raised = &kind;
    const ReplacedMethod removal(agentClass_, @selector(unregisterMellelEventHandlers),
                                 asMethod(raiseIt));
    forget();
    EXPECT_TRUE(endsWithItsRelease([agentClass_ defaultInstance]));
    EXPECT_THAT(log_->lines(),
                ElementsAre("KorvoMellelAgent.dealloc: ended by an exception: " + kind.reason));
    [agentClass_ initialize];
  }
}

TEST_F(ExceptionBoundary, ObjectThatDoesNotSayWhatItIsIsLoggedAllTheSame) {
  const ReplacedMethod preferences(agentClass_, @selector(sendPreferences),
                                   asMethod(throwUnspeakable));
  const Answer answer = AgentTest::deliver("IMHR", "\0\5\0\1", true);
  EXPECT_EQ(answer.errorNumber(), errAEEventFailed);
  EXPECT_THAT(log_->lines(), ElementsAre("KorvoMellelAgent.handleHandshakeEvent: ended by an "
                                         "exception that does not say why"));
}

}  // namespace
}  // namespace plugin_test
