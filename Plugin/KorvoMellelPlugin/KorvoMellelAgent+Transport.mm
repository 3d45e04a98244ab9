#import "ExceptionBoundary.h"
#import "KorvoMellelAgent+Private.h"
#import "TextBridge.h"

#include <Formats/EventTable.h>
#include <Formats/SmallMessages.h>

#include <cstdlib>

namespace {

// A descriptor that is disposed of with its owner, filled or not.
struct OwnedDescriptor {
  AEDesc descriptor = {typeNull, nullptr};
  ~OwnedDescriptor() { AEDisposeDesc(&descriptor); }
};

// The level at which windows stay behind when a modal session ends under them (the modal panel
// level), and the one at which they belong.
constexpr NSInteger stuckWindowLevel = 8;
constexpr NSInteger normalWindowLevel = 0;

// The Process Manager's calls, deprecated on macOS since 10.9 and there all the same. What came
// after them knows processes by their bundles; Mellel is known by its signature, as it is in every
// event.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
OSErr advanceToNextProcess(ProcessSerialNumber &process) { return GetNextProcess(&process); }

OSErr readInformation(const ProcessSerialNumber &process, ProcessInfoRec &information) {
  return GetProcessInformation(&process, &information);
}

OSErr bringToFront(const ProcessSerialNumber &process) { return SetFrontProcess(&process); }
#pragma GCC diagnostic pop

}  // namespace

@implementation KorvoMellelAgent (Transport)

- (OSStatus)sendAppleEventWithClass:(AEEventClass)eventClass
                            eventID:(AEEventID)eventID
                             buffer:(const void *)buffer
                         bufferSize:(uint64_t)bufferSize {
  std::optional<std::string_view> payload;
  if (buffer != nullptr) {
    payload.emplace(static_cast<const char *>(buffer), bufferSize);
  }
  return [self sendAppleEventWithClass:eventClass
                               eventID:eventID
                        descriptorType:formats::textDescriptorType
                               payload:payload];
}

- (OSStatus)sendAppleEventWithClass:(AEEventClass)eventClass
                            eventID:(AEEventID)eventID
                     descriptorType:(DescType)descriptorType
                            payload:(std::optional<std::string_view>)payload {
  OwnedDescriptor target;
  OwnedDescriptor event;
  OwnedDescriptor reply;
  OSStatus status =
      AECreateDesc(typeApplSignature, &mellelSignature, sizeof mellelSignature, &target.descriptor);
  if (status == noErr) {
    status = AECreateAppleEvent(eventClass, eventID, &target.descriptor, kAutoGenerateReturnID,
                                kAnyTransactionID, &event.descriptor);
  }
  if (status == noErr && payload) {
    status = AEPutParamPtr(&event.descriptor, keyDirectObject, descriptorType, payload->data(),
                           static_cast<Size>(payload->size()));
  }
  if (status == noErr) {
    status = AESendMessage(&event.descriptor, &reply.descriptor, kAENoReply, kNoTimeOut);
  }
  return status;
}

- (ProcessSerialNumber)getProcessWithSignature:(OSType)signature {
  ProcessSerialNumber process = {0, kNoProcess};
  while (advanceToNextProcess(process) == noErr) {
    ProcessInfoRec information = {};
    information.processInfoLength = sizeof information;
    information.processName = nullptr;
    information.processAppRef = nullptr;
    if (readInformation(process, information) != noErr) {
      break;
    }
    if (information.processSignature == signature) {
      return process;
    }
  }
  return {0, kNoProcess};
}

- (BOOL)activateMellel {
  const ProcessSerialNumber mellel = [self getProcessWithSignature:mellelSignature];
  if (mellel.lowLongOfPSN == 0) {
    return NO;
  }
  const OSErr error = bringToFront(mellel);
  if (error != noErr) {
    NSLog(@"KorvoMellelAgent.activateMellel: Error .......%d,%d", error, 0);
    return NO;
  }
  return YES;
}

- (void)sendCancel {
  const auto payload = formats::encodeCancel(documentID);
  [self sendAppleEventWithClass:mellelSignature
                        eventID:formats::answer::cancel
                         buffer:payload.data()
                     bufferSize:payload.size()];
  [self activateMellel];
}

// The payload is constants of this version: nobody sets them, and none is a setting of the user's.
// What each of them means is Mellel's affair.
- (void)sendPreferences {
  const auto payload = formats::encodePreferences();
  const OSStatus status = [self sendAppleEventWithClass:mellelSignature
                                                eventID:formats::answer::preferences
                                                 buffer:payload.data()
                                             bufferSize:payload.size()];
  if (status != noErr) {
    NSLog(@"KorvoMellelAgent.sendPreferences: Error sending message %d", static_cast<int>(status));
  }
  // Here, where each conversation with a Mellel begins, and not with each event that is lost to it:
  // macOS asks the user once whether this application may send events to Mellel.
  if (status == errAEEventNotPermitted) {
    NSLog(@"KorvoMellelAgent.sendPreferences: this application may not send events to Mellel; on a "
          @"Mac it is allowed to in System Settings, Privacy & Security, Automation");
  }
}

// When the scan dialog closes, AppKit may leave the host's windows at the dialog's level, above
// everything else.
- (void)makeSureNextWindowIsNotStuck {
  NSArray *windows = [NSApp windows];
  for (NSUInteger index = 0; index < [windows count]; ++index) {
    NSWindow *window = [windows objectAtIndex:index];
    id delegate = [window delegate];
    if (delegate == nil || [window level] != stuckWindowLevel) {
      continue;
    }
    NSString *className = NSStringFromClass([delegate class]);
    if ([className isEqualToString:@"KOMainWindowController"] ||
        [className isEqualToString:@"KOReferenceEditorWindowController"]) {
      [window setLevel:normalWindowLevel];
    }
  }
}

- (void *)allocateOutgoingBytes:(std::size_t)size {
  return std::calloc(size, 1);
}

// Mellel announces itself with two numbers that mean nothing to this version; all it needs is the
// preferences. They go out for an empty or absent payload too: a Mellel that says nothing of itself
// is no reason to keep it waiting.
- (void)handleHandshakeEvent:(NSAppleEventDescriptor *)event
              withReplyEvent:(NSAppleEventDescriptor *)reply {
  const ExceptionBoundary boundary("handleHandshakeEvent", formats::request::handshake, reply);
  boundary.holds([&] {
    NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
    // Holds for no payload, since absent data has no length; a guard that did refuse one would keep
    // the preferences from a Mellel that gets them today.
    if (data == nil && [data length] / 2 >= 2) {
      NSLog(@"KorvoMellelAgent: handshake event - illegal payload");
      return;
    }
    [[maybe_unused]] const formats::Handshake handshake = formats::decodeHandshake(bytesOf(data));
    [self sendPreferences];
  });
}

@end
