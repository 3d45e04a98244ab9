#import "AgentTest.h"

#include <cstdlib>

namespace plugin_test {
namespace {

ScriptedScanController *scripted = nil;

id openScriptedDialog(id, SEL, id) {
  logCall("openDialog");
  return scripted;
}

void *allocateNothing(id, SEL, std::size_t) { return nullptr; }

id awaitedEnd = nil;
void (*inheritedDealloc)() = nullptr;  // as no particular type of function

void end(id object, SEL selector) {
  if (object == awaitedEnd) {
    awaitedEnd = nil;
  }
  reinterpret_cast<void (*)(id, SEL)>(inheritedDealloc)(object, selector);
}

// Another build of the plug-in has to pass the same tests.
NSBundle *bundle() {
  const char *path = std::getenv("KORVO_PLUGIN_BUNDLE");
  return [NSBundle
      bundleWithPath:[NSString stringWithUTF8String:path != nullptr ? path : PLUGIN_BUNDLE]];
}

Class metaClassOfDialog() { return object_getClass(NSClassFromString(@"KOMellelScanController")); }

}  // namespace

const StartUp &startUp() {
  static const StartUp result = [] {
    NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
    test_support::RecordingCarrier carrier;
    std::optional<std::size_t> handlersAtFirstSend;
    carrier.onSend = [&](const platform::OutgoingEvent &) {
      handlersAtFirstSend = handlersAtFirstSend.value_or(platform::installedEventHandlers().size());
    };
    [[bundle() principalClass] class];
    const StartUp started{platform::installedEventHandlers(), carrier.sent,
                          handlersAtFirstSend.value_or(0)};
    [pool drain];
    return started;
  }();
  return result;
}

bool endsWithItsRelease(id object) {
  // GCC's runtime does not tell subclasses of a method that is replaced: so the superclass gets its
  // own.
  const Class superclass = class_getSuperclass(object_getClass(object));
  const Method inherited = class_getInstanceMethod(superclass, @selector(dealloc));
  const IMP implementation = method_getImplementation(inherited);
  inheritedDealloc = reinterpret_cast<void (*)()>(implementation);
  class_addMethod(superclass, @selector(dealloc), implementation,
                  method_getTypeEncoding(inherited));
  const ReplacedMethod dealloc(superclass, @selector(dealloc), asMethod(end));
  awaitedEnd = object;
  [object release];
  return awaitedEnd == nil;
}

OSType code(const char (&characters)[5]) {
  OSType value = 0;
  for (int index = 0; index < 4; ++index) {
    value = value << 8 | static_cast<unsigned char>(characters[index]);
  }
  return value;
}

std::string characters(OSType code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    text += static_cast<char>(code >> shift & 0xFF);
  }
  return text;
}

AgentTest::AgentTest() {
  startUp();
  pool_ = [[NSAutoreleasePool alloc] init];
  agentClass_ = NSClassFromString(@"KorvoMellelAgent");
  [[agentClass_ defaultInstance] release];
  [agentClass_ initialize];
  agent_ = [agentClass_ defaultInstance];
  carrier_.sent.clear();
  mellel_ = carrier_.addProcess(code("mLeL"));
  carrier_.onSend = [](const platform::OutgoingEvent &event) {
    logCall("send " + characters(event.eventID));
  };
  carrier_.onActivate = [](ProcessSerialNumber) { logCall("activate"); };
  host_ = [[RecordingHost alloc] init];
  [agentClass_ setAdapter:host_];
  realApplication_ = NSApp;
  application_ = [[RecordingApplication alloc] init];
  NSApp = reinterpret_cast<NSApplication *>(application_);
  assertions_ = [[RecordingAssertionHandler alloc] init];
  [[[NSThread currentThread] threadDictionary] setObject:assertions_ forKey:NSAssertionHandlerKey];
  hostScript() = {};
  duringModalLoop() = {};
  calls().clear();
  log_ = std::make_unique<LogCapture>();
}

AgentTest::~AgentTest() {
  log_.reset();
  [[[NSThread currentThread] threadDictionary] removeObjectForKey:NSAssertionHandlerKey];
  [assertions_ release];
  NSApp = realApplication_;
  [application_ release];
  [agentClass_ setAdapter:nil];
  [host_ release];
  [pool_ drain];
}

AgentTest::Answer AgentTest::deliver(const char (&eventID)[5],
                                     std::optional<std::string_view> payload, bool wantsReply) {
  const Answer answer = carrier_.deliver(code("mLeL"), code(eventID), payload, wantsReply);
  // The dispatch has a net for handlers that exceptions leave. None of the plug-in's needs it.
  EXPECT_NE(answer.status, errAEEventFailed) << eventID << " was left by an exception";
  return answer;
}

uint64_t AgentTest::documentID() const {
  return [[(id)agent_ valueForKey:@"documentID"] unsignedLongLongValue];
}

void AgentTest::setDocumentID(uint64_t value) {
  [(id)agent_ setValue:[NSNumber numberWithUnsignedLongLong:value] forKey:@"documentID"];
}

bool AgentTest::generatesBibliography() const {
  return [[(id)agent_ valueForKey:@"generateBibliography"] boolValue];
}

void AgentTest::setGeneratesBibliography(bool value) {
  [(id)agent_ setValue:[NSNumber numberWithBool:value] forKey:@"generateBibliography"];
}

bool AgentTest::hasGivenLibraryAdvice() const {
  return [[(id)agent_ valueForKey:@"displayedWrongLibraryMessage"] boolValue];
}

std::string AgentTest::payloadSent(std::size_t index) const {
  return test_support::RecordingCarrier::directObject(carrier_.sent.at(index)).value_or("(none)");
}

std::vector<std::string> AgentTest::eventsSent() const {
  std::vector<std::string> events;
  for (const platform::OutgoingEvent &event : carrier_.sent) {
    events.push_back(characters(event.eventID));
  }
  return events;
}

std::vector<std::string> AgentTest::callsOf(std::initializer_list<std::string_view> words) {
  std::vector<std::string> chosen;
  for (const std::string &call : calls()) {
    for (const std::string_view word : words) {
      if (call.starts_with(word)) {
        chosen.push_back(call);
        break;
      }
    }
  }
  return chosen;
}

NoMemory::NoMemory(Class agentClass)
    : ReplacedMethod(agentClass, @selector(allocateOutgoingBytes:), asMethod(allocateNothing)) {}

ScriptedDialog::ScriptedDialog(int32_t action, id style, bool hasWindow)
    : open_(metaClassOfDialog(), @selector(openMellelScanControllerWithAdapter:),
            asMethod(openScriptedDialog)) {
  scripted = [[ScriptedScanController alloc] init];
  scripted->scriptedWindow = hasWindow ? [[RecordingWindow alloc] init] : nil;
  scripted->action = action;
  scripted->style = style;
}

ScriptedDialog::~ScriptedDialog() {
  [scripted release];
  scripted = nil;
}

}  // namespace plugin_test
