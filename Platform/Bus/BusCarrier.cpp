#include "BusCarrier.h"

#include "BusConnection.h"
#include "BusNames.h"
#include "EventInbox.h"
#include "EventReceiver.h"
#include "ParameterCodec.h"

#include <algorithm>
#include <string>

namespace platform {
namespace {

constexpr std::chrono::seconds defaultTimeOut{60};
constexpr long ticksInASecond = 60;

std::chrono::microseconds asDuration(long timeOutInTicks) {
  if (timeOutInTicks == kNoTimeOut) {
    return BusConnection::noTimeOut;
  }
  if (timeOutInTicks == kAEDefaultTimeout) {
    return defaultTimeOut;
  }
  // A century: far enough from the end of the clock's range.
  constexpr long longest = 100L * 366 * 24 * 3600 * ticksInASecond;
  return std::chrono::microseconds(std::min(timeOutInTicks, longest) * 1'000'000 / ticksInASecond);
}

// A call of the other process's object that never starts a process.
std::expected<Message, OSStatus> newCall(sd_bus *bus, const std::string &destination,
                                         const char *method, bool wantsReply) {
  sd_bus_message *message = nullptr;
  if (sd_bus_message_new_method_call(bus, &message, destination.c_str(), objectPath, interfaceName,
                                     method) < 0) {
    return std::unexpected(OSStatus{memFullErr});
  }
  Message call = adoptMessage(message);
  if (sd_bus_message_set_auto_start(message, 0) < 0 ||
      sd_bus_message_set_expect_reply(message, wantsReply ? 1 : 0) < 0) {
    return std::unexpected(OSStatus{memFullErr});
  }
  return call;
}

class BusCarrier final : public Carrier {
 public:
  std::expected<Parameters, OSStatus> send(const OutgoingEvent &event) override;
  std::expected<Process, OSStatus> processBehind(
      std::optional<ProcessSerialNumber> previous) override;
  std::expected<Process, OSStatus> process(ProcessSerialNumber serialNumber) override;
  OSStatus activate(ProcessSerialNumber serialNumber) override;

 private:
  // Whether the event would come back to this process, which does not handle it while it waits.
  bool isToOneself(const OutgoingEvent &event);
  // The reply is handled as an event: in its turn, behind those that came before it.
  OSStatus sendForQueuedReply(const Message &call, AEReturnID returnID);
  // A serial number is the process's number on this machine and the signature that it declared.
  std::expected<Process, OSStatus> processOfSignature(FourCharCode signature);
  // The owner of the next greater name that is remembered and has one.
  std::expected<Process, OSStatus> ownerBehind(const std::string &name);

  BusConnection &connection() { return BusConnection::session(); }
};

bool BusCarrier::isToOneself(const OutgoingEvent &event) {
  if (event.targetSignature != EventReceiver::shared().signature()) {
    return false;
  }
  const auto owner = connection().ownerOf(busName(event.targetSignature));
  const auto bus = connection().open();
  const char *ownName = nullptr;
  return owner && bus && sd_bus_get_unique_name(*bus, &ownName) >= 0 &&
         owner->connection == ownName;
}

std::expected<Parameters, OSStatus> BusCarrier::send(const OutgoingEvent &event) {
  if (event.wantsReply && isToOneself(event)) {
    return std::unexpected(OSStatus{errAEEventFailed});
  }
  const std::string destination = busName(event.targetSignature);
  if (!event.wantsReply) {
    // Where nobody has the name the bus answers a message that wants an answer, and drops others.
    if (const auto owner = connection().ownerOf(destination); !owner) {
      return std::unexpected(owner.error());
    }
  }
  const auto bus = connection().open();
  if (!bus) {
    return std::unexpected(bus.error());
  }
  const bool isAnswered = event.wantsReply || event.queuesReply;
  const auto call = newCall(*bus, destination, "Send", isAnswered);
  if (!call) {
    return std::unexpected(call.error());
  }
  if (sd_bus_message_append(call->get(), "uu", event.eventClass, event.eventID) < 0) {
    return std::unexpected(OSStatus{memFullErr});
  }
  if (const auto appended = appendParameters(call->get(), event.parameters); !appended) {
    return std::unexpected(appended.error());
  }
  if (!event.wantsReply) {
    const OSStatus status = event.queuesReply ? sendForQueuedReply(*call, event.returnID)
                                              : connection().send(call->get());
    connection().arm();
    return status == noErr ? std::expected<Parameters, OSStatus>() : std::unexpected(status);
  }
  const auto reply = connection().call(call->get(), asDuration(event.timeOutInTicks));
  if (!reply) {
    return std::unexpected(reply.error());
  }
  if (sd_bus_message_has_signature(reply->get(), parametersSignature) <= 0) {
    return std::unexpected(OSStatus{errAECorruptData});
  }
  return readParameters(*reply, largestInboxSize);
}

OSStatus BusCarrier::sendForQueuedReply(const Message &call, AEReturnID returnID) {
  return connection().sendForReply(call.get(), [returnID](const Message &reply) {
    EventReceiver::shared().replyArrived(reply, returnID);
  });
}

std::expected<Process, OSStatus> BusCarrier::processOfSignature(FourCharCode signature) {
  const auto owner = connection().ownerOf(busName(signature));
  if (!owner) {
    return std::unexpected(owner.error());
  }
  return Process{{owner->processNumber, signature}, signature};
}

// What is remembered first; and where there is nothing more, the bus is asked for who has just
// come. Names are in the order of their signatures. One step takes no longer where there are many
// processes: anybody may own thousands of names, and a search must not wait for that.
std::expected<Process, OSStatus> BusCarrier::processBehind(
    std::optional<ProcessSerialNumber> previous) {
  const std::string name = previous ? busName(previous->lowLongOfPSN) : std::string();
  auto next = ownerBehind(name);
  if (!next && next.error() == procNotFound) {
    if (const OSStatus status = connection().renewNames(); status != noErr) {
      return std::unexpected(status);
    }
    next = ownerBehind(name);
  }
  return next;
}

std::expected<Process, OSStatus> BusCarrier::ownerBehind(const std::string &name) {
  auto next = connection().nameBehind(name);
  while (next) {
    const auto process = processOfSignature(signatureInBusName(*next).value_or(0));
    // One that ended since its name was listed is left out.
    if (process || process.error() != procNotFound) {
      return process;
    }
    next = connection().nameBehind(*next);
  }
  return std::unexpected(next.error());
}

std::expected<Process, OSStatus> BusCarrier::process(ProcessSerialNumber serialNumber) {
  const auto running = processOfSignature(serialNumber.lowLongOfPSN);
  if (running && running->serialNumber.highLongOfPSN != serialNumber.highLongOfPSN) {
    return std::unexpected(OSStatus{procNotFound});
  }
  return running;
}

OSStatus BusCarrier::activate(ProcessSerialNumber serialNumber) {
  const auto running = process(serialNumber);
  if (!running) {
    return running.error();
  }
  const auto bus = connection().open();
  if (!bus) {
    return bus.error();
  }
  // Without reply: the other process may itself be waiting for a reply of this one.
  const auto call = newCall(*bus, busName(running->signature), "Activate", false);
  if (!call) {
    return call.error();
  }
  const OSStatus status = connection().send(call->get());
  connection().arm();
  return status;
}

}  // namespace

Carrier &busCarrier() {
  static BusCarrier carrier;
  return carrier;
}

}  // namespace platform
