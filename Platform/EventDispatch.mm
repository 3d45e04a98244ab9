#include "EventDispatch.h"

#include "AutoreleasePool.h"
#include "CatchObjectiveCException.h"
#include "Descriptor.h"
#include "EventHandlerTable.h"
#include "FourCharacters.h"
#include "GuardedCall.h"
#include "Log.h"

#import <ApplicationServices/ApplicationServices.h>

#include <optional>
#include <utility>

namespace platform {
namespace {

NSAppleEventDescriptor *descriptorOwning(AEDesc descriptor) {
  return [[[NSAppleEventDescriptor alloc] initWithAEDescNoCopy:&descriptor] autorelease];
}

NSAppleEventDescriptor *eventDescriptor(const IncomingEvent &event) {
  EventRecord record{.eventClass = event.eventClass, .eventID = event.eventID};
  record.parameters = event.parameters;
  return descriptorOwning(makeDescriptor(std::move(record)));
}

NSAppleEventDescriptor *replyDescriptor(const IncomingEvent &event) {
  if (!event.wantsReply) {
    return [NSAppleEventDescriptor nullDescriptor];
  }
  return descriptorOwning(
      makeDescriptor(EventRecord{.eventClass = kCoreEventClass, .eventID = kAEAnswer}));
}

struct HandlerCall {
  const EventHandler &handler;
  NSAppleEventDescriptor *event;
  NSAppleEventDescriptor *reply;
};

void performCall(void *context) {
  const HandlerCall &call = *static_cast<const HandlerCall *>(context);
  [call.handler.target performSelector:call.handler.selector
                            withObject:call.event
                            withObject:call.reply];
}

struct Reason {
  id thrown;
  std::string inWords;
};

// Lone surrogates have no UTF-8.
void readReason(void *context) {
  Reason &reason = *static_cast<Reason *>(context);
  id thrown = reason.thrown;
  NSString *said = [thrown isKindOfClass:[NSException class]]
                       ? [NSString stringWithFormat:@"%@: %@", [thrown name], [thrown reason]]
                       : [NSString stringWithFormat:@"%@", thrown];
  NSData *bytes = [said dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  reason.inWords.assign(static_cast<const char *>([bytes bytes]), [bytes length]);
}

// Of an object that may throw when it is asked what it is.
std::string reasonOf(id thrown) {
  Reason reason = {thrown, ""};
  const auto failure =
      exceptionLeaving([&] { KorvoCatchObjectiveCException(readReason, &reason); });
  return failure || reason.inWords.empty() ? "it does not say why" : reason.inWords;
}

// What left the handler in place of its return, in words.
std::optional<std::string> perform(HandlerCall &call) {
  id thrown = nil;
  auto cppException =
      exceptionLeaving([&] { thrown = KorvoCatchObjectiveCException(performCall, &call); });
  if (cppException || thrown == nil) {
    return cppException;
  }
  return reasonOf(thrown);
}

}  // namespace

std::expected<Parameters, OSStatus> dispatchAppleEvent(const IncomingEvent &event) try {
  const AutoreleasePool pool;
  const EventHandler *installed = EventHandlerTable::shared().find(event.eventClass, event.eventID);
  if (installed == nullptr) {
    return std::unexpected(OSStatus{errAEEventNotHandled});
  }
  // A copy: the handler may install and remove handlers.
  const EventHandler handler = *installed;
  HandlerCall call{handler, eventDescriptor(event), replyDescriptor(event)};
  if (const auto exception = perform(call)) {
    logLine("The handler of event " + inQuotes(event.eventClass) + " " + inQuotes(event.eventID) +
            " was left by an exception: " + *exception);
    return std::unexpected(OSStatus{errAEEventFailed});
  }
  const EventRecord *reply = eventRecord([call.reply aeDesc]);
  return reply == nullptr ? Parameters() : reply->parameters;
} catch (...) {
  // No memory to call the handler, or to say how it ended.
  return std::unexpected(OSStatus{memFullErr});
}

std::vector<InstalledHandler> installedEventHandlers() {
  std::vector<InstalledHandler> handlers;
  for (const EventHandler &handler : EventHandlerTable::shared().all()) {
    handlers.push_back({handler.eventClass, handler.eventID, handler.target,
                        [NSStringFromSelector(handler.selector) UTF8String]});
  }
  return handlers;
}

}  // namespace platform
