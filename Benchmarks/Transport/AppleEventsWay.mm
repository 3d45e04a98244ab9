#include "Partner.h"
#include "Way.h"

#include <Formats/FourCharacterCode.h>
#include <Platform/AppleEventsProcess.h>
#include <Platform/AutoreleasePool.h>
#include <Platform/Bus/EventInbox.h>
#include <Platform/OwnedDescriptor.h>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

namespace {

constexpr OSType receiverSignature = formats::fourCharacterCode("BenR");
constexpr AEEventClass benchmarkClass = formats::fourCharacterCode("BENC");
constexpr AEEventID sumEvent = formats::fourCharacterCode("summ");

}  // namespace

@interface SummingReceiver : NSObject
@end

@implementation SummingReceiver

- (void)sum:(NSAppleEventDescriptor *)event reply:(NSAppleEventDescriptor *)reply {
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  const std::uint64_t sum =
      benchmarks::sumOfWords({static_cast<const std::byte *>([data bytes]), [data length]});
  [reply setDescriptor:[NSAppleEventDescriptor descriptorWithDescriptorType:typeChar
                                                                      bytes:&sum
                                                                     length:sizeof sum]
            forKeyword:keyDirectObject];
}

@end

namespace benchmarks {
namespace {

void serve(const std::function<void()> &ready) {
  const platform::AutoreleasePool pool;
  SummingReceiver *receiver = [[[SummingReceiver alloc] init] autorelease];
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:receiver
                                                     andSelector:@selector(sum:reply:)
                                                   forEventClass:benchmarkClass
                                                      andEventID:sumEvent];
  if (platform::startReceivingAppleEvents(receiverSignature, nullptr) != noErr) {
    return;
  }
  ready();
  [[NSRunLoop currentRunLoop] run];
}

class AppleEventsWay final : public Way {
 public:
  bool carries(std::size_t size) const override {
    // An event and its parameter count a little themselves.
    return size + 2048 <= platform::largestInboxSize;
  }

  std::uint64_t exchange(std::span<const std::byte> payload) override {
    platform::OwnedDescriptor target;
    platform::OwnedDescriptor event;
    platform::OwnedDescriptor reply;
    std::uint64_t sum = 0;
    if (AECreateDesc(typeApplSignature, &receiverSignature, sizeof receiverSignature, &target) !=
            noErr ||
        AECreateAppleEvent(benchmarkClass, sumEvent, &target, kAutoGenerateReturnID,
                           kAnyTransactionID, &event) != noErr ||
        AEPutParamPtr(&event, keyDirectObject, typeChar, payload.data(),
                      static_cast<Size>(payload.size())) != noErr ||
        AESendMessage(&event, &reply, kAEWaitReply, kNoTimeOut) != noErr ||
        AEGetParamPtr(&reply, keyDirectObject, typeChar, nullptr, &sum, sizeof sum, nullptr) !=
            noErr) {
      giveUp("An Apple Event was not answered");
    }
    return sum;
  }

 private:
  Partner receiver_{serve};
};

}  // namespace

std::unique_ptr<Way> makeAppleEventsWay() { return std::make_unique<AppleEventsWay>(); }

}  // namespace benchmarks
