// Events to Mellel, its process, the handshake, and the host's windows after a scan.

#import "Support/AgentTest.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>

@interface NamedWindow : RecordingWindow {
 @public
  std::string name;
}
@end

@implementation NamedWindow
- (void)setLevel:(NSInteger)level {
  plugin_test::logCall("setLevel " + std::to_string(level) + " of " + name);
  windowLevel = level;
}
@end

namespace plugin_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

class Transport : public AgentTest {};

const std::string preferences = "\0\0\0\5\0\0\xFF\xFF\0\0\0\0\0\1"s;

TEST_F(Transport, EventsAreAddressedBySignatureAndWantNoReply) {
  EXPECT_EQ([agent_ sendAppleEventWithClass:code("clas")
                                    eventID:code("evnt")
                                     buffer:"a\0b"
                                 bufferSize:3],
            noErr);
  ASSERT_EQ(carrier_.sent.size(), 1u);
  const platform::OutgoingEvent &event = carrier_.sent[0];
  EXPECT_EQ(event.targetSignature, code("mLeL"));
  EXPECT_EQ(event.eventClass, code("clas"));
  EXPECT_EQ(event.eventID, code("evnt"));
  EXPECT_EQ(event.returnID, -1);
  EXPECT_EQ(event.transactionID, 0);
  EXPECT_FALSE(event.wantsReply);
  EXPECT_EQ(event.timeOutInTicks, -2);
  ASSERT_EQ(event.parameters.size(), 1u);
  EXPECT_EQ(event.parameters[0].keyword, code("----"));
  EXPECT_EQ(event.parameters[0].type, code("TEXT"));
  EXPECT_EQ(payloadSent(), "a\0b"s);
}

TEST_F(Transport, NullBufferSendsAnEventWithoutParameters) {
  EXPECT_EQ([agent_ sendAppleEventWithClass:code("mLeL")
                                    eventID:code("evnt")
                                     buffer:nullptr
                                 bufferSize:7],
            noErr);
  ASSERT_EQ(carrier_.sent.size(), 1u);
  EXPECT_TRUE(carrier_.sent[0].parameters.empty());
}

TEST_F(Transport, EmptyBufferIsAnEmptyDirectObject) {
  [agent_ sendAppleEventWithClass:code("mLeL") eventID:code("evnt") buffer:"" bufferSize:0];
  ASSERT_EQ(carrier_.sent[0].parameters.size(), 1u);
  EXPECT_EQ(payloadSent(), "");
}

TEST_F(Transport, OutgoingBytesAreZeroAndNoMoreThanAskedFor) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{14}, std::size_t{1'000'000}}) {
    char *bytes = static_cast<char *>([agent_ allocateOutgoingBytes:size]);
    EXPECT_EQ(std::count(bytes, bytes + size, '\0'), static_cast<std::ptrdiff_t>(size));
    constexpr std::size_t roundedUp = 8192;
    EXPECT_LE(malloc_usable_size(bytes), size + roundedUp);
    std::free(bytes);
  }
}

