// Sends this process the word processor's handshake, before and after the smallest host has loaded
// the plug-in. An event to the process itself asks nobody for permission, and needs no word
// processor. Status 0 if the handshake was handled, and only then.

#import "Hosting.h"

#import <ApplicationServices/ApplicationServices.h>
#import <Cocoa/Cocoa.h>

#include <cstdint>
#include <cstdio>

namespace {

constexpr FourCharCode mellel = 'm' << 24 | 'L' << 16 | 'e' << 8 | 'L';
constexpr FourCharCode handshake = 'I' << 24 | 'M' << 16 | 'H' << 8 | 'R';

// Two 16-bit numbers, in which the word processor says what it is.
constexpr char payload[4] = {};

// The status with which the handshake comes back, or the one with which it could not be sent.
OSStatus sendHandshake() {
  const ProcessSerialNumber thisProcess = {0, kCurrentProcess};
  AEDesc target = {typeNull, nullptr};
  AppleEvent event = {typeNull, nullptr};
  AppleEvent reply = {typeNull, nullptr};
  OSStatus status =
      AECreateDesc(typeProcessSerialNumber, &thisProcess, sizeof thisProcess, &target);
  if (status == noErr) {
    status = AECreateAppleEvent(mellel, handshake, &target, kAutoGenerateReturnID,
                                kAnyTransactionID, &event);
  }
  if (status == noErr) {
    status = AEPutParamPtr(&event, keyDirectObject, typeChar, payload, sizeof payload);
  }
  if (status == noErr) {
    status = AESendMessage(&event, &reply, kAEWaitReply, kAEDefaultTimeout);
  }
  // An event that nobody handled may tell so in its reply alone.
  std::int32_t error = noErr;
  if (status == noErr && AEGetParamPtr(&reply, keyErrorNumber, typeSInt32, nullptr, &error,
                                       static_cast<Size>(sizeof error), nullptr) == noErr) {
    status = error;
  }
  AEDisposeDesc(&reply);
  AEDisposeDesc(&event);
  AEDisposeDesc(&target);
  return status;
}

bool handshakeEndsWith(OSStatus expected) {
  const OSStatus status = sendHandshake();
  if (status != expected) {
    std::fprintf(stderr, "the handshake ends with %d and not with %d\n", static_cast<int>(status),
                 static_cast<int>(expected));
  }
  return status == expected;
}

}  // namespace

int main(int argc, char **argv) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  if (argc != 2) {
    std::fprintf(stderr, "usage: handshake BUNDLE\n");
    return 2;
  }
  [NSApplication sharedApplication];
  const bool answered = handshakeEndsWith(errAEEventNotHandled) &&
                        startHosting([NSString stringWithUTF8String:argv[1]]) &&
                        handshakeEndsWith(noErr);
  [pool drain];
  return answered ? 0 : 1;
}
