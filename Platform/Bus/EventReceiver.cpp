#include "EventReceiver.h"

#include "BusNames.h"
#include "ParameterCodec.h"

#include <Platform/EventDispatch.h>
#include <Platform/FourCharacters.h>
#include <Platform/GuardedCall.h>
#include <Platform/Log.h>

#include <ApplicationServices/MacErrors.h>
#include <malloc.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace platform {
namespace {

// After so long with handlers the run loop gets a turn for other things.
constexpr std::chrono::milliseconds longestBatch{10};

// After so much data the heap is worth releasing.
constexpr std::size_t bytesBetweenReleases = 65'536;
constexpr std::chrono::seconds timeBetweenReleases{1};

std::size_t bytesIn(const Parameters &parameters) {
  std::size_t bytes = 0;
  for (const Parameter &parameter : parameters) {
    bytes += parameter.data.size();
  }
  return bytes;
}

// Sets a flag for the length of a scope.
class Raised {
 public:
  explicit Raised(bool &flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~Raised() { flag_ = before_; }
  Raised(const Raised &) = delete;
  Raised &operator=(const Raised &) = delete;

 private:
  bool &flag_;
  bool before_;
};

// A message that can be answered, and logged, like the request, and holds nothing of it. A message
// keeps every descriptor that came with it until it goes away, also those that its body never
// names, and sd-bus tells neither their numbers nor how many they are.
Message returnAddressOf(const Message &request) {
  sd_bus_message *message = nullptr;
  std::uint64_t cookie = 0;
  if (sd_bus_message_new_method_call(sd_bus_message_get_bus(request.get()), &message,
                                     sd_bus_message_get_destination(request.get()), objectPath,
                                     interfaceName, "Send") < 0) {
    return nullptr;
  }
  Message address = adoptMessage(message);
  const bool isComplete =
      sd_bus_message_get_cookie(request.get(), &cookie) >= 0 &&
      sd_bus_message_set_sender(message, sd_bus_message_get_sender(request.get())) >= 0 &&
      sd_bus_message_set_expect_reply(message, sd_bus_message_get_expect_reply(request.get())) >=
          0 &&
      sd_bus_message_seal(message, cookie, 0) >= 0;
  return isComplete ? address : nullptr;
}

// Takes out of the request what is needed of it, so that it can go away. False, or std::bad_alloc,
// without memory.
bool detach(WaitingEvent &waiting) {
  for (Parameter &parameter : waiting.event.parameters) {
    if (parameter.data.memoryFile() != nullptr) {
      continue;
    }
    // On the heap whatever its size: a memory file would be a descriptor again.
    const auto bytes = parameter.data.view();
    const auto copy = std::make_shared<const std::vector<std::byte>>(bytes.begin(), bytes.end());
    parameter.data = SharedBytes(*copy, copy);
  }
  if (waiting.request == nullptr) {
    return true;
  }
  Message address = returnAddressOf(waiting.request);
  if (address == nullptr) {
    return false;
  }
  waiting.request = std::move(address);
  return true;
}

bool wantsReply(const Message &request) {
  return sd_bus_message_get_expect_reply(request.get()) > 0;
}

}  // namespace

const sd_bus_vtable EventReceiver::methods[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_NAMES(
        "Send", "uua(uuv)", SD_BUS_PARAM(eventClass) SD_BUS_PARAM(eventID) SD_BUS_PARAM(parameters),
        "a(uuv)", SD_BUS_PARAM(replyParameters), EventReceiver::sendArrived,
        SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Activate", "", "", EventReceiver::activateArrived, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

EventReceiver::EventReceiver(BusConnection &connection)
    : connection_(connection), heapRelease_([this] { releaseHeap(); }) {}

EventReceiver &EventReceiver::shared() {
  static EventReceiver *receiver = new EventReceiver(BusConnection::session());
  return *receiver;
}

OSStatus EventReceiver::start(FourCharCode signature, std::function<void()> onActivate) {
  if (signature == 0 || signature_ != 0) {
    return paramErr;
  }
  const auto bus = connection_.open();
  if (!bus) {
    return bus.error();
  }
  if (const OSStatus status = exportObject(*bus); status != noErr) {
    return status;
  }
  const int claimed = sd_bus_request_name(*bus, busName(signature).c_str(), 0);
  connection_.arm();
  if (claimed < 0 && claimed != -EALREADY) {
    object_.reset();
    // Denied by the bus's policy, where it is EACCES.
    return claimed == -EEXIST   ? portInUse
           : claimed == -EACCES ? OSStatus{errAEEventNotPermitted}
                                : OSStatus{connectionInvalid};
  }
  signature_ = signature;
  onActivate_ = std::move(onActivate);
  connection_.addClient(this);
  return noErr;
}

void EventReceiver::stop() {
  if (signature_ == 0) {
    return;
  }
  connection_.removeClient(this);
  if (const auto bus = object_ == nullptr ? nullptr : sd_bus_slot_get_bus(object_.get())) {
    sd_bus_release_name(bus, busName(signature_).c_str());
  }
  object_.reset();
  signature_ = 0;
  onActivate_ = nullptr;
  while (const auto waiting = inbox_.take()) {
    if (waiting->request != nullptr) {
      refuse(waiting->request, procNotFound);
    }
  }
  connection_.arm();
}

OSStatus EventReceiver::exportObject(sd_bus *bus) {
  sd_bus_slot *slot = nullptr;
  if (sd_bus_add_object_vtable(bus, &slot, objectPath, interfaceName, methods, this) < 0) {
    return memFullErr;
  }
  object_.reset(slot);
  return noErr;
}

void EventReceiver::busIsBack(sd_bus *bus) {
  // Where another process was quicker, the name comes when that one gives it up.
  if (exportObject(bus) != noErr ||
      sd_bus_request_name(bus, busName(signature_).c_str(), SD_BUS_NAME_QUEUE) < 0) {
    logLine("The signature " + inQuotes(signature_) +
            " could not be declared again after the message bus came back");
  }
}

void EventReceiver::busIsGone() { object_.reset(); }

int EventReceiver::sendArrived(sd_bus_message *message, void *self, sd_bus_error *) {
  EventReceiver &receiver = *static_cast<EventReceiver *>(self);
  const Message request = shareMessage(message);
  OSStatus status = noErr;
  if (exceptionLeaving([&] { status = receiver.receive(request); })) {
    status = memFullErr;
  }
  if (status != noErr) {
    receiver.refuse(request, status);
  }
  return 1;
}

int EventReceiver::activateArrived(sd_bus_message *message, void *self, sd_bus_error *) {
  EventReceiver &receiver = *static_cast<EventReceiver *>(self);
  receiver.connection_.addTask([&receiver] {
    if (receiver.onActivate_) {
      receiver.onActivate_();
    }
  });
  return wantsReply(shareMessage(message)) ? sd_bus_reply_method_return(message, "") : 1;
}

OSStatus EventReceiver::receive(const Message &request) {
  IncomingEvent event;
  if (!readNumber(request.get(), event.eventClass) || !readNumber(request.get(), event.eventID)) {
    return errAECorruptData;
  }
  auto parameters = readParameters(request, largestInboxSize);
  if (!parameters) {
    return parameters.error();
  }
  event.parameters = *std::move(parameters);
  event.wantsReply = wantsReply(request);
  return take({std::move(event), request});
}

OSStatus EventReceiver::take(WaitingEvent waiting) {
  // One that waits behind others, or behind a dialog, may wait for hours.
  const bool mayWaitLong = isDispatching_ || !inbox_.isEmpty();
  if ((mayWaitLong && !detach(waiting)) || !inbox_.put(std::move(waiting))) {
    return memFullErr;
  }
  dispatchLater();
  return noErr;
}

void EventReceiver::replyArrived(const Message &reply, AEReturnID returnID) {
  const sd_bus_error *error = sd_bus_message_get_error(reply.get());
  auto parameters =
      error != nullptr
          ? std::expected<Parameters, OSStatus>(std::unexpected(statusOfError(error->name)))
          : readParameters(reply, largestInboxSize);
  if (!parameters) {
    const SInt32 number = parameters.error();
    const auto data = SharedBytes::copyOf(std::as_bytes(std::span(&number, 1)));
    if (!data) {
      throw std::bad_alloc();
    }
    parameters = Parameters{{keyErrorNumber, typeSInt32, *data}};
  }
  IncomingEvent event{.eventClass = kCoreEventClass, .eventID = kAEAnswer};
  event.parameters = *std::move(parameters);
  event.returnID = returnID;
  if (take({std::move(event), nullptr}) != noErr) {
    logLine("A reply was dropped: there is no room for it");
  }
}

void EventReceiver::dispatchLater() {
  if (mustWait() || willDispatch_) {
    return;
  }
  willDispatch_ = true;
  connection_.addTask([this] {
    willDispatch_ = false;
    dispatchWaiting();
  });
}

void EventReceiver::dispatchWaiting() {
  if (mustWait()) {
    return;
  }
  const auto start = std::chrono::steady_clock::now();
  {
    const Raised dispatching(isDispatching_);
    do {
      const auto waiting = inbox_.take();
      if (!waiting) {
        break;
      }
      if (nestsHandlers_ && !inbox_.isEmpty()) {
        dispatchLater();
      }
      dispatch(*waiting);
    } while (std::chrono::steady_clock::now() - start < longestBatch);
  }
  releaseHeapLater();
  if (!inbox_.isEmpty()) {
    dispatchLater();
  }
}

// A document of many thousand citations becomes some hundred bytes of small objects for each, and
// the C library keeps what was used once: the process would stay as large as its largest document.
// It takes time to give memory back, and again to get it; so that is done once in a while.
void EventReceiver::releaseHeapLater() {
  if (bytesDispatched_ >= bytesBetweenReleases && !willReleaseHeap_) {
    willReleaseHeap_ = true;
    heapRelease_.callAfter(timeBetweenReleases);
  }
}

void EventReceiver::releaseHeap() {
  willReleaseHeap_ = false;
  bytesDispatched_ = 0;
  malloc_trim(0);
}

void EventReceiver::dispatch(const WaitingEvent &waiting) {
  std::expected<Parameters, OSStatus> reply = std::unexpected(OSStatus{memFullErr});
  const auto exception = exceptionLeaving([&] { reply = dispatchAppleEvent(waiting.event); });
  if (exception) {
    logLine("An event could not be dispatched: " + *exception);
  }
  bytesDispatched_ += bytesIn(waiting.event.parameters) + (reply ? bytesIn(*reply) : 0);
  if (!waiting.event.wantsReply) {
    return;
  }
  const OSStatus status = reply ? answer(waiting.request, *reply) : reply.error();
  if (status != noErr) {
    refuse(waiting.request, status);
  }
}

OSStatus EventReceiver::answer(const Message &request, const Parameters &parameters) {
  sd_bus_message *message = nullptr;
  if (sd_bus_message_new_method_return(request.get(), &message) < 0) {
    return memFullErr;
  }
  const Message owned = adoptMessage(message);
  if (const auto appended = appendParameters(message, parameters); !appended) {
    return appended.error();
  }
  return connection_.send(message);
}

void EventReceiver::refuse(const Message &request, OSStatus status) {
  if (wantsReply(request)) {
    if (sd_bus_reply_method_errorf(request.get(), errorName(status).c_str(), "%s",
                                   inWords(status)) < 0) {
      connection_.giveUp(request);
    }
    return;
  }
  if (status == errAEEventNotHandled) {
    return;
  }
  const char *sender = sd_bus_message_get_sender(request.get());
  refusals_.refused(sender == nullptr ? "an unknown process" : sender, status);
}

}  // namespace platform
