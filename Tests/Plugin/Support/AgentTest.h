// The agent of the real bundle between a recording host and a recording carrier.
//
// The bundle is loaded, not compiled in: what is tested is what is shipped, with its resources; the
// private methods are reached as every method is, by messages.
#pragma once

#include "LogCapture.h"
#import "RecordingAssertionHandler.h"
#import "RecordingHost.h"
#import "ReplacedMethod.h"
#include "Text.h"

#include <Tests/Support/CallLog.h>
#import <Tests/Support/RecordingApplication.h>
#include <Tests/Support/RecordingCarrier.h>

#import <Cocoa/Cocoa.h>
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#import <KorvoMellelAgent+Private.h>

namespace plugin_test {

using test_support::calls;
using test_support::duringModalLoop;
using test_support::logCall;

// What the plug-in did at the very first message to its class.
struct StartUp {
  std::vector<platform::InstalledHandler> handlers;
  std::vector<platform::OutgoingEvent> sent;
  // How many handlers were installed when the first event was sent.
  std::size_t handlersAtFirstSend;
};
const StartUp &startUp();

// Releases the object; whether it has come to its end and told its superclass.
bool endsWithItsRelease(id object);

OSType code(const char (&characters)[5]);
std::string characters(OSType code);

class AgentTest : public testing::Test {
 protected:
  // Each test has an agent of its own, as fresh as after the start of the host.
  AgentTest();
  ~AgentTest() override;

  using Answer = test_support::RecordingCarrier::Answer;
  Answer deliver(const char (&eventID)[5], std::optional<std::string_view> payload,
                 bool wantsReply = false);

  // The agent's instance variables.
  uint64_t documentID() const;
  void setDocumentID(uint64_t value);
  bool generatesBibliography() const;
  void setGeneratesBibliography(bool value);
  bool hasGivenLibraryAdvice() const;

  std::string payloadSent(std::size_t index = 0) const;
  // "PREF", "SCNR" … of the events sent, in order.
  std::vector<std::string> eventsSent() const;
  // The calls that begin with one of these words.
  static std::vector<std::string> callsOf(std::initializer_list<std::string_view> words);

  Class agentClass_ = Nil;
  KorvoMellelAgent *agent_ = nil;
  test_support::RecordingCarrier carrier_;
  ProcessSerialNumber mellel_{};
  RecordingHost *host_ = nil;
  RecordingApplication *application_ = nil;
  RecordingAssertionHandler *assertions_ = nil;
  std::unique_ptr<LogCapture> log_;

 private:
  NSAutoreleasePool *pool_ = nil;
  NSApplication *realApplication_ = nil;
};

// While it lives the agent cannot allocate an outgoing payload.
class NoMemory : public ReplacedMethod {
 public:
  explicit NoMemory(Class agentClass);
};

// While it lives the scan dialog is a scripted one.
class ScriptedDialog {
 public:
  ScriptedDialog(int32_t action, id style, bool hasWindow = true);
  ~ScriptedDialog();

 private:
  ReplacedMethod open_;
};

}  // namespace plugin_test