TEST_F(Transport, FailedSendReturnsItsStatusAndLogsNothing) {
  for (const OSStatus status : {procNotFound, errAEEventNotPermitted}) {
    carrier_.sendResult = std::unexpected(status);
    EXPECT_EQ([agent_ sendAppleEventWithClass:code("mLeL")
                                      eventID:code("evnt")
                                       buffer:"a"
                                   bufferSize:1],
              status);
  }
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(Transport, PutThatFailsEndsTheSequenceBeforeTheSend) {
  const auto impossibleSize = static_cast<uint64_t>(-1);
  EXPECT_EQ([agent_ sendAppleEventWithClass:code("mLeL")
                                    eventID:code("evnt")
                                     buffer:"a"
                                 bufferSize:impossibleSize],
            paramErr);
  EXPECT_THAT(carrier_.sent, IsEmpty());
}

TEST_F(Transport, FindsTheFirstProcessOfASignature) {
  carrier_.running.clear();
  carrier_.addProcess(code("aaaa"));
  const ProcessSerialNumber first = carrier_.addProcess(code("bbbb"));
  carrier_.addProcess(code("bbbb"));
  const ProcessSerialNumber found = [agent_ getProcessWithSignature:code("bbbb")];
  EXPECT_EQ(found.lowLongOfPSN, first.lowLongOfPSN);
  EXPECT_EQ(found.highLongOfPSN, first.highLongOfPSN);
}

void expectNoProcess(ProcessSerialNumber number) {
  EXPECT_EQ(number.highLongOfPSN, 0u);
  EXPECT_EQ(number.lowLongOfPSN, 0u);
}

TEST_F(Transport, WithoutMellelThereIsNoProcessAndNothingIsActivatedOrLogged) {
  carrier_.running.clear();
  carrier_.addProcess(code("othr"));
  expectNoProcess([agent_ getProcessWithSignature:code("mLeL")]);
  EXPECT_EQ([agent_ activateMellel], NO);
  EXPECT_THAT(log_->lines(), IsEmpty());
  EXPECT_THAT(carrier_.activated, IsEmpty());
}

TEST_F(Transport, EnumerationThatFailsFindsNoProcess) {
  carrier_.enumerationStatus = connectionInvalid;
  expectNoProcess([agent_ getProcessWithSignature:code("mLeL")]);
}

TEST_F(Transport, InformationThatCannotBeReadEndsTheSearch) {
  carrier_.running.clear();
  carrier_.ended = {carrier_.addProcess(code("othr"))};
  carrier_.addProcess(code("mLeL"));
  expectNoProcess([agent_ getProcessWithSignature:code("mLeL")]);
}

TEST_F(Transport, ActivationBringsMellelToTheFront) {
  EXPECT_EQ([agent_ activateMellel], YES);
  ASSERT_EQ(carrier_.activated.size(), 1u);
  EXPECT_EQ(carrier_.activated[0].lowLongOfPSN, mellel_.lowLongOfPSN);
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(Transport, FailedActivationIsLoggedWithItsStatus) {
  carrier_.activationStatus = -606;
  EXPECT_EQ([agent_ activateMellel], NO);
  EXPECT_THAT(log_->lines(), ElementsAre("KorvoMellelAgent.activateMellel: Error .......-606,0"));
}

TEST_F(Transport, CancelCarriesTheLowHalfOfTheDocumentIDAndActivatesMellel) {
  setDocumentID(0x100000007);
  [agent_ sendCancel];
  EXPECT_THAT(eventsSent(), ElementsAre("Rmcr"));
  EXPECT_EQ(carrier_.sent[0].eventClass, code("mLeL"));
  EXPECT_EQ(payloadSent(), "\0\0\0\0\0\7"s);
  EXPECT_THAT(calls(), ElementsAre("send Rmcr", "activate"));
}

TEST_F(Transport, CancelThatCannotBeSentStillActivatesMellel) {
  carrier_.sendResult = std::unexpected(OSStatus{procNotFound});
  [agent_ sendCancel];
  EXPECT_EQ(carrier_.activated.size(), 1u);
  EXPECT_THAT(log_->lines(), IsEmpty());
}

TEST_F(Transport, PreferencesAreFourteenFixedBytes) {
  [agent_ sendPreferences];
  EXPECT_THAT(eventsSent(), ElementsAre("PREF"));
  EXPECT_EQ(payloadSent(), preferences);
  EXPECT_EQ(carrier_.sent[0].parameters[0].type, code("TEXT"));
  EXPECT_FALSE(carrier_.sent[0].wantsReply);
  EXPECT_EQ(carrier_.sent[0].timeOutInTicks, -2);
  EXPECT_THAT(carrier_.activated, IsEmpty());
}

TEST_F(Transport, PreferencesThatCannotBeSentAreLoggedWithTheStatus) {
  carrier_.sendResult = std::unexpected(OSStatus{procNotFound});
  [agent_ sendPreferences];
  EXPECT_THAT(log_->lines(),
              ElementsAre("KorvoMellelAgent.sendPreferences: Error sending message -600"));
}

TEST_F(Transport, AnyHandshakeSendsThePreferencesExactlyOnce) {
  for (const std::optional<std::string> &payload :
       {std::optional("\0\5\0\1"s), std::optional(""s), std::optional("\1"s),
        std::optional("much longer than needed"s), std::optional<std::string>()}) {
    carrier_.sent.clear();
    const Answer answer = deliver("IMHR", payload, true);
    EXPECT_EQ(answer.status, noErr);
    EXPECT_FALSE(answer.directObject());
    EXPECT_THAT(eventsSent(), ElementsAre("PREF"));
    EXPECT_EQ(payloadSent(), preferences);
  }
  EXPECT_THAT(log_->lines(), IsEmpty());
  EXPECT_THAT(carrier_.activated, IsEmpty());
}

struct WindowCase {
  const char *delegateClass;
  NSInteger level;
  NSInteger levelAfterwards;
};

TEST_F(Transport, OnlyTheHostsOwnWindowsAtTheModalLevelAreBroughtBack) {
  const WindowCase cases[] = {{"KOMainWindowController", 8, 0},
                              {"KOReferenceEditorWindowController", 8, 0},
                              {"KOMainWindowController", 3, 3},
                              {"KOMainWindowController", 0, 0},
                              {"KOMainWindowController", 100, 100},
                              {"KOMainWindowControllerOfAnother", 8, 8},
                              {"NSObject", 8, 8},
                              {"", 8, 8}};
  for (const WindowCase &each : cases) {
    RecordingWindow *window = [[[RecordingWindow alloc] init] autorelease];
    window->windowDelegate = [[[NSClassFromString(ns(each.delegateClass)) alloc] init] autorelease];
    window->windowLevel = each.level;
    [application_->allWindows addObject:window];
  }
  [agent_ makeSureNextWindowIsNotStuck];
  for (std::size_t index = 0; index < std::size(cases); ++index) {
    RecordingWindow *window = [application_->allWindows objectAtIndex:index];
    EXPECT_EQ(window->windowLevel, cases[index].levelAfterwards) << index;
  }
  EXPECT_THAT(calls(), ElementsAre("setLevel 0", "setLevel 0"));
}

TEST_F(Transport, StuckWindowsAreBroughtBackInTheOrderOfTheApplication) {
  for (const char *name : {"first", "second", "third"}) {
    NamedWindow *window = [[[NamedWindow alloc] init] autorelease];
    window->name = name;
    window->windowDelegate = [[[KOMainWindowController alloc] init] autorelease];
    window->windowLevel = 8;
    [application_->allWindows addObject:window];
  }
  [agent_ makeSureNextWindowIsNotStuck];
  EXPECT_THAT(calls(),
              ElementsAre("setLevel 0 of first", "setLevel 0 of second", "setLevel 0 of third"));
}

TEST_F(Transport, WithoutWindowsNothingIsStuck) {
  [agent_ makeSureNextWindowIsNotStuck];
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(Transport, RefusedPermissionIsSaidWhenAConversationBegins) {
  carrier_.sendResult = std::unexpected(OSStatus{errAEEventNotPermitted});
  deliver("IMHR", "\0\5\0\1");
  ASSERT_EQ(log_->lines().size(), 2u);
  EXPECT_EQ(log_->lines()[0], "KorvoMellelAgent.sendPreferences: Error sending message -1743");
  EXPECT_NE(log_->lines()[1].find("Automation"), std::string::npos) << log_->lines()[1];
}

}  // namespace
}  // namespace plugin_test
