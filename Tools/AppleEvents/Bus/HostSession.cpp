#include "HostSession.h"

#include <Formats/EventTable.h>
#include <Platform/OwnedDescriptor.h>
#include <Platform/WithoutCocoa/EventHandlers.h>
#include <Platform/WithoutCocoa/LogOutput.h>
#include <Platform/WithoutCocoa/RunLoopTurn.h>
#include <Tools/AppleEvents/Payloads/EventKinds.h>

#include <ApplicationServices/ApplicationServices.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace appleevents {

using Kind = RecordedMessage::Kind;

namespace {

std::vector<RecordedParameter> recorded(const platform::Parameters &parameters) {
  std::vector<RecordedParameter> all;
  for (const platform::Parameter &parameter : parameters) {
    const auto bytes = parameter.data.view();
    all.push_back({parameter.keyword, parameter.type,
                   std::string(reinterpret_cast<const char *>(bytes.data()), bytes.size()), false});
  }
  return all;
}

OSStatus makeEvent(const RecordedMessage &message, AEReturnID returnID,
                   platform::OwnedDescriptor &event) {
  platform::OwnedDescriptor target;
  OSStatus status = AECreateDesc(typeApplSignature, &message.to, sizeof message.to, &target);
  if (status == noErr) {
    status = AECreateAppleEvent(message.eventClass, message.eventID, &target, returnID,
                                kAnyTransactionID, &event);
  }
  for (const RecordedParameter &parameter : message.parameters) {
    if (status == noErr) {
      status = AEPutParamPtr(&event, parameter.keyword, parameter.type, parameter.bytes.data(),
                             static_cast<Size>(parameter.bytes.size()));
    }
  }
  return status;
}

// As the platform tells of an error in place of a reply.
RecordedMessage errorReply(std::size_t number, SInt32 status) {
  std::string bytes(sizeof status, '\0');
  std::memcpy(bytes.data(), &status, sizeof status);
  return {.kind = Kind::reply,
          .number = number,
          .parameters = {{keyErrorNumber, typeSInt32, bytes, false}}};
}

}  // namespace

HostSession::HostSession()
    : watch_(formats::korvoSignature, [this](bool isRunning) {
        hasHostEnded_ = hasHostEnded_ || (isReceiving_ && !isRunning);
      }) {}

HostSession::~HostSession() {
  if (isReceiving_) {
    platform::stopReceivingAppleEvents();
  }
  for (const auto &[eventClass, eventID] : received_) {
    platform::removeEventHandler(eventClass, eventID);
  }
  platform::removeEventHandler(kCoreEventClass, kAEAnswer);
}

bool HostSession::isHostRunning() {
  return platform::ProcessWatch(formats::korvoSignature, {}).isRunning();
}

std::expected<std::unique_ptr<HostSession>, Failure> HostSession::connect(
    const Recording &recording, Clock::time_point deadline) {
  platform::sendLogTo([](std::string_view line) { complain(line); });
  std::unique_ptr<HostSession> session(new HostSession());
  session->runUntil([&] { return session->watch_.isRunning(); }, deadline);
  if (!session->watch_.isRunning()) {
    return std::unexpected(Failure{Status::unreachable, "no host is running"});
  }
  for (const EventKind &kind : eventKinds()) {
    if (kind.sender == Sender::host && !kind.isReply) {
      session->receive({kind.eventClass, kind.eventID});
    }
  }
  for (const RecordedMessage &message : recording.messages) {
    if (message.kind == Kind::event && message.to == formats::mellelSignature) {
      session->receive({message.eventClass, message.eventID});
    }
  }
  platform::setEventHandler(kCoreEventClass, kAEAnswer,
                            [self = session.get()](const platform::IncomingEvent &event) {
                              self->arrived_.push_back({.kind = Kind::reply,
                                                        .number = self->sent_[event.returnID],
                                                        .parameters = recorded(event.parameters)});
                            });
  const OSStatus status =
      platform::startReceivingAppleEvents(formats::mellelSignature, [self = session.get()] {
        self->arrived_.push_back({.kind = Kind::activation,
                                  .from = formats::korvoSignature,
                                  .to = formats::mellelSignature});
      });
  if (status != noErr) {
    return std::unexpected(
        Failure{Status::unreachable, status == portInUse
                                         ? "a word processor is running, and would get the answers"
                                         : "there is no session bus"});
  }
  session->isReceiving_ = true;
  return session;
}

void HostSession::receive(const Codes &codes) {
  if (!received_.insert(codes).second) {
    return;
  }
  platform::setEventHandler(codes.first, codes.second,
                            [this, codes](const platform::IncomingEvent &event) {
                              arrived_.push_back({.kind = Kind::event,
                                                  .from = formats::korvoSignature,
                                                  .to = formats::mellelSignature,
                                                  .eventClass = codes.first,
                                                  .eventID = codes.second,
                                                  .wantsReply = event.wantsReply,
                                                  .parameters = recorded(event.parameters)});
                            });
}

void HostSession::send(const RecordedMessage &message) {
  platform::OwnedDescriptor event;
  constexpr std::size_t returnIDs = 30000;
  const auto returnID = static_cast<AEReturnID>(message.number % returnIDs + 1);
  sent_[returnID] = message.number;
  OSStatus status = makeEvent(message, returnID, event);
  if (status == noErr) {
    status =
        AESendMessage(&event, nullptr, message.wantsReply ? kAEQueueReply : kAENoReply, kNoTimeOut);
  }
  if (status != noErr) {
    arrived_.push_back(errorReply(message.number, status));
  }
}

void HostSession::runUntil(const std::function<bool()> &condition, Clock::time_point deadline) {
  while (!condition() && !hasHostEnded_ && Clock::now() < deadline) {
    platform::runLoopTurn(deadline);
  }
}

}  // namespace appleevents
