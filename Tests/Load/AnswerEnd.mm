#include "AnswerEnd.h"

#include "LoadEvents.h"

#include <Platform/AppleEventsProcess.h>

#import <ApplicationServices/ApplicationServices.h>

#include <cstdio>
#include <cstdlib>

@interface AnswerHandler : NSObject {
 @public
  const load_test::AnswerEnd::Function *function;
}
@end

@implementation AnswerHandler
- (void)answer:(NSAppleEventDescriptor *)event
         reply:(NSAppleEventDescriptor *)__attribute__((unused)) reply {
  NSData *data = [[event paramDescriptorForKeyword:keyDirectObject] data];
  (*function)([event eventClass], [event eventID],
              { static_cast<const char *>([data bytes]), [data length] });
}
@end

namespace load_test {

AnswerEnd::AnswerEnd(Function onAnswer)
    : onAnswer_(std::move(onAnswer)), handler_([[AnswerHandler alloc] init]) {
  AnswerHandler *handler = static_cast<AnswerHandler *>(handler_);
  handler->function = &onAnswer_;
  const struct {
    FourCharCode eventClass;
    FourCharCode eventID;
  } answers[] = {{formats::mellelSignature, formats::answer::preferences},
                 {formats::mellelSignature, formats::answer::cancel},
                 {formats::mellelSignature, formats::answer::citationResolution},
                 {formats::mellelSignature, formats::answer::finalScan},
                 {formats::insertionEventClass, formats::answer::citation},
                 {loadClass, doneEvent}};
  for (const auto &answer : answers) {
    [[NSAppleEventManager sharedAppleEventManager] setEventHandler:handler
                                                       andSelector:@selector(answer:reply:)
                                                     forEventClass:answer.eventClass
                                                        andEventID:answer.eventID];
  }
  if (platform::startReceivingAppleEvents(formats::mellelSignature, nullptr) != noErr) {
    std::fputs("The word processor's signature could not be had\n", stderr);
    std::exit(1);
  }
}

AnswerEnd::~AnswerEnd() {
  platform::stopReceivingAppleEvents();
  [static_cast<AnswerHandler *>(handler_) release];
}

}  // namespace load_test
